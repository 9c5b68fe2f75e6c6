#pragma once

#include <string>
#include <string_view>

/// The page engine of the moysha and gelium forums: all fields but the body.
namespace shtml_page {

std::string Subject(std::string_view page);
/// The parent's number as decimal text; "0" when the page links to none.
std::string ReplyTo(std::string_view page);
std::string Author(std::string_view page);
/// Empty when the author is not a mail link.
std::string Email(std::string_view page);
/// As "yyyy-mm-dd". @throws Error 9 when the date has not three parts, ConversionError 13 when one is no
///         number, Error 5 or 6 when one is out of range
std::string Date(std::string_view page);

}  // namespace shtml_page
