#include "download_fixed/import_rts_an.h"

#include "base/cat.h"
#include "base/error.h"
#include "base/ru_literal.h"
#include "download/session_parts.h"
#include "download_fixed/rts_an.h"
#include "store/message_record.h"
#include "text/dates.h"
#include "text/numbers.h"

namespace {

void ReportSkipped(const FixedDownload& with, std::int32_t number) {
  with.Bar(Cat("Сообщение "_ru, number, " пропущено "_ru));
  Printstatus(with.view, "Пропущено"_ru);
}

void ShowInRow(SessionView& view, const MessageRecord& message) {
  view.SetCell(row_column::kNumber, text::Padded(message.Код, 5));
  view.SetCell(row_column::kAuthor, message.Автор);
  view.SetCell(row_column::kSubject, message.Тема);
  view.SetCell(row_column::kDate, text::FormatDate(message.Дата, "dd/mm/yy"));
}

// The new record is part of the first field's step.
void Store(QueryRecordset& records, const MessageRecord& message, int& step) {
  step = 20;
  records.AddNew();
  for (const StoredField& field : rts_an::FieldsToStore(message)) {
    SetField(records, field);
    ++step;
  }
  records.Update();
}

}  // namespace

void ImportRtsAnMessage(const FixedDownload& with, std::string_view page, std::int32_t number) {
  int step = 1;  // the step under way; shown when it fails
  try {
    if (with.records.msgExist(number)) return ReportSkipped(with, number);
    with.view.SetCell(row_column::kStatus, "Импортирую..."_ru);
    const MessageRecord message = rts_an::ParseMessage(page, number, with.clock, step);
    step = 19;
    ShowInRow(with.view, message);
    Store(with.records, message, step);
    step = 29;
    with.view.SetCell(row_column::kStatus, "Импортирован"_ru);
  } catch (const Error& error) {
    with.records.Cancel();
    TellNotStored(with.view, with.clock, number, error.what());
    Printstatus(with.view, Cat("Ошибка "_ru, step));
  }
}
