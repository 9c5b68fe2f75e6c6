#pragma once

#include <cstdint>
#include <string_view>

#include "base/clock.h"
#include "download/stored_fields.h"
#include "store/message_record.h"

/// Pages of the rts-an forum.
namespace rts_an {

/// @return a page_code: a page without a message holds no subject before the forum's name in its title,
///         no date, or a server's "not found"
int trueMsg(std::string_view page);

/// Cuts a message out of a page that trueMsg calls one; missing markers leave fields empty, an empty
/// body becomes CR LF.
/// @param number  the message asked for; the page does not tell it
/// @param step    the step of the import under way, 2 to 18; tells where a failure happened
/// @throws Error 9 or ConversionError 13 (step 15: no date), Error 6 (step 17: a parent's number too large)
MessageRecord ParseMessage(std::string_view page, std::int32_t number, const Clock& clock, int& step);

/// The message as the base takes it: a nick and an e-mail only when there are some.
StoredFields FieldsToStore(const MessageRecord& message);

/// The highest message number that the front page links to; 0 when it links to none. A link whose number is
/// not cleanly enclosed ends the search. @throws Error 6 for a number too large
std::int32_t HighestNumber(std::string_view front_page);

}  // namespace rts_an
