#include "download_configured/shtml_page.h"

#include "text/dates.h"
#include "text/mdl_STR.h"
#include "text/numbers.h"
#include "text/strings.h"

namespace shtml_page {
namespace {

using mdl_STR::ExtractBetween;

std::string WithoutQuotes(std::string_view text) { return text::ReplaceAll(text, "\"", ""); }

}  // namespace

std::string Subject(std::string_view page) {
  return mdl_STR::DecodeHtmlEntities(ExtractBetween(page, "<title>", "</title>"));
}

std::string ReplyTo(std::string_view page) {
  const std::string_view parent = ExtractBetween(page, "<div align=left>", "</div>");
  const std::string path = WithoutQuotes(ExtractBetween(parent, ": <a href=", ".shtml"));
  const std::string_view name = path.empty() ? std::string_view() : text::LastPiece(path, "/");
  return text::NumberText(text::LenientNumber(name));
}

std::string Author(std::string_view page) {
  const std::string_view bold = ExtractBetween(page, "<b>", "</b>");
  const std::string_view link_text = ExtractBetween(bold, ">", "<");
  return std::string(text::Trim(link_text.empty() ? bold : link_text));
}

std::string Email(std::string_view page) {
  constexpr std::string_view kScheme = "mailto:";
  const std::string_view bold = text::Trim(ExtractBetween(page, "<b>", "</b>"));
  const std::string address = WithoutQuotes(ExtractBetween(bold, "<a href=", ">"));
  if (!text::Contains(address, kScheme)) return {};
  return std::string(text::Mid(address, kScheme.size() + 1));  // by position, wherever the scheme stands
}

std::string Date(std::string_view page) {
  const auto parts = text::Split(text::LastPiece(ExtractBetween(page, "<i>", "</i>"), " "), "/");
  const int day = text::StrictInteger(text::Piece(parts, 0));
  const int month = text::StrictInteger(text::Piece(parts, 1));
  const int year = text::StrictInteger(text::Piece(parts, 2));
  return text::FormatDate(text::DateFromParts(year, month, day), "yyyy-mm-dd");
}

}  // namespace shtml_page
