#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

#include "base/file.h"
#include "cli/tool.h"
#include "support/fixed_clock.h"

namespace cli {

struct Outcome {
  int status = 0;
  std::string out, errors;
};

/// The tool as a user calls it, on 15 March 2002.
inline Outcome Kdvbase(const std::vector<std::string>& words) {
  std::ostringstream out, errors;
  DiskFileSystem files;
  const FixedClock clock(2002, 3, 15);
  const int status = RunTool(words, out, errors, files, clock);
  return {status, out.str(), errors.str()};
}

/// A call that prints exactly `out`, and errors that hold `error`.
struct Call {
  std::vector<std::string> words;
  int status = 0;
  std::string out = "", error = "";
};

inline void ExpectCalls(const std::vector<Call>& calls) {
  for (const Call& call : calls) {
    const Outcome outcome = Kdvbase(call.words);
    EXPECT_EQ(outcome.status, call.status) << testing::PrintToString(call.words) << outcome.errors;
    EXPECT_EQ(outcome.out, call.out) << testing::PrintToString(call.words);
    EXPECT_THAT(outcome.errors, testing::HasSubstr(call.error)) << testing::PrintToString(call.words);
  }
}

inline std::string SamplePath(const std::string& name) { return FORUM_SAMPLES "/" + name + ".mdb"; }
inline bool HasSample(const std::string& name) { return std::filesystem::exists(SamplePath(name)); }

}  // namespace cli
