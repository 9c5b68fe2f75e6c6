#pragma once

#include <cstdint>
#include <string_view>

#include "base/clock.h"
#include "download/stored_fields.h"
#include "store/message_record.h"

/// Pages of the kdv forum.
namespace kdv {

/// @return a page_code; any page that is no server's "not found" counts as a message
int trueMsgKDV(std::string_view page);

/// Cuts a message out of a page; what the page lacks stays empty, but an empty body becomes CR LF, an empty
/// subject "(...пусто...)", and a date that cannot be read the zero date. The page names no picture.
/// @param number  the message asked for; the page does not tell it
/// @param step    the step of the import under way, 2 to 6; tells where a failure happened
/// @throws Error 6 (step 4: a parent's number too large)
MessageRecord ParseMessage(std::string_view page, std::int32_t number, const Clock& clock, int& step);

/// The message as the base takes it: a nick and an e-mail only when there are some.
StoredFields FieldsToStore(const MessageRecord& message);

}  // namespace kdv
