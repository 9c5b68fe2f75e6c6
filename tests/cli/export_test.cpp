#include <gtest/gtest.h>

#include <filesystem>

#include "cli/run_tool.h"
#include "support/temp_folder.h"

namespace cli {
namespace {

TEST(Export, NamesTheFileThatHoldsTheWholeThread) {
  const std::string base = FORUM_SAMPLES "/kdv_2002.mdb";
  if (!std::filesystem::exists(base)) GTEST_SKIP() << "no sample base " << base;
  const TempFolder folder;
  const std::string taken = folder.Put("taken");
  const std::string file = folder / "kdv_2002/Бы сапо.xml";  // of messages 10, 19 and 47
  const struct {
    std::vector<std::string> words;
    int status;
    std::string out, error;
  } cases[] = {{{base, "10"}, 0, file + "\n", ""},
               {{base, "47", "--out", folder / "new/folder"}, 0, folder / "new/folder/Бы сапо.xml" + "\n", ""},
               {{base, "десять"}, 2, "", "Не номер"},
               {{base, "9999999"}, 1, "", "нет сообщения с номером 9999999"},
               {{base, "10", "--out", taken}, 1, "", "неполон или не создан"}};
  for (const auto& c : cases) {
    std::vector<std::string> words = {"export", "--data-dir", folder.path()};
    words.insert(words.end(), c.words.begin(), c.words.end());
    const Outcome outcome = Kdvbase(words);
    EXPECT_EQ(outcome.status, c.status) << outcome.errors;
    EXPECT_EQ(outcome.out, c.out);
    EXPECT_NE(outcome.errors.find(c.error), std::string::npos) << outcome.errors;
  }
  EXPECT_NE(folder.Get("new/folder/Бы сапо.xml"), "");
  EXPECT_EQ(folder.Get("new/folder/Бы сапо.xml"), folder.Get("kdv_2002/Бы сапо.xml"));
}

}  // namespace
}  // namespace cli
