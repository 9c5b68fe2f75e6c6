#include "export/xml_export.h"

#include "base/cat.h"
#include "base/error.h"
#include "export/export_names.h"
#include "export_base.h"
#include "support/faulty_file.h"

namespace {

using testing::HasSubstr;

class RecordingShell : public Shell {
 public:
  std::string calls;
  std::string browser = std::string("firefox --new\0junk", 18);

  std::string FindExecutable(const std::string&) override { return browser; }
  void Start(const std::string& command, const std::string& path) override {
    if (command.empty()) throw Error(error_number::kFileNotFound, "Файл не найден"_ru);
    calls = command + " " + path;
  }
  bool Open(const std::string& path) override { return !(calls = "open " + path).empty(); }
};

class XmlExport : public ExportBase {
 protected:
  XmlExport() {
    Fill({{1, 0, "Рынок?", "Иван", "Начало"},
          {2, 1, " <Re> & ", "Пётр", "a]]>b", 37309.545139},
          {3, 6, "Оборвана", "Лев", ""},
          {4, 2, "Re: Re", "Анна", "Глубже"},
          {5, 1, nullptr, nullptr, nullptr, 0}});
  }
  ExportOutcome Export(std::int32_t number, FileSystem& files) {
    shell_.calls.clear();
    return ExportMessages({files, *connection_, ini_, log_, &shell_}, tree_, ThreadOf(tree_, number),
                          mdl_AZ::ExportFolder(folder_.path(), "kdv_2002"));
  }
  ExportOutcome Export(std::int32_t number) { return Export(number, files_); }

  static std::string Message(int number, int parent, const std::string& subject, const std::string& date,
                             const std::string& author, const std::string& text) {
    return Cat("<MESSAGE>\n<Код>", number, "</Код>\n<Вответ>", parent, "</Вответ>\n<Тема><![CDATA[", subject,
               "]]></Тема>\n<Дата>", date, "</Дата>\n<Автор><![CDATA[", author,
               "]]></Автор>\n<АвторMail><![CDATA[]]></АвторMail>\n<Текст><![CDATA[", text,
               "]]></Текст>\n<Картинка><![CDATA[]]></Картинка>\n</MESSAGE>\n\n");
  }

