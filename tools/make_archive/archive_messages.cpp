#include "make_archive/archive_messages.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <utility>

#include "base/cat.h"
#include "base/ole_date.h"
#include "base/ru_literal.h"

namespace {

constexpr std::size_t kAuthors = 2000, kRecent = 300;

constexpr std::string_view kWords[] = {
    "сообщение"_ru,    "форум"_ru,      "вопрос"_ru,  "ответ"_ru,
    "думаю"_ru,        "не"_ru,         "и"_ru,       "в"_ru,
    "на"_ru,           "что"_ru,        "как"_ru,     "рынок"_ru,
    "доллар"_ru,       "завтра"_ru,     "вчера"_ru,   "сегодня"_ru,
    "утром"_ru,        "вечером"_ru,    "опять"_ru,   "никогда"_ru,
    "всегда"_ru,       "погода"_ru,     "новости"_ru, "цена"_ru,
    "курс"_ru,         "растёт"_ru,     "падает"_ru,  "уже"_ru,
    "ещё"_ru,          "только"_ru,     "если"_ru,    "поэтому"_ru,
    "кажется"_ru,      "по-моему"_ru,   "объём"_ru,   "съезд"_ru,
    "щека"_ru,         "эхо"_ru,        "юность"_ru,  "яблоко"_ru,
    "ПК"_ru,           "Интернет"_ru,   "Москва"_ru,  "Петербург"_ru,
    "модем"_ru,        "программа"_ru,  "файл"_ru,    "архив"_ru,
    "спасибо"_ru,      "пожалуйста"_ru, "привет"_ru,  "согласен"_ru,
    "нет"_ru,          "да"_ru,         "ссылка"_ru,  "http://www.example.ru/page.htm"_ru,
    "USD"_ru,          "1.0532"_ru,     ":-)"_ru,     "&quot;цитата&quot;"_ru,
    "<b>важно</b>"_ru, "«так»"_ru,      "—"_ru,       "№ 7"_ru};

constexpr std::string_view kNames[] = {"Иван"_ru,    "Мария"_ru, "Бывалый"_ru, "Гость"_ru, "Скептик"_ru, "Моряк"_ru,
                                       "Студент"_ru, "Лена"_ru,  "Trader"_ru,  "nick"_ru,  "Серый"_ru,   "Ёжик"_ru};

}  // namespace

ArchiveMessages::ArchiveMessages(std::uint32_t seed, std::uint32_t longest)
    : random_(seed),
      longest_(std::max(longest, kShortestBody)),
      day_(static_cast<double>(ole_date::DayNumber(1999, 1, 11))) {
  for (std::size_t i = 0; i < kAuthors; ++i) {
    const std::string_view name = kNames[Below(std::size(kNames))];
    authors_.push_back(i < std::size(kNames) ? std::string(name) : Cat(name, i));
  }
}

MessageRecord ArchiveMessages::Next() {
  number_ += 1 + static_cast<std::int32_t>(Chance(20) ? Below(5) : 0);
  day_ += Below(1200) / 86400.0;
  MessageRecord message;
  message.Код = number_;
  message.Дата = OleDate{std::floor(day_ * 86400) / 86400};
  const std::uint32_t place = Below(kAuthors);
  const std::size_t author = std::size_t{place} * place / kAuthors * Below(4) / 4;  // the first ones write most
  message.Автор = Chance(200) ? std::string() : authors_[author];
  if (author % 3 == 0) message.АвторMail = Cat("user", author, "@mail.example.ru");
  if (author % 5 == 0) message.Картинка = Cat("icon", author % 30);
  Answer(message);
  message.Текст = Body();
  Remember(message);
  return message;
}

// Most answers go to what is new.
void ArchiveMessages::Answer(MessageRecord& message) {
  if (recent_.empty() || Chance(6)) {
    message.Тема = Chance(50) ? std::string() : Words(2 + Below(5));
    return;
  }
  const std::size_t age = std::min(Below(static_cast<std::uint32_t>(recent_.size())), Below(kRecent));
  const Posted& answered = recent_[(oldest_ + recent_.size() - 1 - age) % recent_.size()];
  message.Вответ = Chance(500) ? answered.number + 1'000'000 : answered.number;
  message.Тема = Chance(5) ? Words(1 + Below(4)) : answered.subject;
}

void ArchiveMessages::Remember(const MessageRecord& message) {
  Posted posted{message.Код, message.Тема};
  if (recent_.size() < kRecent) return recent_.push_back(std::move(posted));
  recent_[oldest_] = std::move(posted);
  oldest_ = (oldest_ + 1) % kRecent;
}

std::string_view ArchiveMessages::Word() { return kWords[Below(std::size(kWords))]; }

std::string ArchiveMessages::Words(std::uint32_t count) {
  std::string text(Word());
  for (; count > 1; --count) text.append(" ").append(Word());
  return text;
}

std::size_t ArchiveMessages::BodyLength() {
  constexpr std::size_t kHuge = 100'000;
  if (Chance(5000)) return kHuge;
  const std::uint32_t range = longest_ - kShortestBody + 1;
  const std::uint32_t a = Below(range), b = Below(range);
  return kShortestBody + std::size_t{a} * b / range;  // short ones are more frequent
}

std::string ArchiveMessages::Body() {
  const std::size_t length = BodyLength();
  std::string text;
  text.reserve(length + 40);
  while (text.size() < length) {
    text += Word();
    text += Chance(12) ? (Chance(4) ? "<p>" : "<br>") : Chance(8) ? ", " : " ";
  }
  return text;
}
