#pragma once

#include <cstdint>
#include <span>

#include "store/message_base.h"
#include "store/message_edits.h"

/// Changes to the messages of the open base.
class BaseEdits : public MessageEdits {
 public:
  /// @param base  outlives this
  explicit BaseEdits(MessageBase& base) : base_(base) {}
  /// @throws also Error 91 when no base is open, FileError 3045 when another program writes
  void Delete(std::span<const std::int32_t> numbers) override;

 private:
  MessageBase& base_;
};
