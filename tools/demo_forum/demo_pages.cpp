#include "demo_forum/demo_pages.h"

#include <array>

#include "base/cat.h"
#include "base/error.h"
#include "base/ru_literal.h"
#include "demo_forum/demo_markup.h"
#include "text/dates.h"
#include "text/mdl_STR.h"
#include "text/strings.h"

namespace demo_pages {
namespace {

constexpr std::array<std::string_view, 12> kEnglishMonths = {"January",   "February", "March",    "April",
                                                             "May",       "June",     "July",     "August",
                                                             "September", "October",  "November", "December"};
constexpr std::array<std::string_view, 7> kEnglishWeekdays = {"Sunday",   "Monday", "Tuesday", "Wednesday",
                                                              "Thursday", "Friday", "Saturday"};

std::string_view EnglishMonth(OleDate date) {
  return kEnglishMonths[static_cast<std::size_t>(ole_date::ToCivil(date).month - 1)];
}

std::string_view EnglishWeekday(OleDate date) {
  return kEnglishWeekdays[static_cast<std::size_t>(ole_date::Weekday(date) - 1)];
}

// A link of the page engine that moysha and gelium share.
std::string ShtmlParent(const MessageRecord& message) {
  if (message.Вответ == 0) return {};
  return Cat("<div align=left>Ответ на: <a href=\"/board/messages/"_ru, message.Вответ,
             ".shtml\">сообщение</a></div>\r\n"_ru);
}

std::string ShtmlAuthor(const MessageRecord& message) {
  const std::string nick = InAttribute(message.Автор);
  if (message.АвторMail.empty()) return Cat("<b>", nick, "</b>\r\n");
  return Cat("<b><a href=\"mailto:", InAttribute(message.АвторMail), "\">", nick, "</a></b>\r\n");
}

std::string ShtmlHead(const MessageRecord& message) {
  std::string head =
      Cat("<html>\r\n<head><title>", InText(message.Тема), "</title></head>\r\n<body>\r\n", ShtmlAuthor(message));
  if (message.Дата)
    head += Cat("<i>Дата: "_ru, text::FormatDate(message.Дата, "h:mm dd"), "/", text::FormatDate(message.Дата, "mm"),
                "/", text::FormatDate(message.Дата, "yy"), "</i>\r\n");
  return head + ShtmlParent(message);
}

constexpr std::string_view kShtmlFoot = "<a href=\"/board/index.shtml\">К списку</a>\r\n</body>\r\n</html>\r\n"_ru;

// The quotation of the forum's header in front of the body, and the link to the parent.
std::string PtrvDivision(const MessageRecord& message) {
  const std::string link =
      message.АвторMail.empty() ? std::string("author.asp?id=0") : Cat("mailto:", InAttribute(message.АвторMail));
  const std::string parent =
      message.Вответ == 0 ? std::string() : Cat("<A href=\"board.asp?msg=", message.Вответ, "\">сообщение</A> "_ru);
  return Cat("<DIV class=message><A href=\"", link, "\">", InAttribute(message.Автор), "</A> ", parent,
             "12:30 pm: <BR><BR>", InLines(message.Текст, "<BR>"), "</DIV>\r\n");
}

std::string OwsSubject(const MessageRecord& message) {
  if (message.Картинка.empty()) return Cat("<B>", InText(message.Тема), "</B>");
  return Cat("<B><IMG src=\"/icons/", InAttribute(message.Картинка), ".gif\">", InText(message.Тема), "</B>");
}

std::string OwsParent(const MessageRecord& message) {
  if (message.Вответ == 0) return Cat("[<small>нет</small>]"_ru);
  return Cat("[<small><a href=\"/?read=1;post="_ru, message.Вответ, ";all\">сообщение</a></small>]"_ru);
}

std::string OwsDate(OleDate date) {
  return Cat(" <br><br> ", EnglishMonth(date), "&nbsp;", text::FormatDate(date, "d"), ",&nbsp;",
             text::FormatDate(date, "yyyy"), " <br><br> ");
}

}  // namespace

std::string RtsAnPage(const MessageRecord& message) {
  const std::string subject = text::ReplaceAll(message.Тема, "\"", "&quot;");
  std::string page =
      Cat("<html>\r\n<head>\r\n<title>", subject, " - Форум аналитиков</title>\r\n</head>\r\n<body>\r\n"_ru,
          "<blockquote>\r\nАвтор:&nbsp;<img src=\"/images/"_ru, message.Картинка, ".gif\" align=\"middle\">&nbsp;<b>",
          InAttribute(message.Автор), "</b>&nbsp;<a href=\"mailto:", InAttribute(message.АвторMail),
          "?subject=\">E-mail</a>");
  if (message.Дата) page += Cat("\r\n<font size=-1>[", text::FormatDate(message.Дата, "d mmm yyyy h:mm"), "]</font>");
  page += "\r\n";
  if (message.Вответ != 0)
    page += Cat("В ответ на: <a href=\"/default.asp?action=view&id="_ru, message.Вответ, "\">сообщение</a>\r\n"_ru);
  return Cat(page, "</blockquote>\r\n<blockquote>\r\n<p>\r\n", text::ReplaceAll(message.Текст, "\r\n", "<br>"),
             "</blockquote>\r\n<hr size='2' noshade>\r\n<BR><CENTER>Форум</CENTER>\r\n</body>\r\n</html>\r\n"_ru);
}

std::string RtsAnFrontPage(std::int32_t first, std::int32_t last) {
  std::string page = Cat("<html>\r\n<head><title>Форум аналитиков</title></head>\r\n<body>\r\n<ul>\r\n"_ru);
  for (std::int32_t number = last; number >= first; --number)
    page +=
        Cat("<li><a href=\"/default.asp?action=view&id=", number, "&returnpage=0\">Сообщение "_ru, number, "</a>\r\n");
  return page + "</ul>\r\n</body>\r\n</html>\r\n";
}

// The forum ends its lines with LF; the reply form quotes every line of the message.
std::string KdvPage(const MessageRecord& message) {
  const auto lines = [](std::string_view text) { return text::ReplaceAll(text, "\r\n", "\n"); };
  const auto input = [&](std::string_view name, std::string_view value) {
    return Cat("<input type=hidden name=\"", name, "\" value=\"", lines(InAttribute(value)), "\">\n");
  };
  std::string page =
      Cat("<html>\n<head>\n<title>", lines(InText(message.Тема)), "</title>\n</head>\n<body>\n<form method=post>\n");
  if (message.Вответ != 0) page += Cat("в ответ на: <a href=\""_ru, message.Вответ, ".html\">сообщение</a>\n"_ru);
  page += input("origname", message.Автор);
  if (!message.АвторMail.empty()) page += input("origemail", message.АвторMail);
  if (message.Дата)
    page += input("origdate", Cat(text::FormatDate(message.Дата, "dddd, d mmmm yyyy"), " в "_ru,
                                  text::FormatDate(message.Дата, "hh:mm:ss")));
  if (!message.Текст.empty())
    page += Cat("<textarea name=body COLS=55 ROWS=6>\n: ", text::ReplaceAll(lines(message.Текст), "\n", "\n: "),
                "</textarea>\n");
  return page + "</form>\n</body>\n</html>\n";
}

std::string KdvLastNumber(std::int32_t last) { return Cat(last, "\n"); }

std::string PtrvPage(const MessageRecord& message) {
  std::string page = Cat("<html>\r\n<head><title>", InText(message.Тема),
                         "</title></head>\r\n<body>\r\n<form>\r\n<input type=hidden name=\"previousname\" value=\"",
                         InAttribute(message.Автор), "\">\r\n");
  if (message.Дата)
    page += Cat("<input type=hidden name=\"previousdate\" value=\"", EnglishWeekday(*message.Дата), ", ",
                EnglishMonth(*message.Дата), " ", text::FormatDate(message.Дата, "d"), "\">\r\n");
  return Cat(page, "</form>\r\n", PtrvDivision(message), "</body>\r\n</html>\r\n");
}

std::string MoyshaPage(const MessageRecord& message) {
  const std::string body = text::ReplaceAll(InLines(message.Текст, "<P>"), " :-)", "<font face=Wingdings>J</font>");
  return Cat(ShtmlHead(message), "<DIV class=divMessage><dl><dd>", body, "<hr></dl></div>\r\n", kShtmlFoot);
}

std::string GeliumPage(const MessageRecord& message) {
  return Cat(ShtmlHead(message), "<DIV><DL><DD>", InLines(message.Текст, "<P>"),
             "</DD></DL><P>Ответы и комментарии:</div>\r\n"_ru, kShtmlFoot);
}

std::string OwsPage(const MessageRecord& message) {
  constexpr std::string_view kIndent = "                  ";
  const std::string body = InLines(message.Текст, Cat("<BR>\r\n", kIndent));
  const std::string page =
      Cat("<html>\r\n<body>\r\n<TABLE><TBODY><TR><TD><big><a href=\"/?user\">", InText(message.Автор), "</a></big>",
          message.Дата ? OwsDate(*message.Дата) : std::string(), "<small>online</small><BR>Views: 12</TD>\r\n<TD>",
          OwsSubject(message), " ", OwsParent(message), "\r\n<HR SIZE=1 noshade>\r\n<FONT size=2>\r\n", kIndent, body,
          "</FONT></TD></TR></TBODY></TABLE><BR>\r\n</body>\r\n</html>\r\n");
  return mdl_STR::WinToKoi8(page);
}

std::string OwsAuthorPage(const MessageRecord& message) {
  return mdl_STR::WinToKoi8(Cat("<html>\r\n<body>\r\n<a href=\"mailto:", InAttribute(message.АвторMail),
                                "\">E-mail</a><br>\r\n<big>", InText(message.Автор),
                                "</big>\r\n</body>\r\n</html>\r\n"));
}

std::string MessagePage(std::string_view kind, const MessageRecord& message) {
  constexpr struct {
    std::string_view kind;
    std::string (*page)(const MessageRecord&);
  } kForums[] = {{"rts-an", RtsAnPage},  {"kdv", KdvPage},       {"ptrv", PtrvPage},
                 {"moysha", MoyshaPage}, {"gelium", GeliumPage}, {"ows_ptrv", OwsPage}};
  for (const auto& forum : kForums)
    if (forum.kind == kind) return forum.page(message);
  throw Error(error_number::kNoSuchItem, "Нет такого форума"_ru);
}

std::string NotFoundPage(std::string_view kind) {
  if (kind == "rts-an")
    return Cat(
        "<html>\r\n<head><title>Форум аналитиков</title></head>\r\n<body>\r\n<font size=-1>[30/12/1899 ]</font>\r\n"
        "</body>\r\n</html>\r\n"_ru);
  if (kind == "kdv") return "<HTML><HEAD><TITLE>WebBoard: Not available</TITLE></HEAD></HTML>\n";
  if (kind == "ptrv")
    return "<html>\r\n<body>\r\n<form>*previousname* on *previousdate*:</form>\r\n</body>\r\n</html>\r\n";
  return "<HTML><HEAD><TITLE>404 Not Found</TITLE></HEAD><BODY><H1>Not Found (404)</H1></BODY></HTML>\r\n";
}

std::string ProxyReport() {
  return "<html><head><title>Proxy Server Report: Default</title></head><body>404 Not Found</body></html>\r\n";
}

}  // namespace demo_pages
