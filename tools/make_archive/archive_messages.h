#pragma once

#include <cstdint>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "store/message_record.h"

/// The messages of a made-up forum in the order of their numbers, the same for the same seed: threads that
/// grow for a while and die, a few busy authors and many rare ones, several years, gaps where the forum
/// deleted messages.
class ArchiveMessages {
 public:
  static constexpr std::uint32_t kShortestBody = 100;

  /// @param longest  characters of a body, from kShortestBody on; one in 5,000 is much longer still
  ArchiveMessages(std::uint32_t seed, std::uint32_t longest = 3'000);

  /// Numbers rise from 1; a message answers an earlier one, which may be missing.
  MessageRecord Next();

 private:
  struct Posted {
    std::int32_t number;
    std::string subject;
  };

  bool Chance(unsigned one_in) { return Below(one_in) == 0; }
  std::uint32_t Below(std::uint32_t end) { return static_cast<std::uint32_t>(std::uint64_t{random_()} * end >> 32); }
  std::string_view Word();
  std::string Words(std::uint32_t count);
  std::string Body();
  std::size_t BodyLength();
  void Answer(MessageRecord& message);
  void Remember(const MessageRecord& message);

  std::mt19937 random_;  // its numbers are laid down by the standard, those of the distributions are not
  std::uint32_t longest_;
  std::int32_t number_ = 0;
  double day_;
  std::vector<std::string> authors_;
  std::vector<Posted> recent_;  // what may still be answered, as a ring
  std::size_t oldest_ = 0;
};
