#include "export/message_xml.h"

#include "export_base.h"
#include "jet/create.h"
#include "jet/table_design.h"

namespace {

class MessageXmlTest : public ExportBase {
 protected:
  /// The message as UTF-8, line ends visible as "|".
  std::string Xml(std::string_view key) {
    return cp1251::ToUtf8(text::ReplaceAll(xml_.emplace(*connection_, ini_, log_).GetXMLMessage(key), "\r\n", "|"));
  }
  std::optional<MessageXml> xml_;
};

TEST_F(MessageXmlTest, BreaksTextsAtTheWidthOfForumIniWhichMustBeANumber) {
  const std::string word(80, 'w');
  Fill({{7, 0, "a bb", "", (word + " x\r\ny").c_str()}});
  const struct {
    std::string ini, subject, body;
  } cases[] = {{"", " a bb", " " + word + "|x\r y"},  // 80; of CR LF the CR is left over: kept so
               {"LINESIZE=1", " a|bb", word + "|x\r y"},
               {"LINESIZE=0", "a|bb", word + "|x\ry"}};
  for (const auto& c : cases) {
    PutIni("[EXPORT]\r\n" + c.ini);
    EXPECT_THAT(Xml("C7"), testing::HasSubstr("<Тема><![CDATA[" + c.subject + "]]></Тема>")) << c.ini;
    EXPECT_THAT(Xml("C7"), testing::HasSubstr("<Текст><![CDATA[" + c.body + "]]></Текст>")) << c.ini;
  }
  PutIni("[EXPORT]\r\nLINESIZE=80 знаков\r\n[LOG]\r\nIsLog=1");
  EXPECT_EQ(Xml("C0000007"), "");
  EXPECT_EQ(xml_->failures(), 1);
  EXPECT_EQ(Log(), "select * FROM База WHERE Код=0000007\nОшибка экспорта из БД! \nЗначение не того типа\n");
}

TEST_F(MessageXmlTest, WritesColumnsOfEveryKindAndLogsTheTextAfterEach) {
  const jet::NewColumn columns[] = {{.name = "Код"_ru},
                                    {.name = "a <b>&c", .type = jet::ColumnType::kText, .length = 50},
                                    {.name = "yes", .type = jet::ColumnType::kBoolean},
                                    {.name = "half", .type = jet::ColumnType::kDouble},
                                    {.name = "money", .type = jet::ColumnType::kCurrency},
                                    {.name = "bytes", .type = jet::ColumnType::kBinary, .length = 10},
                                    {.name = "null", .type = jet::ColumnType::kInteger}};
  jet::CreateBase(files_, folder_ / "x.mdb", {}, clock_.Now(), [&](jet::CatalogWriter& catalog, const auto& header) {
    catalog.CreateTable("База"_ru, jet::DesignTable(header, columns, {}));
  });
  Open(folder_ / "x.mdb");
  {
    sql::Recordset rows = connection_->OpenDynaset("База"_ru);
    rows.AddNew();
    const jet::Value values[] = {-5, std::string(" t "), true, -0.5, jet::Currency{12'3400}, jet::Binary{"<\xFF"}};
    for (std::size_t field = 0; field < std::size(values); ++field) rows.Set(field, values[field]);
    rows.Update();
  }
  PutIni("[LOG]\r\nIsLog=1");
  EXPECT_EQ(Xml("C-5"),
            "<MESSAGE>|<Код>-5</Код>|<a _b__c><![CDATA[ t]]></a _b__c>|<yes>True</yes>|<half>-0.5</half>|"
            "<money>12.34</money>|<bytes>3CFF</bytes>|<null></null>|</MESSAGE>|");
  EXPECT_THAT(Log(), testing::StartsWith("select * FROM База WHERE Код=-5\n<MESSAGE>\n<Код>-5</Код>\n\n"
                                         "<MESSAGE>\n<Код>-5</Код>\n<a _b__c><![CDATA[ t]]></a _b__c>\n\n<MESS"));
}

}  // namespace
