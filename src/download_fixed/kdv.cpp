#include "download_fixed/kdv.h"

#include "base/ru_literal.h"
#include "download/page_code.h"
#include "download_fixed/mdl_FRX.h"
#include "text/dates.h"
#include "text/numbers.h"
#include "text/strings.h"

namespace kdv {
namespace {

using mdl_FRX::ExtractField;
using text::LetterCase;

// The forum quotes a line with a colon and a blank, and ends lines with LF alone.
constexpr text::Replacement kNormalForm[] = {{"\n: ", "\n"}, {"\n", "\r\n"}, {"&quot;", "\""}};

}  // namespace

int trueMsgKDV(std::string_view page) {
  if (page.empty()) return page_code::kNotLoaded;
  for (const std::string_view report : {"WebBoard: Not available</TITLE>", "404 Not Found"})
    if (text::Contains(page, report, LetterCase::kExact)) return page_code::kNoSuchMessage;
  return page_code::kMessage;
}

MessageRecord ParseMessage(std::string_view raw_page, std::int32_t number, const Clock& clock, int& step) {
  MessageRecord message;
  message.Код = number;
  step = 2;
  const std::string page = text::ReplaceAll(std::string(raw_page), kNormalForm, LetterCase::kIgnored);
  step = 4;
  message.Тема = ExtractField(page, "Тема"_ru);
  message.Автор = ExtractField(page, "Автор"_ru);
  message.Вответ = text::LenientLong(ExtractField(page, "Вответ"_ru));
  message.АвторMail = ExtractField(page, "АвторMail"_ru);
  message.Текст = ExtractField(page, "Текст"_ru);
  step = 5;
  if (message.Текст.empty()) message.Текст = "\r\n";
  if (message.Тема.empty()) message.Тема = "(...пусто...)"_ru;
  step = 6;
  message.Дата = text::ParseDate(ExtractField(page, "Дата"_ru), clock).value_or(OleDate{0});
  return message;
}

StoredFields FieldsToStore(const MessageRecord& message) {
  return {{"Текст"_ru, message.Текст},
          {"Дата"_ru, message.Дата.value_or(OleDate{0})},
          TextUnlessEmpty("Автор"_ru, message.Автор),
          {"Тема"_ru, message.Тема},
          {"Вответ"_ru, message.Вответ},
          TextUnlessEmpty("АвторMail"_ru, message.АвторMail),
          {"Код"_ru, message.Код}};
}

}  // namespace kdv
