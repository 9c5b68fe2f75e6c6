#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "explorer/node_tree.h"
#include "store/message_record.h"

/// What a click on a node puts into the window, under the names of its controls.
struct MessageView {
  std::string txtData, txtAuthor, txtSubj, txtAuthorMail;
  std::string body;                     // lines end with CR LF
  std::optional<std::string> status;    // for the first panel; none leaves it as it was
  std::optional<std::int32_t> message;  // the number of the message on show from now on; none keeps the last one
};

MessageView ViewOfMessage(const MessageRecord& message);
/// Of a message whose row is gone from the base.
MessageView ViewOfMissingMessage(std::int32_t number);
/// Of a node that is no message.
MessageView ViewOfGroup(const NodeTree& tree, NodeId node);

/// Turns the line marks of stored bodies into line breaks: "<br>" into one CR LF, then "<p>" into two;
/// letter case counts.
std::string LineMarksToBreaks(std::string_view text);
