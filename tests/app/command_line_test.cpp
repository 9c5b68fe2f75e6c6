#include "app/command_line.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

TEST(CommandLine, SaysWhatToOpenAndWhere) {
  const struct {
    std::vector<const char*> arguments;
    const char *data_dir, *base;
  } cases[] = {
      {{}, "", ""},
      {{"/bases/kdv 2002.mdb"}, "", "/bases/kdv 2002.mdb"},
      {{"--data-dir=/forum data", "kdv.mdb"}, "/forum data", "kdv.mdb"},
      {{"kdv.mdb", "--data-dir=."}, ".", "kdv.mdb"},
      {{"--", "--data-dir=.mdb"}, "", "--data-dir=.mdb"},
  };
  for (const auto& c : cases) {
    const CommandLine line = ParseCommandLine(c.arguments);
    EXPECT_EQ(line.data_dir, c.data_dir);
    EXPECT_EQ(line.base, c.base);
  }
}

TEST(CommandLine, RefusesWhatItDoesNotKnow) {
  const std::vector<const char*> cases[] = {{"--data-dri=."}, {"-x"}, {"a.mdb", "b.mdb"}, {"--data-dir"}};
  for (const auto& arguments : cases) EXPECT_THROW(ParseCommandLine(arguments), UsageError) << arguments[0];
}

}  // namespace
