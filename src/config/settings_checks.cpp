#include "config/settings_checks.h"

#include "config/user_settings.h"

namespace settings_checks {

bool LoadDaysAreValid(std::string_view text) { return user_settings::LoadDaysFromText(text) != 0; }

bool HighlightDaysAreValid(std::string_view text) { return user_settings::DaysFromText(text) != 0; }

}  // namespace settings_checks
