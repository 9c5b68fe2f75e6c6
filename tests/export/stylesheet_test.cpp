// What is exported, as the tools of others see it: xmllint reads the file, xsltproc renders it with the
// shipped stylesheet. Without them the tests skip.

#include "export/xml_export.h"
#include "export_base.h"

namespace {

using testing::HasSubstr;

class Stylesheet : public ExportBase {
 protected:
  /// Runs a tool on the exported file of message 1's thread; its output is left in the file "out".
  bool Accepts(const std::string& command) {
    const ExportNeeds needs{files_, *connection_, ini_, log_, nullptr};
    const std::string path = ExportMessages(needs, tree_, ThreadOf(tree_, 1), folder_.path()).path;
    return std::system((command + " '" + path + "' >'" + folder_ / "out" + "' 2>&1").c_str()) == 0;
  }
  static bool IsMissing(const std::string& tool) { return std::system(("command -v " + tool).c_str()) != 0; }
};

TEST_F(Stylesheet, XmllintAcceptsEveryTextButOne) {
  if (IsMissing("xmllint")) GTEST_SKIP() << "xmllint is not installed (libxml2-utils)";
  PutIni("[EXPORT]\r\nIsXSL=1");
  for (const char* text : {"", "<b> & \" ' </MESSAGE> <!-- ]] >", "Ёж №1 — «да» €", "a]]>b"}) {
    Fill({{1, 0, "a", text, text}, {2, 1, text, "", text}});
    EXPECT_EQ(Accepts("xmllint --noout"), std::string_view(text) != "a]]>b") << text;
  }
}

TEST_F(Stylesheet, ShowsRepliesInsideWhatTheyAnswer) {
  if (IsMissing("xsltproc")) GTEST_SKIP() << "xsltproc is not installed";
  std::string lines;  // many marks, as lists have them
  for (int line = 0; line < 4000; ++line) lines += "x<br>";
  std::vector<Row> rows{{1, 0, "Куда пойдёт рынок?", "Иван", "Раз<br>два<P>три &amp; <b>"},
                        {2, 1, "Re", nullptr, lines.c_str(), 0},
                        {3, 2, "Re", "Лев", "Глубже"},
                        {4, 1, "Re", "Анна", "Исчезнет"},
                        {5, 4, "Re", "Анна", "Останется"}};
  for (int number = 6; number < 1000; ++number) rows.push_back({number, number - 1, "", "", "x"});  // a deep thread
  Fill(rows);
  connection_->Execute("DELETE * FROM База WHERE Код=4"_ru);
  EXPECT_TRUE(Accepts("xsltproc " FORUM_SOURCE_DIR "/packaging/message.xsl"));
  const std::string page = folder_.Get("out");
  EXPECT_THAT(page, HasSubstr("<title>Куда пойдёт рынок?</title>"));
  EXPECT_THAT(page, HasSubstr("Раз<br>два<br><br>три &amp;amp; &lt;b&gt;"));  // nothing else becomes markup
  EXPECT_THAT(page, HasSubstr("Автор не указан</span><span>без даты"));
  EXPECT_THAT(page, HasSubstr(lines));
  std::string outline;
  for (std::string_view rest = page; !rest.empty(); rest.remove_prefix(1)) {
    constexpr std::string_view kNumber = "id=\"m";
    if (rest.starts_with("<article>") || rest.starts_with("</article>") || rest.starts_with("Этого сообщения нет"))
      outline += rest.substr(0, 2);
    else if (rest.starts_with(kNumber))
      outline += rest.substr(kNumber.size(), rest.find('"', kNumber.size()) - kNumber.size());
  }
  EXPECT_THAT(outline, testing::StartsWith("<a1<a2<a3</</</<aЭ</<a5<a6<a7")) << outline.substr(0, 200);
}

}  // namespace
