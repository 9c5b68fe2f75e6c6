#pragma once

#include <string>
#include <string_view>

#include "base/ru_literal.h"
#include "demo_forum/demo_pages.h"
#include "text/strings.h"

/// Pages that a parser has to survive, and to read in time that grows no faster than they do: a quadratic
/// loop over them lasts longer than any test may.
namespace hostile_pages {

inline constexpr std::string_view kDate = "12 Мар 2002"_ru;
inline constexpr std::string_view kPieces[] = {"<"_ru,
                                               ">"_ru,
                                               "<>"_ru,
                                               "<b"_ru,
                                               "<b>"_ru,
                                               "</b>"_ru,
                                               "<i>"_ru,
                                               "&"_ru,
                                               "&amp;"_ru,
                                               "&amp;amp;"_ru,
                                               "&#38;"_ru,
                                               "&quot;"_ru,
                                               "&nbsp;"_ru,
                                               "m:"_ru,
                                               "M"_ru,
                                               "m: \r\n\r\n"_ru,
                                               "\r\n"_ru,
                                               "\r"_ru,
                                               "\n"_ru,
                                               "\n: "_ru,
                                               "\t"_ru,
                                               " "_ru,
                                               " \r\n\t"_ru,
                                               "="_ru,
                                               "\""_ru,
                                               "/"_ru,
                                               ";"_ru,
                                               ","_ru,
                                               "</A>"_ru,
                                               "<A href="_ru,
                                               "<A href=\"="_ru,
                                               "\">"_ru,
                                               "<br>"_ru,
                                               "<br><br>"_ru,
                                               "<p>"_ru,
                                               "</blockquote>\r\n"_ru,
                                               "<p>\r\n"_ru,
                                               "<hr"_ru,
                                               "<dd>"_ru,
                                               "<font size=-1>["_ru,
                                               "value=\""_ru,
                                               "previousname"_ru,
                                               "previousdate"_ru,
                                               "<title>"_ru,
                                               "</title"_ru,
                                               "- Форум аналитиков"_ru,
                                               "<DIV class=message>"_ru,
                                               "<input type=hidden name=\"orig"_ru,
                                               "Views:"_ru,
                                               "[<small>"_ru,
                                               "9"_ru,
                                               "1e9"_ru,
                                               "&H"_ru,
                                               "\0"_ru,
                                               "ма"_ru,
                                               "/default.asp?action=view&id=1&"_ru,
                                               "/default.asp?action=view&id="_ru};

/// A page of the forum, each of its texts `filling`.
inline std::string PageOf(std::string_view kind, std::string_view filling) {
  constexpr std::string_view kMark = "@@@";
  MessageRecord message;
  message.Код = 7;
  message.Вответ = 5;
  message.Тема = message.Автор = message.АвторMail = message.Текст = kMark;
  message.Дата = OleDate{37'330};
  return text::ReplaceAll(demo_pages::MessagePage(kind, message), kMark, filling);
}

/// Calls `parse` with pages of about four times `size` bytes that repeat one piece of markup, and with the bare
/// repetition; then with a page cut off at every byte.
template <typename Parse>
void ForEachPage(std::string_view kind, std::size_t size, const Parse& parse) {
  for (const std::string_view piece : kPieces) {
    std::string filling;
    while (filling.size() < size) filling += piece;
    parse(filling);
    parse(PageOf(kind, filling));
  }
  const std::string page = PageOf(kind, kDate);
  for (std::size_t length = 0; length <= page.size(); ++length) parse(std::string_view(page).substr(0, length));
}

}  // namespace hostile_pages
