#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "base/clock.h"

namespace mdl_PTRV {

/// Cuts one field out of a ptrv page.
/// @param field  "Тема", "Вответ", "Автор", "АвторMail", "Текст" or "Дата"; others give an empty text
/// @return a date as "yyyy-mm-dd", empty when the page has none; a parent's number as decimal text, "0" when the
///         message starts a thread; " " for an empty body
/// @throws Error 9 when the page lacks the author's input or a piece of a date or link; Error 5 for a date
///         without a weekday
std::string ParsePtrvField(std::string_view page, std::string_view field, const Clock& clock);

/// Sunday = 1 ... Saturday = 7 of the first English three-letter name found, in this order; 0 when there is none.
int DayOfWeekNumber(std::string_view text);

/// The latest year, not after the current one, in which month and day fall on that weekday. Months and days
/// roll over before they are compared. @throws Error 5 when there is no such year
std::int16_t FindYearForWeekday(int month, int day, int weekday, const Clock& clock);

}  // namespace mdl_PTRV
