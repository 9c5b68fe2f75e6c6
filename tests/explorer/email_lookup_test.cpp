#include "explorer/email_lookup.h"

#include "base/cat.h"
#include "base/cp1251.h"
#include "base/error.h"
#include "sample_base.h"

namespace {

class EmailLookup : public SampleBase {
 protected:
  /// In UTF-8; none is "-".
  std::string AnswerFor(const std::string& nick) {
    const auto answer = LookUpEmails(base_.connection(), cp1251::FromUtf8(nick));
    return answer ? cp1251::ToUtf8(*answer) : "-";
  }
};

TEST_F(EmailLookup, ListsEveryAddressOfAnAuthorOnce) {
  for (const char* const sample : {"ptrv_2002", "kdv_2002"}) {
    std::filesystem::remove(folder_ / "base.mdb");
    ASSERT_NO_FATAL_FAILURE(Open(sample));
    if (IsSkipped()) return;
    const auto author = std::find_if(listed_.begin(), listed_.end(),
                                     [](const auto& row) { return TextOf(row[kАвторMail]).size() > 3; });
    ASSERT_NE(author, listed_.end());
    const std::string nick = TextOf((*author)[kАвтор]);
    std::vector<std::string> addresses;
    for (const auto& row : listed_)
      if (TextOf(row[kАвтор]) == nick && !TextOf(row[kАвторMail]).empty()) addresses.push_back(row[kАвторMail]);
    std::sort(addresses.begin(), addresses.end());
    addresses.erase(std::unique(addresses.begin(), addresses.end()), addresses.end());
    std::string list;
    for (const std::string& address : addresses) list += address + "\r\n";
    EXPECT_EQ(AnswerFor(nick), nick + " имеет следующие адреса : \r\n\r\n" + list);
    const std::string loud = cp1251::ToUtf8([&] {
      std::string text = cp1251::FromUtf8(nick);
      for (char& c : text) c = cp1251::Upper(c);
      return text;
    }());
    EXPECT_EQ(AnswerFor(loud + "  "), loud + "   имеет следующие адреса : \r\n\r\n" + list);
  }
}

TEST_F(EmailLookup, AnswersForEveryNick) {
  ASSERT_NO_FATAL_FAILURE(Open("ptrv_2002"));
  if (IsSkipped()) return;
  const std::string none = " за время своего присутствия на форуме не засветил ни одного своего E-mail адреса";
  EXPECT_EQ(AnswerFor(""), "-");
  EXPECT_EQ(AnswerFor("   "), "-");
  EXPECT_EQ(AnswerFor("Никто и никогда"), "Никто и никогда" + none);
  EXPECT_THROW(AnswerFor("o'neil"), SqlError);
}

}  // namespace
