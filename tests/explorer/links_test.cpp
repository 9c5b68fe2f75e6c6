#include "explorer/links.h"

#include <gtest/gtest.h>

#include "base/ru_literal.h"

namespace {

/// Each link as "[shown|target]" within the text.
std::string Marked(std::string_view text) {
  std::string marked;
  std::size_t from = 0;
  for (const LinkSpan& link : FindLinks(text)) {
    marked.append(text.substr(from, link.start - from));
    marked += "[" + std::string(text.substr(link.start, link.length)) + "|" + link.target + "]";
    from = link.start + link.length;
  }
  return marked.append(text.substr(from));
}

TEST(Links, AreWhereAReaderSeesThem) {
  const struct {
    std::string_view text, want;
  } cases[] = {
      {"", ""},
      {"http://", "http://"},
      {"http:// x", "http:// x"},
      {"www.", "www."},
      {"www.x", "www.x"},
      {"mailto:nobody", "mailto:nobody"},
      {"see http://a.ru/x?y=1&z=2.", "see [http://a.ru/x?y=1&z=2|http://a.ru/x?y=1&z=2]."},
      {"HTTPS://A.ru", "[HTTPS://A.ru|HTTPS://A.ru]"},
      {"(www.a.ru), http://b", "([www.a.ru|http://www.a.ru]), [http://b|http://b]"},
      {"http://a/(b) http://a/[b])", "[http://a/(b)|http://a/(b)] [http://a/[b]|http://a/[b]])"},
      {"xhttp://a awww.a.ru", "xhttp://a awww.a.ru"},
      {"http://www.a.ru", "[http://www.a.ru|http://www.a.ru]"},
      {"http://a.ru/я, да"_ru, "[http://a.ru/|http://a.ru/]я, да"_ru},
      {"http://a\r\nb", "[http://a|http://a]\r\nb"},
      {"<http://a>", "<[http://a|http://a]>"},
      {" href=\"http://a/b.\" target=_blank>x", " href=\"[http://a/b.|http://a/b.]\" target=_blank>x"},
      {" HREF='www.a.ru/(x'>", " HREF='[www.a.ru/(x|http://www.a.ru/(x]'>"},
      {" href=http://a/b>x", " href=[http://a/b|http://a/b]>x"},
      {" href=\"mailto:a@b.ru\">", " href=\"[mailto:a@b.ru|mailto:a@b.ru]\">"},
      {" href=\"http://a\r\nb\"", " href=\"[http://a|http://a]\r\nb\""},  // an unclosed value is no value
      {" href=\"http://a", " href=\"[http://a|http://a]"},
      {"http://a/?x&amp;y", "[http://a/?x&amp;y|http://a/?x&y]"},
      {"javascript:alert(1) file:///etc/passwd href=\"javascript:x\" data:text/html,x",
       "javascript:alert(1) file:///etc/passwd href=\"javascript:x\" data:text/html,x"},
  };
  for (const auto& c : cases) EXPECT_EQ(Marked(c.text), c.want);
}

TEST(Links, NoTextTakesLong) {
  for (const std::string_view piece : {"www.a-", "mailto:", "http://", "http://a)", "href=\"http://a", "www.a ", ")"}) {
    std::string text = "http://a";
    while (text.size() < 300'000) text += piece;
    EXPECT_LE(FindLinks(text).size(), text.size() / piece.size() + 1) << piece;
  }
}

}  // namespace
