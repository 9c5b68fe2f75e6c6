#include "download_configured/import.h"

#include <optional>
#include <string>

#include "base/cat.h"
#include "base/error.h"
#include "base/ru_literal.h"
#include "download/session_parts.h"
#include "download_configured/mdl_GELIUM.h"
#include "download_configured/mdl_MSHA.h"
#include "download_configured/mdl_OWS.h"
#include "download_configured/mdl_PTRV.h"
#include "store/message_record.h"
#include "text/dates.h"
#include "text/mdl_STR.h"
#include "text/numbers.h"

namespace {

constexpr std::string_view kTwoPages = "ows_ptrv";

std::string ParseField(const ConfiguredDownload& with, std::string_view page, std::string_view field) {
  if (with.kind == "ptrv") return mdl_PTRV::ParsePtrvField(page, field, with.clock);
  if (with.kind == "ows_ptrv") return mdl_OWS::ParseOwsField(page, field);
  if (with.kind == "moysha") return mdl_MSHA::ParseMoyshaField(page, field);
  if (with.kind == "gelium") return mdl_GELIUM::ParseGeliumField(page, field);
  throw Error(error_number::kBadArgument, Cat("Страницы этого форума не читаются: "_ru, with.kind));
}

void Tell(const ConfiguredDownload& with, std::string_view what, std::string_view value) {
  with.Bar(Cat(what, " ***>", value, "<***"));
}

std::optional<OleDate> ReadDate(const ConfiguredDownload& with, std::string_view page) {
  const std::string date_text = ParseField(with, page, "Дата"_ru);
  Tell(with, "Дата сообщения"_ru, date_text);
  const std::optional<OleDate> date = text::ParseDate(date_text, with.clock);
  if (date) {
    with.view.SetCell(row_column::kDate, text::FormatDate(*date, "dd/mm/yy"));
  } else {
    constexpr std::string_view kBadDate = "Ошибка даты"_ru;
    with.view.SetCell(row_column::kDate, kBadDate);
    Tell(with, "Дата сообщения"_ru, kBadDate);
  }
  return date;
}

std::string FetchEmail(const ConfiguredDownload& with, const MessageRecord& message, std::int32_t timeout) {
  const std::string url = Cat(with.Setting("URL1"), mdl_STR::UrlEncodeKoi8(message.Автор), with.Setting("URLSFX1"));
  with.Log(Cat("Открываю "_ru, url));
  const std::string author_page = with.Fetch(url, timeout);
  with.Log(Cat("Загрузил еще "_ru, author_page.size(), " байт из сообщения "_ru, message.Код));
  return ParseField(with, author_page, "АвторMail"_ru);
}

MessageRecord ReadMessage(const ConfiguredDownload& with, std::string_view page, std::int32_t number,
                          std::int32_t timeout) {
  MessageRecord message;
  message.Код = number;
  with.view.SetCell(row_column::kNumber, text::Padded(number, 6));
  message.Тема = ParseField(with, page, "Тема"_ru);
  with.view.SetCell(row_column::kSubject, message.Тема);
  Tell(with, "Тема сообщения"_ru, message.Тема);
  message.Автор = ParseField(with, page, "Автор"_ru);
  with.view.SetCell(row_column::kAuthor, message.Автор);
  Tell(with, "Автор сообщения"_ru, message.Автор);
  message.Дата = ReadDate(with, page);
  message.Вответ = text::LenientLong(ParseField(with, page, "Вответ"_ru));
  Tell(with, "Код главного сообщения"_ru, Cat(message.Вответ));
  message.АвторMail = ParseField(with, page, "АвторMail"_ru);
  Tell(with, "EMail сообщения"_ru, message.АвторMail);
  message.Текст = ParseField(with, page, "Текст"_ru);
  with.Bar("Текст сообщения ..."_ru);
  if (with.kind == kTwoPages) message.АвторMail = FetchEmail(with, message, timeout);
  if (message.Текст.empty()) message.Текст = " ";
  return message;
}

void Store(QueryRecordset& records, const MessageRecord& message) {
  records.AddNew();
  records.SetNumber("Код"_ru, message.Код);
  records.SetText("Автор"_ru, message.Автор);
  records.SetText("Тема"_ru, message.Тема);
  records.SetNumber("Вответ"_ru, message.Вответ);
  if (message.Дата) records.SetDate("Дата"_ru, *message.Дата);
  records.SetText("Текст"_ru, message.Текст);
  records.SetText("АвторMail"_ru, message.АвторMail);
  records.Update();
}

}  // namespace

bool ImportPage(const ConfiguredDownload& with, std::string_view page, std::int32_t number, std::int32_t timeout) {
  try {
    with.Bar("Разбор сообщения для записи в базу ..."_ru);
    const MessageRecord message = ReadMessage(with, page, number, timeout);
    with.forum_log.Log(message.Текст);
    with.Bar("Запись сообщения в базу ..."_ru);
    Store(with.records, message);
    with.Bar("Сообщение записано в базу ..."_ru);
    return message.Дата.has_value();
  } catch (const Error& error) {
    with.records.Cancel();
    with.Bar(Cat("Ошибка записи сообщения в базу ***>"_ru, error.what()));
    return false;
  }
}
