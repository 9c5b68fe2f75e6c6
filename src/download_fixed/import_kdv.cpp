#include "download_fixed/import_kdv.h"

#include <variant>

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

// What the log calls the fields.
struct LoggedField {
  std::string_view name, prefix;
};
constexpr LoggedField kLogged[] = {{"Текст"_ru, "Import: text="},   {"Дата"_ru, "Import: date="},
                                   {"Автор"_ru, "Import: author="}, {"Тема"_ru, "Import: theme="},
                                   {"Вответ"_ru, "Import: from="},  {"АвторMail"_ru, "Import: email="},
                                   {"Код"_ru, "Import: kod="}};

struct LoggedValue {
  std::string operator()(NotSet) const { return {}; }
  std::string operator()(std::string_view text) const { return std::string(text); }
  std::string operator()(std::int32_t number) const { return Cat(number); }
  std::string operator()(OleDate date) const { return text::DateText(date); }
};

void LogField(const mdl_AZ::ForumLog& forum_log, const StoredField& field) {
  for (const LoggedField& logged : kLogged)
    if (logged.name == field.name) forum_log.Log(Cat(logged.prefix, std::visit(LoggedValue{}, field.value)));
}

void Store(const FixedDownload& with, const MessageRecord& message) {
  with.records.AddNew();
  for (const StoredField& field : kdv::FieldsToStore(message)) {
    LogField(with.forum_log, field);
    SetField(with.records, field);
  }
  with.records.Update();
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
  } catch (const Error& error) {
    with.records.Cancel();
    TellNotStored(with.view, with.clock, number, error.what());
    Printstatus(with.view, Cat("Ошибка "_ru, step));
    with.forum_log.Log(Cat("Import error=Ошибка "_ru, step));
  }
}
