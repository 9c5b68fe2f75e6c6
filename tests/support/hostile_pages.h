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
/// Markup, each piece parted from the next by a "|".
inline constexpr std::string_view kPieces =
    "<|>|<>|<b|<b>|</b>|<i>|&|&amp;|&amp;amp;|&#38;|&quot;|&nbsp;|m:|M|m: \r\n\r\n|\r\n|\r|\n|\n: |\t| | \r\n\t|"
    "=|\"|/|;|,|</A>|<A href=|<A href=\"=|\">|<br>|<br><br>|<p>|</blockquote>\r\n|<p>\r\n|<hr|<dd>|"
    "<font size=-1>[|value=\"|previousname|previousdate|<title>|</title|- Форум аналитиков|<DIV class=message>|"
    "<input type=hidden name=\"orig|Views:|[<small>|9|1e9|&H|\0|ма|/default.asp?action=view&id=1&|"
    "/default.asp?action=view&id="_ru;

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

/// Calls `parse` with pages of more than a million bytes that repeat one piece of markup, and with the bare
/// repetition; then with a page cut off at every byte.
template <typename Parse>
void ForEachPage(std::string_view kind, const Parse& parse) {
  constexpr std::size_t kSize = 300'000;  // of each text of the page
  for (const std::string_view piece : text::Split(kPieces, "|")) {
    std::string filling;
    while (filling.size() < kSize) filling += piece;
    parse(filling);
    parse(PageOf(kind, filling));
  }
  const std::string page = PageOf(kind, kDate);
  for (std::size_t length = 0; length <= page.size(); ++length) parse(std::string_view(page).substr(0, length));
}

}  // namespace hostile_pages
