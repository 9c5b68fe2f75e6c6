#pragma once

#include <string>
#include <string_view>

namespace mdl_FRX {

/// Cuts one field out of the hidden form of a kdv page.
/// @param field  "Тема", "Вответ", "Автор", "АвторMail", "Текст" or "Дата"; others give an empty text
/// @return empty when the page lacks the field, but "(...пусто...)" for an empty subject; a date as
///         "day-MM-year", or as found when it has not three parts
std::string ExtractField(std::string_view page, std::string_view field);

}  // namespace mdl_FRX
