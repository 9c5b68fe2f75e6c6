#include "explorer/search.h"

#include "base/cat.h"
#include "base/cp1251.h"
#include "base/error.h"
#include "base/ru_literal.h"
#include "sample_base.h"

namespace {

using cp1251::FromUtf8;
using cp1251::ToUtf8;

/// Writes down what it is told, in UTF-8.
struct Script : SearchView {
  std::string told;
  std::vector<FoundMessage> results;
  void ClearResults() override { told += "[cleared]"; }
  void ShowResults(std::span<const FoundMessage> found) override {
    told += Cat("[", found.size(), " shown]");
    results.assign(found.begin(), found.end());
  }
  void SetStatus(std::string_view text) override { told += Cat("[", ToUtf8(text), "]"); }
};

class SearchTest : public SampleBase {
 protected:
  Script SearchFor(const std::string& typed) {
    Script script;
    NoProgress progress;
    Search(base_, FromUtf8(typed), progress, script);
    return script;
  }
  /// Every message with the text in its subject or body, as "number subject".
  std::vector<std::string> Listed(const std::string& needle) const {
    const std::string folded = cp1251::Folded(FromUtf8(needle));
    const auto holds = [&](const nlohmann::json& text) {
      return cp1251::Folded(FromUtf8(TextOf(text))).find(folded) != std::string::npos;
    };
    std::vector<std::string> lines;
    for (const auto& row : listed_)
      if (holds(row[kТекст]) || holds(row[kТема])) lines.push_back(Cat(row[kКод].get<int>(), " ", TextOf(row[kТема])));
    return lines;
  }
  static std::vector<std::string> Lines(const std::vector<FoundMessage>& found) {
    std::vector<std::string> lines;
    for (const FoundMessage& message : found) lines.push_back(Cat(message.Код, " ", ToUtf8(message.Тема)));
    return lines;
  }
};

TEST_F(SearchTest, FindsTextInBodiesAndSubjectsLetterCaseIgnored) {
  for (const char* const sample : {"ptrv_2002", "kdv_2002"}) {
    std::filesystem::remove(folder_ / "base.mdb");
    ASSERT_NO_FATAL_FAILURE(Open(sample));
    if (IsSkipped()) return;
    for (const std::string needle : {"РУБЛЬ", "re: ", "%", "ы, а", "нет такого текста нигде"}) {
      const std::vector<std::string> want = Listed(needle);
      const Script script = SearchFor(needle);
      EXPECT_EQ(Lines(script.results), want) << needle;
      EXPECT_EQ(script.told, Cat("[cleared][Ждите.....][Поиск закончен][", want.size(), " shown][Найдено ", want.size(),
                                 " записей. Они доступны в разделе 'Результаты поиска']"));
    }
    EXPECT_FALSE(Listed("РУБЛЬ").empty());
    EXPECT_EQ(Lines(SearchFor("р?бль").results), Listed("рубль"));  // wildcards count
  }
}

TEST_F(SearchTest, BlanksAloneChangeNothing) {
  for (const std::string typed : {"", "   "}) EXPECT_EQ(SearchFor(typed).told, "");  // and ask no base
}

TEST_F(SearchTest, AnApostropheEndsTheText) {
  ASSERT_NO_FATAL_FAILURE(Open("ptrv_2002"));
  if (IsSkipped()) return;
  Script script;
  NoProgress progress;
  try {
    Search(base_, "it's", progress, script);
    FAIL() << "no error";
  } catch (const SqlError& error) {
    EXPECT_EQ(error.number(), error_number::kBadStatement);
  }
  EXPECT_EQ(script.told, "[cleared][Ждите.....][Поиск не выполнен]");
  EXPECT_EQ(ToUtf8(SearchStatement("a' b")),
            "select * from [База] where [Текст] Like '*a' b*' or [Тема] Like '*a' b*'");
}

TEST(TextToMark, IsWhatWasTypedUnlessItHoldsWildcards) {
  for (const std::string_view typed : {"", "a", "5%", "]!-"}) EXPECT_EQ(TextToMark(typed), typed);
  for (const std::string_view typed : {"a*", "?", "#1", "[a]"}) EXPECT_EQ(TextToMark(typed), "") << typed;
}

TEST_F(SearchTest, AStoppedSearchKeepsNothing) {
  ASSERT_NO_FATAL_FAILURE(Open("ptrv_2002"));
  if (IsSkipped()) return;
  struct : Progress {
    bool Advance(int) override { return false; }
  } stop;
  Script script;
  Search(base_, "а"_ru, stop, script);
  EXPECT_EQ(script.told, "[cleared][Ждите.....][Поиск остановлен]");
}

}  // namespace
