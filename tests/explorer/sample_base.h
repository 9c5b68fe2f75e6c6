#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>

#include "store/message_base.h"
#include "support/listing.h"
#include "support/program_stage.h"

/// A copy of a real base, opened, and the listing of its messages by their numbers. Skips without samples.
class SampleBase : public testing::Test, protected ProgramStage {
 protected:
  SampleBase() : ProgramStage(FixedClock(1999, 3, 20)) {}
  // Places of the fields in a row of the listing.
  enum Field : std::size_t { kКод, kВответ, kТема, kДата, kАвтор, kАвторMail, kТекст };

  void SetUp() override { Open("ptrv_2002"); }
  void Open(const std::string& name) {
    const std::string sample = std::string(FORUM_SAMPLES) + "/" + name, copy = folder_ / (name + ".mdb");
    if (!std::filesystem::exists(sample + ".mdb")) GTEST_SKIP() << "no sample base " << sample;
    std::filesystem::copy_file(sample + ".mdb", copy, std::filesystem::copy_options::skip_existing);
    base_.OpenBase(copy);
    listed_ = ReadListingFile(sample + ".jsonl").at(0).rows;
    std::sort(listed_.begin(), listed_.end(), [](const auto& a, const auto& b) { return a[kКод] < b[kКод]; });
  }
  /// A text of the listing in UTF-8; Null is empty.
  static std::string TextOf(const nlohmann::json& value) {
    return value.is_null() ? std::string() : value.get<std::string>();
  }

  MessageBase base_{files_, clock_, ini_};
  std::vector<nlohmann::json> listed_;
};
