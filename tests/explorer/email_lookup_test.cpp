#include "explorer/email_lookup.h"

#include <set>

#include "base/cp1251.h"
#include "base/error.h"
#include "sample_base.h"

namespace {

class EmailLookup : public SampleBase {
 protected:
  /// In UTF-8; none is "-".
  std::string AnswerFor(const std::string& nick) {
    return cp1251::ToUtf8(LookUpEmails(base_.connection(), cp1251::FromUtf8(nick)).value_or("-"));
  }
};

TEST_F(EmailLookup, ListsEveryAddressOfAnAuthorOnce) {
  for (const char* const sample : {"ptrv_2002", "kdv_2002"}) {
    Open(sample);
    const auto author = std::find_if(listed_.begin(), listed_.end(),
                                     [](const auto& row) { return TextOf(row[kАвторMail]).size() > 3; });
    ASSERT_NE(author, listed_.end());
    const std::string nick = TextOf((*author)[kАвтор]);
    std::set<std::string> addresses;
    for (const auto& row : listed_)
      if (TextOf(row[kАвтор]) == nick && !TextOf(row[kАвторMail]).empty()) addresses.insert(row[kАвторMail]);
    std::string list = " имеет следующие адреса : \r\n\r\n";
    for (const std::string& address : addresses) list += address + "\r\n";
    EXPECT_EQ(AnswerFor(nick), nick + list);
    std::string loud = cp1251::FromUtf8(nick);
    for (char& c : loud) c = cp1251::Upper(c);
    EXPECT_EQ(AnswerFor(cp1251::ToUtf8(loud) + "  "), cp1251::ToUtf8(loud) + "  " + list);
  }
}

TEST_F(EmailLookup, AnswersForEveryNick) {
  for (const char* blanks : {"", "   "}) EXPECT_EQ(AnswerFor(blanks), "-");
  EXPECT_EQ(AnswerFor("Никто и никогда"),
            "Никто и никогда за время своего присутствия на форуме не засветил ни одного своего E-mail адреса");
  EXPECT_THROW(AnswerFor("o'neil"), SqlError);
}

}  // namespace