  RecordingShell shell_;
  const std::string kHeader = "<?xml version=\"1.0\" encoding=\"Windows-1251\"?>\n";
  const std::string kPath = folder_ / "kdv_2002/Рынок_.xml";
};

TEST_F(XmlExport, WritesTheWholeThreadInTheTreesOrderWhicheverMessageWasChosen) {
  const std::string head = kHeader + "<MESSAGES>\n",
                    replies = Message(4, 2, " Re: Re", "2002-03-15", " Анна", " Глубже") +
                              Message(5, 1, "", "", "", "") + "</MESSAGES>\n";
  folder_.Put("kdv_2002/Рынок_.xml", std::string(10'000, 'x'));  // an earlier export, longer than this one
  for (const std::int32_t number : {1, 2, 4, 5}) {
    EXPECT_EQ(Export(number).messages, 4);
    EXPECT_EQ(Lines("kdv_2002/Рынок_.xml"), head + Message(1, 0, " Рынок?", "2002-03-15", " Иван", " Начало") +
                                                Message(2, 1, " <Re> &", "2002-02-22", " Пётр", " a]]>b") + replies);
  }
  for (const char* number : {"1", "2"}) connection_->Execute(Cat("DELETE * FROM База WHERE Код="_ru, number));
  EXPECT_TRUE(Export(1).whole);
  EXPECT_EQ(Lines("kdv_2002/Рынок_.xml"), head + "<MESSAGE/>\n\n<MESSAGE/>\n\n" + replies);
  PutIni("[EXPORT]\r\nLINESIZE=x");
  EXPECT_THAT(cp1251::ToUtf8(ExportSummary(Export(1))), HasSubstr("Сообщений: 2. Не удалось прочитать из базы: 2 ("));
  EXPECT_EQ(Lines("kdv_2002/Рынок_.xml"), head + "<MESSAGE/>\n\n<MESSAGE/>\n\n\n\n</MESSAGES>\n");
}

TEST_F(XmlExport, ForumIniSaysWhetherAStylesheetIsNamedAndHowTheFileIsOpened) {
  const std::string line = "<?xml-stylesheet type=\"text/xsl\" href=\"";
  const struct {
    std::string ini, lines, call;
  } cases[] = {{"", "", "firefox --new " + kPath},
               {"IsXSL=да\r\nOpenNewIE=0", "", "open " + kPath},
               {"IsXSL=1\r\nNeedOpenIE=0", line + "..\\message.xsl\"?>\n\n", ""},
               {"IsXSL=1\r\nXSL=..\\s.xsl", line + "..\\s.xsl\"?>\n\n", "firefox --new " + kPath},
               {"IsXSL=1\r\nXSL=", line + "\"?>\n\n", "firefox --new " + kPath}};
  for (const auto& c : cases) {
    PutIni("[EXPORT]\r\n" + c.ini);
    EXPECT_EQ(Export(1).trouble, "");
    EXPECT_THAT(Lines("kdv_2002/Рынок_.xml"), testing::StartsWith(kHeader + c.lines + "<MESSAGES>\n<MESSAGE>\n"));
    EXPECT_EQ(shell_.calls, c.call) << c.ini;
  }
}

TEST_F(XmlExport, TheLogTellsEachStepAndABrowserThatCannotBeStarted) {
  PutIni("[LOG]\r\nIsLog=1");
  shell_.browser.clear();
  EXPECT_THAT(cp1251::ToUtf8(ExportSummary(Export(1))), HasSubstr("Сообщений: 4. Открыть файл не удалось: Файл"));
  std::string steps = Log();
  for (std::size_t element; (element = steps.find("<MESSAGE>\n")) != std::string::npos;)
    steps.erase(element, steps.find("\n\n", element) + 2 - element);
  std::string want;
  for (const char* number : {"1", "2", "4", "5"})
    want += Cat("select * FROM База WHERE Код=000000", number, "\nC000000", number, "\n");
  EXPECT_EQ(steps, want + "export:  " + kPath + "\nОшибка экспорта! \nФайл не найден\nC0000001\n" + kPath + "\n");
}

TEST_F(XmlExport, NoFailureOfTheDiskPassesForAWholeFile) {
  folder_.Put("kdv_2002", "a file where the folder should be");
  EXPECT_THAT(cp1251::ToUtf8(ExportSummary(Export(1))), HasSubstr(kPath + " неполон или не создан"));
  std::vector<Row> rows{{1, 0, "a", "b", "c"}};
  const std::string long_text(3000, 'x');
  for (int number = 2; number < 300; ++number) rows.push_back({number, number - 1, "", "", long_text.c_str()});
  Fill(rows);
  PutIni("[LOG]\r\nIsLog=1");
  FaultyFileSystem disk;
  EXPECT_EQ(Export(1, disk).messages, 299);
  EXPECT_GE(disk.operations(), 6U);  // it is written in several portions
  EXPECT_THAT(disk.log().back(), testing::StartsWith("sync "));
  for (const auto lasting : {FaultyFileSystem::Lasting::kOnce, FaultyFileSystem::Lasting::kFromThenOn})
    for (std::uint64_t at = 1; at <= disk.operations(); ++at) {
      FaultyFileSystem full;
      full.FailAt(at, FaultyFileSystem::Fault::kTear, lasting);
      const ExportOutcome outcome = Export(1, full);
      EXPECT_TRUE(!outcome.whole && !outcome.trouble.empty()) << at;
    }
  EXPECT_NE(folder_.Get("forum.log").find("Ошибка разузлования! \r\n"_ru), std::string::npos);
}

}  // namespace
