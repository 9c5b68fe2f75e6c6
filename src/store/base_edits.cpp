#include "store/base_edits.h"

void BaseEdits::Delete(std::span<const std::int32_t> numbers) {
  const MessageBase::Writing writing(base_);
  DeleteMessages(base_.connection(), numbers);
}
