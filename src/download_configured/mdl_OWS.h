#pragma once

#include <string>
#include <string_view>

namespace mdl_OWS {

/// Cuts one field out of an ows_ptrv page and turns it from KOI8-R into Windows-1251.
/// @param page   as received, in KOI8-R; for "АвторMail" the page of the author, for the rest the message's
/// @param field  "Тема", "Вответ", "Автор", "АвторMail", "Текст" or "Дата"; others give an empty text
/// @return a date as "yyyy-mm-dd"; a parent's number as decimal text, "0" when the message starts a thread
/// @throws Error of 5, 6, 9 or 13 when the date is not a month, a day and a year
std::string ParseOwsField(std::string_view page, std::string_view field);

}  // namespace mdl_OWS
