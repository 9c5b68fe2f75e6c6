#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "store/message_record.h"

/// Messages written as pages of the six forums, in the code page that the forum sends: Windows-1251, but
/// KOI8-R for ows_ptrv. Line breaks of a text are CR LF.
namespace demo_pages {

/// A message whose date is missing lacks the date's markup. Numbers are not on the pages.
std::string RtsAnPage(const MessageRecord& message);
std::string KdvPage(const MessageRecord& message);
std::string PtrvPage(const MessageRecord& message);
std::string MoyshaPage(const MessageRecord& message);
std::string GeliumPage(const MessageRecord& message);
std::string OwsPage(const MessageRecord& message);

/// The page that holds the address of an ows_ptrv author.
std::string OwsAuthorPage(const MessageRecord& message);

/// The page of a message by the code of its forum. @throws Error 9 for an unknown code
std::string MessagePage(std::string_view kind, const MessageRecord& message);

/// What the forum sends for a number that it does not know.
std::string NotFoundPage(std::string_view kind);
/// What a proxy sends when it cannot reach the forum.
std::string ProxyReport();

/// The front page of rts-an: links to the messages from `first` to `last`, the newest on top.
std::string RtsAnFrontPage(std::int32_t first, std::int32_t last);
/// What kdv answers to "/data.txt".
std::string KdvLastNumber(std::int32_t last);

}  // namespace demo_pages
