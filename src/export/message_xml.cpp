#include "export/message_xml.h"

#include <variant>

#include "base/cat.h"
#include "base/error.h"
#include "base/ru_literal.h"
#include "export/export_names.h"
#include "text/dates.h"
#include "text/mdl_STR.h"
#include "text/numbers.h"
#include "text/strings.h"

namespace {

using jet::ColumnType;

constexpr std::string_view kFailed = "Ошибка экспорта из БД! "_ru;

/// A value that is neither text nor date.
struct PlainText {
  std::string operator()(jet::Null) const { return {}; }
  std::string operator()(bool value) const { return value ? "True" : "False"; }
  std::string operator()(std::int32_t value) const { return Cat(value); }
  std::string operator()(double value) const { return text::NumberText(value); }
  std::string operator()(OleDate value) const { return text::FormatDate(value, "YYYY-MM-DD"); }
  std::string operator()(const std::string& value) const { return value; }
  std::string operator()(jet::Currency value) const { return jet::CurrencyText(value); }
  std::string operator()(const jet::Guid& value) const { return jet::GuidText(value); }
  std::string operator()(const jet::Numeric& value) const { return jet::NumericText(value); }
  std::string operator()(const jet::Binary& value) const {
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    std::string text;
    for (const char c : value.bytes) {
      const auto byte = static_cast<unsigned char>(c);
      text += kDigits[byte / 16];
      text += kDigits[byte % 16];
    }
    return text;
  }
};

std::string CharacterData(std::string_view value, std::int32_t line_size) {
  std::string trimmed(text::Trim(value));
  return Cat("<![CDATA[", mdl_STR::WrapText(trimmed, line_size), "]]>");
}

}  // namespace

std::string MessageXml::GetXMLMessage(std::string_view key) {
  try {
    const std::string query = Cat("select * FROM База WHERE Код="_ru, text::Mid(key, 2));
    log_.Log(query);
    sql::Recordset row = connection_.OpenSnapshot(query);
    return row.Eof() ? "<MESSAGE/>\r\n" : ElementsOf(row);
  } catch (const Error& error) {
    log_.Log(Cat(kFailed, "\r\n", error.what()));
    if (failures_++ == 0) first_failure_ = error.what();
    return {};
  }
}

std::string MessageXml::ElementsOf(sql::Recordset& row) {
  const std::int32_t line_size = ini_.GetLineSize();
  const bool is_logged = ini_.GetIsLog();  // asked once, or forum.ini would be read for every element
  std::string xml = "<MESSAGE>\r\n";
  for (std::size_t field = 0; field < row.Fields().size(); ++field) {
    std::string name = row.Fields()[field].name;
    mdl_AZ::SanitizeElementName(name);
    xml.append(Cat("<", name, ">", ValueText(row, field, line_size), "</", name, ">\r\n"));
    if (is_logged) log_.Log(xml);
  }
  return xml.append("</MESSAGE>\r\n");
}

std::string MessageXml::ValueText(sql::Recordset& row, std::size_t field, std::int32_t line_size) {
  const ColumnType type = row.Fields()[field].type;
  if (type == ColumnType::kText || type == ColumnType::kMemo) return CharacterData(row.Text(field), line_size);
  return std::visit(PlainText(), row.Get(field));
}
