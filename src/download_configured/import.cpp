#include "download_configured/import.h"

#include <string>

#include "base/cat.h"
#include "base/error.h"
#include "base/ru_literal.h"
#include "download/session_parts.h"
#include "download_configured/configured_page.h"
#include "text/dates.h"
#include "text/mdl_STR.h"
#include "text/numbers.h"

namespace {

// How the status bar calls a field, and where the row shows it.
struct ShownField {
  std::string_view name, caption;
  int column = 0;  // 0: nowhere
};
constexpr ShownField kShown[] = {{"Тема"_ru, "Тема сообщения"_ru, row_column::kSubject},
                                 {"Автор"_ru, "Автор сообщения"_ru, row_column::kAuthor},
                                 {"Вответ"_ru, "Код главного сообщения"_ru},
                                 {"АвторMail"_ru, "EMail сообщения"_ru}};

/// Shows the fields in the current row and the status bar, and fetches the author's page.
class ShownReading : public configured_page::Reading {
 public:
  ShownReading(const ConfiguredDownload& with, std::int32_t number, std::int32_t timeout)
      : with_(with), number_(number), timeout_(timeout) {}

  void FieldRead(std::string_view field, std::string_view text) override {
    if (field == "Текст"_ru) return with_.Bar("Текст сообщения ..."_ru);
    for (const ShownField& shown : kShown) {
      if (shown.name != field) continue;
      if (shown.column != 0) with_.view.SetCell(shown.column, text);
      Tell(shown.caption, text);
    }
  }

  void DateRead(std::string_view text, std::optional<OleDate> date) override {
    constexpr std::string_view kCaption = "Дата сообщения"_ru, kBadDate = "Ошибка даты"_ru;
    Tell(kCaption, text);
    with_.view.SetCell(row_column::kDate, date ? text::FormatDate(*date, "dd/mm/yy") : std::string(kBadDate));
    if (!date) Tell(kCaption, kBadDate);
  }

  std::string AuthorPage(std::string_view author) override {
    const std::string url = Cat(with_.Setting("URL1"), mdl_STR::UrlEncodeKoi8(author), with_.Setting("URLSFX1"));
    with_.Log(Cat("Открываю "_ru, url));
    std::string page = with_.Fetch(url, timeout_);
    with_.Log(Cat("Загрузил еще "_ru, page.size(), " байт из сообщения "_ru, number_));
    return page;
  }

 private:
  void Tell(std::string_view what, std::string_view value) const { with_.Bar(Cat(what, " ***>", value, "<***")); }

  const ConfiguredDownload& with_;
  std::int32_t number_, timeout_;
};

}  // namespace

bool ImportPage(const ConfiguredDownload& with, std::string_view page, std::int32_t number, std::int32_t timeout) {
  try {
    with.Bar("Разбор сообщения для записи в базу ..."_ru);
    with.view.SetCell(row_column::kNumber, text::Padded(number, 6));
    ShownReading reading(with, number, timeout);
    const MessageRecord message = configured_page::ParseMessage(with.kind, page, number, with.clock, reading);
    with.forum_log.Log(message.Текст);
    with.Bar("Запись сообщения в базу ..."_ru);
    StoreRow(with.records, configured_page::FieldsToStore(message));
    with.Bar("Сообщение записано в базу ..."_ru);
    return message.Дата.has_value();
  } catch (const Error& error) {
    with.records.Cancel();
    TellNotStored(with.view, with.clock, number, error.what());
    with.Bar(Cat("Ошибка записи сообщения в базу ***>"_ru, error.what()));
    return false;
  }
}
