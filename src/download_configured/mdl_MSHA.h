#pragma once

#include <string>
#include <string_view>

namespace mdl_MSHA {

/// Cuts one field out of a moysha page.
/// @param field  "Тема", "Вответ", "Автор", "АвторMail", "Текст" or "Дата"; others give an empty text
/// @return a date as "yyyy-mm-dd"; a parent's number as decimal text, "0" when the message starts a thread;
///         " " for an empty body
/// @throws Error of 5, 6, 9 or 13 when the date is not three numbers between "/"
std::string ParseMoyshaField(std::string_view page, std::string_view field);

}  // namespace mdl_MSHA
