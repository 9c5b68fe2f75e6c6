#include "explorer/search.h"

#include "base/cat.h"
#include "base/cp1251.h"
#include "sample_base.h"

namespace {

using cp1251::FromUtf8;
using cp1251::ToUtf8;

/// Writes down what it is told, in UTF-8.
struct Script : SearchView {
  std::string told;
  std::vector<std::string> results;  // "number subject"
  void ClearResults() override { told += "[cleared]"; }
  void ShowResults(std::span<const FoundMessage> found) override {
    told += Cat("[", found.size(), " shown]");
    for (const FoundMessage& message : found) results.push_back(Cat(message.Код, " ", ToUtf8(message.Тема)));
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
};

TEST_F(SearchTest, FindsTextInBodiesAndSubjectsLetterCaseIgnored) {
  for (const char* const sample : {"ptrv_2002", "kdv_2002"}) {
    Open(sample);
    for (const std::string needle : {"РУБЛЬ", "re: ", "%", "ы, а", "нет такого текста нигде"}) {
      const std::vector<std::string> want = Listed(needle);
      const Script script = SearchFor(needle);
      EXPECT_EQ(script.results, want) << needle;
      EXPECT_EQ(script.told, Cat("[cleared][Ждите.....][Поиск закончен][", want.size(), " shown][Найдено ", want.size(),
                                 " записей. Они доступны в разделе 'Результаты поиска']"));
    }
    EXPECT_FALSE(Listed("РУБЛЬ").empty());
    EXPECT_EQ(SearchFor("р?бль").results, Listed("рубль"));  // wildcards count
  }
  for (const std::string blanks : {"", "   "}) EXPECT_EQ(SearchFor(blanks).told, "");  // and ask no base
  EXPECT_EQ(ToUtf8(SearchStatement("a' b")),
            "select * from [База] where [Текст] Like '*a' b*' or [Тема] Like '*a' b*'");
}

TEST(TextToMark, IsWhatWasTypedUnlessItHoldsWildcards) {
  for (const std::string_view typed : {"", "a", "5%", "]!-"}) EXPECT_EQ(TextToMark(typed), typed);
  for (const std::string_view typed : {"a*", "?", "#1", "[a]"}) EXPECT_EQ(TextToMark(typed), "") << typed;
}

}  // namespace
