#include "download_configured/configured_page.h"

#include "base/cat.h"
#include "base/error.h"
#include "base/ru_literal.h"
#include "download_configured/mdl_GELIUM.h"
#include "download_configured/mdl_MSHA.h"
#include "download_configured/mdl_OWS.h"
#include "download_configured/mdl_PTRV.h"
#include "text/dates.h"
#include "text/numbers.h"

namespace configured_page {
namespace {

using FieldParser = std::string (*)(std::string_view page, std::string_view field, const Clock& clock);

template <auto kParser>
std::string WithoutClock(std::string_view page, std::string_view field, const Clock&) {
  return kParser(page, field);
}

struct PageForm {
  std::string_view kind;
  FieldParser parse;
  bool has_author_pages = false;
};

constexpr PageForm kForms[] = {{"ptrv", mdl_PTRV::ParsePtrvField},
                               {"moysha", WithoutClock<mdl_MSHA::ParseMoyshaField>},
                               {"gelium", WithoutClock<mdl_GELIUM::ParseGeliumField>},
                               {"ows_ptrv", WithoutClock<mdl_OWS::ParseOwsField>, true}};

const PageForm* FindForm(std::string_view kind) {
  for (const PageForm& form : kForms)
    if (form.kind == kind) return &form;
  return nullptr;
}

const PageForm& FormOf(std::string_view kind) {
  if (const PageForm* const form = FindForm(kind)) return *form;
  throw Error(error_number::kBadArgument, Cat("Страницы этого форума не читаются: "_ru, kind));
}

}  // namespace

bool KnowsPagesOf(std::string_view kind) { return FindForm(kind) != nullptr; }

bool HasAuthorPages(std::string_view kind) {
  const PageForm* const form = FindForm(kind);
  return form != nullptr && form->has_author_pages;
}

MessageRecord ParseMessage(std::string_view kind, std::string_view page, std::int32_t number, const Clock& clock,
                           Reading& reading) {
  const PageForm& form = FormOf(kind);
  const auto parse = [&](std::string_view field) { return form.parse(page, field, clock); };
  const auto read_text = [&](std::string_view field, std::string& to) {
    to = parse(field);
    reading.FieldRead(field, to);
  };
  MessageRecord message;
  message.Код = number;
  read_text("Тема"_ru, message.Тема);
  read_text("Автор"_ru, message.Автор);
  const std::string date_text = parse("Дата"_ru);
  message.Дата = text::ParseDate(date_text, clock);
  reading.DateRead(date_text, message.Дата);
  message.Вответ = text::LenientLong(parse("Вответ"_ru));
  reading.FieldRead("Вответ"_ru, Cat(message.Вответ));
  read_text("АвторMail"_ru, message.АвторMail);
  read_text("Текст"_ru, message.Текст);
  if (form.has_author_pages) message.АвторMail = form.parse(reading.AuthorPage(message.Автор), "АвторMail"_ru, clock);
  if (message.Текст.empty()) message.Текст = " ";
  return message;
}

StoredFields FieldsToStore(const MessageRecord& message) {
  return {{"Код"_ru, message.Код},
          {"Автор"_ru, message.Автор},
          {"Тема"_ru, message.Тема},
          {"Вответ"_ru, message.Вответ},
          DateIfAny("Дата"_ru, message.Дата),
          {"Текст"_ru, message.Текст},
          {"АвторMail"_ru, message.АвторMail}};
}

}  // namespace configured_page
