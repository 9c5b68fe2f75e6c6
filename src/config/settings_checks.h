#pragma once

#include <string_view>

#include "base/ru_literal.h"

/// What the dialogs accept where free text may be typed.
namespace settings_checks {

inline constexpr std::string_view kBadDays = "Ошибка во введенном числе дней"_ru;

/// "Весь архив", or a text that begins with a number other than 0.
bool LoadDaysAreValid(std::string_view text);
/// A text that begins with a number other than 0.
bool HighlightDaysAreValid(std::string_view text);

}  // namespace settings_checks
