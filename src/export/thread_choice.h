#pragma once

#include <cstdint>

#include "base/clock.h"
#include "config/user_settings.h"
#include "explorer/node_tree.h"
#include "sql/connection.h"

/// The node that starts the thread of a message, in the tree by thread, whichever view the message was
/// chosen in; in a broken thread the reply whose parent is missing. kNoNode when the tree by thread lacks it.
NodeId ThreadOf(const NodeTree& tree, std::int32_t number);

/// The whole archive by thread, captioned as the settings say: for messages older than the days on show, and
/// where no window has built a tree. @throws SqlError, FormatError when the base cannot be read
NodeTree WholeArchive(sql::Connection& connection, user_settings::TreeSettings settings, const Clock& clock);
