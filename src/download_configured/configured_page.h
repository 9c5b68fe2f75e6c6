#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "base/clock.h"
#include "download/stored_fields.h"
#include "store/message_record.h"

/// Pages of the forums whose addresses forum.ini gives: "ptrv", "moysha", "gelium" and "ows_ptrv".
namespace configured_page {

/// What the reading of a page tells as it goes on, so that whoever listens has what was read before a
/// failure, and what it asks for.
class Reading {
 public:
  virtual ~Reading() = default;
  /// @param field  a column's name: "Тема", "Автор", "Вответ", "АвторMail" and "Текст", in this order
  /// @param text   a number in plain decimal
  virtual void FieldRead(std::string_view field, std::string_view text) = 0;
  /// Between "Автор" and "Вответ". @param date  none when the text is no date
  virtual void DateRead(std::string_view text, std::optional<OleDate> date) = 0;
  /// The page that holds the author's e-mail, asked for behind all fields where the forum has such pages.
  /// @return an empty one when there is none
  virtual std::string AuthorPage(std::string_view author) = 0;
};

bool KnowsPagesOf(std::string_view kind);
/// Does the e-mail stand on a page of the author's own?
bool HasAuthorPages(std::string_view kind);

/// Cuts a message out of a page that trueMsg calls one; an empty body becomes " ". The page names no picture.
/// @param number  the message asked for; the page does not tell it
/// @return without a date when the page's text is none
/// @throws Error 5 for another kind; what the page's parser throws; Error 6 for a parent's number too large
MessageRecord ParseMessage(std::string_view kind, std::string_view page, std::int32_t number, const Clock& clock,
                           Reading& reading);

/// The message as the base takes it: all texts, even empty ones, and a date when there is one.
StoredFields FieldsToStore(const MessageRecord& message);

}  // namespace configured_page
