#include <benchmark/benchmark.h>

#include <random>
#include <vector>

#include "base/ru_literal.h"
#include "demo_forum/demo_pages.h"
#include "download_configured/mdl_GELIUM.h"
#include "download_configured/mdl_MSHA.h"
#include "download_configured/mdl_OWS.h"
#include "download_configured/mdl_PTRV.h"
#include "download_configured/page_check.h"
#include "download_fixed/kdv.h"
#include "download_fixed/rts_an.h"
#include "support/fixed_clock.h"

namespace {

const FixedClock kClock(2002, 6, 15);

// A message of some hundred Russian words, in paragraphs.
MessageRecord MakeMessage(std::mt19937& random) {
  constexpr std::string_view kWords[] = {
      "рынок"_ru, "доллар"_ru,     "евро"_ru, "вверх"_ru, "стоп-лосс"_ru, "уровень"_ru,  "сегодня"_ru,  "ждать"_ru,
      "и"_ru,     "на"_ru,         "в"_ru,    "не"_ru,    "позиция"_ru,   "закрылся"_ru, "тренд"_ru,    "1.0532"_ru,
      "USD/RUB",  "\"купить\""_ru, "Ещё"_ru,  "что"_ru,   "прибыль"_ru,   "фигура"_ru,   "покупать"_ru, "&"};
  const auto number = [&](int least, int most) { return std::uniform_int_distribution(least, most)(random); };
  MessageRecord message;
  message.Вответ = number(1, 100'000);
  message.Тема = "Re: Прогноз на завтра"_ru;
  message.Автор = "Старый трейдер"_ru;
  message.АвторMail = "trader@mail.ru";
  message.Дата = OleDate{static_cast<double>(number(35'796, 37'421))};
  const auto size = static_cast<std::size_t>(number(4'000, 8'000));
  while (message.Текст.size() < size) {
    message.Текст += kWords[static_cast<std::size_t>(number(0, std::size(kWords) - 1))];
    message.Текст += number(0, 15) == 0 ? "\r\n" : " ";
  }
  return message;
}

std::vector<std::string> MakePages(std::string_view kind) {
  std::mt19937 random(1);
  std::vector<std::string> pages;
  for (int i = 0; i < 500; ++i) pages.push_back(demo_pages::MessagePage(kind, MakeMessage(random)));
  return pages;
}

// Checks every page and reads all its fields.
template <typename Parse>
void ParsePages(benchmark::State& state, std::string_view kind, const Parse& parse) {
  const std::vector<std::string> pages = MakePages(kind);
  std::size_t bytes = 0;
  for (const std::string& page : pages) bytes += page.size();
  for (auto _ : state)
    for (const std::string& page : pages) parse(page);
  state.SetItemsProcessed(static_cast<std::int64_t>(pages.size()) * state.iterations());
  state.SetBytesProcessed(static_cast<std::int64_t>(bytes) * state.iterations());
}

void ParseRtsAn(benchmark::State& state) {
  ParsePages(state, "rts-an", [](std::string_view page) {
    int step = 0;
    benchmark::DoNotOptimize(rts_an::trueMsg(page));
    benchmark::DoNotOptimize(rts_an::ParseMessage(page, 1, kClock, step));
  });
}

void ParseKdv(benchmark::State& state) {
  ParsePages(state, "kdv", [](std::string_view page) {
    int step = 0;
    benchmark::DoNotOptimize(kdv::trueMsgKDV(page));
    benchmark::DoNotOptimize(kdv::ParseMessage(page, 1, kClock, step));
  });
}

constexpr std::string_view kFields[] = {"Тема"_ru, "Автор"_ru, "АвторMail"_ru, "Вответ"_ru, "Текст"_ru, "Дата"_ru};

template <typename Parser>
void ParseConfigured(benchmark::State& state, std::string_view kind, const Parser& parser) {
  ParsePages(state, kind, [&](std::string_view page) {
    benchmark::DoNotOptimize(trueMsg(kind, page));
    for (const std::string_view field : kFields) benchmark::DoNotOptimize(parser(page, field));
  });
}

void ParsePtrv(benchmark::State& state) {
  ParseConfigured(state, "ptrv", [](std::string_view page, std::string_view field) {
    return mdl_PTRV::ParsePtrvField(page, field, kClock);
  });
}

void ParseMoysha(benchmark::State& state) { ParseConfigured(state, "moysha", mdl_MSHA::ParseMoyshaField); }
void ParseGelium(benchmark::State& state) { ParseConfigured(state, "gelium", mdl_GELIUM::ParseGeliumField); }
void ParseOws(benchmark::State& state) { ParseConfigured(state, "ows_ptrv", mdl_OWS::ParseOwsField); }

BENCHMARK(ParseRtsAn);
BENCHMARK(ParseKdv);
BENCHMARK(ParsePtrv);
BENCHMARK(ParseMoysha);
BENCHMARK(ParseGelium);
BENCHMARK(ParseOws);

}  // namespace
