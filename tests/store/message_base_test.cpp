#include "store/message_base.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "base/cp1251.h"
#include "base/error.h"
#include "store/message_rows.h"
#include "support/error_of.h"
#include "support/program_stage.h"

namespace {

class MessageBaseTest : public testing::Test, protected ProgramStage {
 protected:
  void SetUp() override {
    if (!std::filesystem::exists(std::string(FORUM_SAMPLES) + "/kdv_2002.mdb"))
      GTEST_SKIP() << "the sample bases are absent";
    folder_.Put("forum.ini",
                "[FORUMS]\r\nmax=2\r\nf1=kdv\r\nf2=ptrv\r\n[kdv]\r\nNAME=One\r\nDOMAIN=one.example\r\n"
                "[ptrv]\r\nNAME=Two\r\nDOMAIN=two.example\r\n");
  }

  std::string Copy(const std::string& sample, const std::string& name) {
    std::filesystem::copy_file(std::string(FORUM_SAMPLES) + "/" + sample + ".mdb", folder_ / name);
    return folder_ / name;
  }
  bool HasMessage() { return ReadMessage(base_.connection(), 1).has_value(); }

  MessageBase base_{files_, clock_, ini_};
};

TEST_F(MessageBaseTest, TheFileNameTellsTheForum) {
  const struct {
    std::string name;
    std::size_t forum;
    std::string kind, host, suffix;
  } cases[] = {
      {"KDV_2002.MDB", 1, "kdv", "one.example", " - One"},
      {"ptrv.mdb", 2, "ptrv", "two.example", " - Two"},
      {"my_kdv.mdb", 0, "", "", ""},  // a code that merely occurs in the name
  };
  for (const auto& c : cases) {
    const std::string path = Copy("moysha_2001", c.name);
    base_.OpenBase(path);
    EXPECT_EQ(base_.forum(), c.forum) << c.name;
    EXPECT_EQ(base_.forum_kind(), c.kind);
    EXPECT_EQ(base_.host(), c.host);
    EXPECT_EQ(base_.title_suffix(), c.suffix);
    EXPECT_EQ(base_.Caption(), c.forum == 0 ? "" : c.suffix.substr(3) + " (" + path + ")");
  }
}

TEST_F(MessageBaseTest, AFileThatCannotBeOpenedLeavesTheBaseBefore) {
  base_.OpenBase(Copy("kdv_2002", "kdv.mdb"));
  folder_.Put("ptrv_text.mdb", "not a base at all");
  std::filesystem::create_directory(folder_ / "ptrv_folder.mdb");
  Copy("refuse_password_2000", "ptrv_locked.mdb");
  for (const char* name : {"ptrv_absent.mdb", "ptrv_text.mdb", "ptrv_folder.mdb", "ptrv_locked.mdb"}) {
    EXPECT_THROW(base_.OpenBase(folder_ / name), Error) << name;
    EXPECT_EQ(base_.forum_kind(), "kdv") << name;
    EXPECT_TRUE(HasMessage()) << name;
  }
  // One without the objects of a base takes its place, but not its forum.
  const std::string path = Copy("access97_types", "ptrv.mdb");
  EXPECT_THROW(base_.OpenBase(path), Error);
  EXPECT_EQ(base_.path(), path);
  EXPECT_EQ(base_.forum_kind(), "kdv");
  EXPECT_THROW(HasMessage(), SqlError);
}

TEST_F(MessageBaseTest, AMessageIsReadWholeOrNotAtAll) {
  Copy("ptrv_2002", "ptrv.mdb");
  base_.OpenBase(folder_ / "PTRV.mdb");  // the spelling on the disk is found
  const auto message = ReadMessage(base_.connection(), 1);
  ASSERT_TRUE(message.has_value());
  EXPECT_EQ(message->Код, 1);
  EXPECT_EQ(message->Автор, "");              // Null
  EXPECT_FALSE(message->Дата.has_value());    // Null
  EXPECT_GT(message->Текст.size(), 10'000u);  // a chain of pages
  EXPECT_FALSE(ReadMessage(base_.connection(), 9'999'999).has_value());
}

TEST(MessageBase, WithoutOneThereIsError91AndTheFailureTextNamesTheFile) {
  ProgramStage stage;
  MessageBase none(stage.files_, stage.clock_, stage.ini_);
  EXPECT_EQ(ErrorOf([&] { none.connection(); }), error_number::kBaseNotOpen);
  EXPECT_EQ(cp1251::ToUtf8(OpenFailureText("/базы/kdv.mdb")),
            "Ошибка при загрузке /базы/kdv.mdb\r\nПожалуйста, выберите другой файл...");
}

}  // namespace
