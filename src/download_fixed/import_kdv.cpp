#include "download_fixed/import_kdv.h"

#include "base/cat.h"
#include "base/error.h"
#include "base/ru_literal.h"
#include "download/session_parts.h"
#include "download_fixed/kdv.h"
#include "store/message_record.h"
#include "text/dates.h"
#include "text/numbers.h"

namespace {

constexpr OleDate kZeroDate{};

void ReportSkipped(const FixedDownload& with, std::int32_t number) {
  with.Bar(Cat("Сообщение "_ru, number, " пропущено "_ru));
  with.forum_log.Log(Cat("Import:  Сообщение "_ru, number, " пропущено "_ru));
  Printstatus(with.view, "Пропущено"_ru);
}

void ShowInRow(SessionView& view, const MessageRecord& message) {
  view.SetCell(row_column::kNumber, text::Padded(message.Код, 5));
  view.SetCell(row_column::kAuthor, message.Автор);
  view.SetCell(row_column::kSubject, message.Тема);
  view.SetCell(row_column::kDate, text::DateText(message.Дата.value_or(kZeroDate)));
}

void Store(const FixedDownload& with, const MessageRecord& message) {
  QueryRecordset& records = with.records;
  const auto log = [&with](std::string_view prefix, const auto& value) { with.forum_log.Log(Cat(prefix, value)); };
  const OleDate date = message.Дата.value_or(kZeroDate);
  records.AddNew();
  log("Import: text=", message.Текст);
  records.SetText("Текст"_ru, message.Текст);
  log("Import: date=", text::DateText(date));
  records.SetDate("Дата"_ru, date);
  log("Import: author=", message.Автор);
  if (!message.Автор.empty()) records.SetText("Автор"_ru, message.Автор);
  log("Import: theme=", message.Тема);
  records.SetText("Тема"_ru, message.Тема);
  log("Import: from=", message.Вответ);
  records.SetNumber("Вответ"_ru, message.Вответ);
  log("Import: email=", message.АвторMail);
  if (!message.АвторMail.empty()) records.SetText("АвторMail"_ru, message.АвторMail);
  log("Import: kod=", message.Код);
  records.SetNumber("Код"_ru, message.Код);
  records.Update();
}

}  // namespace

void ImportKdvMessage(const FixedDownload& with, std::string_view page, std::int32_t number) {
  int step = 1;  // the step under way; shown when it fails
  try {
    if (with.records.msgExist(number)) return ReportSkipped(with, number);
    with.view.SetCell(row_column::kStatus, "Импортирую..."_ru);
    const MessageRecord message = kdv::ParseMessage(page, number, with.clock, step);
    step = 7;
    ShowInRow(with.view, message);
    step = 8;
    Store(with, message);
    step = 9;
    with.view.SetCell(row_column::kStatus, "Импортирован"_ru);
  } catch (const Error&) {
    with.records.Cancel();
    Printstatus(with.view, Cat("Ошибка "_ru, step));
    with.forum_log.Log(Cat("Import error=Ошибка "_ru, step));
  }
}
