#include "demo_forum/demo_site.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "base/cat.h"
#include "base/ru_literal.h"
#include "demo_forum/demo_pages.h"
#include "text/mdl_STR.h"

namespace {

constexpr ForumAddress kForums[] = {{"rts-an", "/default.asp?action=view&id=", "&returnpage=0"},
                                    {"kdv", "/messages/", ".html"},
                                    {"ptrv", "/show.cgi?number=", ""},
                                    {"moysha", "/read.asp?message=", "&view=plain"},
                                    {"gelium", "/read.asp?message=", "&view=plain"},
                                    {"ows_ptrv", "/message.cgi?id=", ""}};
constexpr std::string_view kRtsAn = "rts-an", kKdv = "kdv", kOws = "ows_ptrv";
constexpr std::string_view kAuthor = "/author.cgi?name=";
constexpr std::int32_t kFrontPageLinks = 50;

/// Of a forum's page; 0 when the path is of another form.
std::int32_t NumberIn(const ForumAddress& forum, std::string_view path) {
  if (!path.starts_with(forum.before_number) || !path.ends_with(forum.behind_number)) return 0;
  if (path.size() < forum.before_number.size() + forum.behind_number.size()) return 0;
  path.remove_prefix(forum.before_number.size());
  path.remove_suffix(forum.behind_number.size());
  std::int32_t number = 0;
  const auto [end, error] = std::from_chars(path.data(), path.data() + path.size(), number);
  return error == std::errc() && end == path.data() + path.size() ? number : 0;
}

int Digit(char c) {
  const std::size_t digit = std::string_view("0123456789ABCDEF").find(c);
  return digit == std::string_view::npos ? -1 : static_cast<int>(digit);
}

std::string Unescaped(std::string_view text) {
  std::string bytes;
  for (std::size_t at = 0; at < text.size(); ++at) {
    const int high = text[at] == '%' && at + 2 < text.size() ? Digit(text[at + 1]) : -1;
    const int low = high < 0 ? -1 : Digit(text[at + 2]);
    if (low >= 0) at += 2;
    bytes += low >= 0 ? static_cast<char>(static_cast<unsigned char>(high * 16 + low)) : text[at];
  }
  return bytes;
}

WebAnswer NotFound(std::string_view kind) {
  const bool forum_says_so = kind == kRtsAn || kind == kKdv || kind == "ptrv";  // on a page like any other
  return {.status = forum_says_so ? 200 : 404, .body = demo_pages::NotFoundPage(kind)};
}

}  // namespace

std::span<const ForumAddress> DemoSite::Forums() { return kForums; }

DemoSite::DemoSite(std::size_t messages, std::int32_t seconds_apart, const Clock& clock)
    : clock_(clock), start_(clock.Now()), seconds_apart_(seconds_apart) {
  std::uint32_t seed = 0;
  for (const ForumAddress& forum : kForums)
    forums_.emplace(std::string(forum.kind), ForumMessages(++seed, messages, start_));
}

ForumMessages DemoSite::Messages(std::string_view kind) const {
  const std::lock_guard guard(mutex_);
  return forums_.find(kind)->second;
}

void DemoSite::Grow() {
  if (seconds_apart_ <= 0) return;
  constexpr double kSecondsADay = 86400;
  const double seconds = std::round((clock_.Now().days - start_.days) * kSecondsADay);
  const double due = std::max(0.0, std::floor(seconds / seconds_apart_));
  while (static_cast<double>(posted_) < due) {
    ++posted_;
    const OleDate date{start_.days + static_cast<double>(posted_) * seconds_apart_ / kSecondsADay};
    for (auto& [kind, messages] : forums_) messages.Post(date);
  }
}

WebAnswer DemoSite::Get(std::string_view target) {
  const std::lock_guard guard(mutex_);
  Grow();
  if (target.empty() || target == "/") return TitlePage();
  const std::string_view folder = target.substr(1, target.find('/', 1) - 1);
  for (const ForumAddress& forum : kForums) {
    // The rts-an forum's host is put together of two parts, and so is the folder in its place: any end will do.
    const bool meant = forum.kind == kRtsAn ? folder.starts_with(kRtsAn) : folder == forum.kind;
    if (meant) return ForumPage(forum, target.substr(folder.size() + 1));
  }
  return NotFound("");
}

WebAnswer DemoSite::ForumPage(const ForumAddress& forum, std::string_view path) {
  const ForumMessages& messages = forums_.find(forum.kind)->second;
  const std::int32_t last = messages.Last();
  if (forum.kind == kRtsAn && (path.empty() || path == "/"))
    return {.body = demo_pages::RtsAnFrontPage(std::max(1, last - kFrontPageLinks + 1), last)};
  if (forum.kind == kKdv && path == "/data.txt") return {.type = "text/plain", .body = demo_pages::KdvLastNumber(last)};
  if (forum.kind == kOws && path.starts_with(kAuthor)) return AuthorPage(path.substr(kAuthor.size()));
  const MessageRecord* const message = messages.Find(NumberIn(forum, path));
  if (message == nullptr) return NotFound(forum.kind);
  return {.body = demo_pages::MessagePage(forum.kind, *message)};
}

WebAnswer DemoSite::AuthorPage(std::string_view path) {
  MessageRecord author;
  author.Автор = mdl_STR::Koi8ToWin(Unescaped(path.substr(0, path.find('&'))));
  const std::optional<std::string> email = forums_.find(kOws)->second.EmailOf(author.Автор);
  if (!email) return NotFound(kOws);
  author.АвторMail = *email;
  return {.body = demo_pages::OwsAuthorPage(author)};
}

WebAnswer DemoSite::TitlePage() {
  std::string page = Cat("<html>\r\n<head><title>Учебные форумы</title></head>\r\n<body>\r\n<ul>\r\n"_ru);
  for (const ForumAddress& forum : kForums)
    page +=
        Cat("<li><a href=\"/", forum.kind, forum.before_number, 1, forum.behind_number, "\">", forum.kind, "</a>\r\n");
  return {.type = "text/html; charset=windows-1251", .body = page + "</ul>\r\n</body>\r\n</html>\r\n"};
}
