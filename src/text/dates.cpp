#include "text/dates.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <vector>

#include "base/cat.h"
#include "base/checked.h"
#include "base/cp1251.h"
#include "base/error.h"
#include "base/ru_literal.h"
#include "text/numbers.h"

namespace text {
namespace {

constexpr char kDateSign = '.';  // what "/" of a pattern prints

constexpr std::array<std::string_view, 12> kMonths = {"Январь"_ru,   "Февраль"_ru, "Март"_ru,   "Апрель"_ru,
                                                      "Май"_ru,      "Июнь"_ru,    "Июль"_ru,   "Август"_ru,
                                                      "Сентябрь"_ru, "Октябрь"_ru, "Ноябрь"_ru, "Декабрь"_ru};
constexpr std::array<std::string_view, 12> kMonthsGenitive = {"января"_ru,   "февраля"_ru, "марта"_ru,  "апреля"_ru,
                                                              "мая"_ru,      "июня"_ru,    "июля"_ru,   "августа"_ru,
                                                              "сентября"_ru, "октября"_ru, "ноября"_ru, "декабря"_ru};
constexpr std::array<std::string_view, 12> kMonthsShort = {"янв"_ru, "фев"_ru, "мар"_ru, "апр"_ru, "май"_ru, "июн"_ru,
                                                           "июл"_ru, "авг"_ru, "сен"_ru, "окт"_ru, "ноя"_ru, "дек"_ru};
constexpr std::array<std::string_view, 7> kWeekdays = {"воскресенье"_ru, "понедельник"_ru, "вторник"_ru, "среда"_ru,
                                                       "четверг"_ru,     "пятница"_ru,     "суббота"_ru};
constexpr std::array<std::string_view, 7> kWeekdaysShort = {"Вс"_ru, "Пн"_ru, "Вт"_ru, "Ср"_ru,
                                                            "Чт"_ru, "Пт"_ru, "Сб"_ru};

// ---- Date to text

std::string_view MonthName(int month, std::span<const std::string_view> names) {
  return names[static_cast<std::size_t>(month - 1)];
}

// One run of a pattern letter.
std::string PrintRun(char letter, std::size_t length, const CivilTime& time, int weekday, bool minutes) {
  const int digits = static_cast<int>(length);
  switch (letter) {
    case 'd':
      if (length <= 2) return Padded(time.day, digits);
      return std::string(length == 3 ? kWeekdaysShort[static_cast<std::size_t>(weekday - 1)]
                                     : kWeekdays[static_cast<std::size_t>(weekday - 1)]);
    case 'm':
      if (length <= 2) return Padded(minutes ? time.minute : time.month, digits);
      return std::string(MonthName(time.month, length == 3 ? kMonthsShort : kMonths));
    case 'y': return length == 2 ? Padded(time.year % 100, 2) : Padded(time.year, 4);
    case 'h': return Padded(time.hour, digits);
    default: return Padded(time.second, digits);
  }
}

// How many letters one run may hold; 0 for what is no pattern letter.
std::size_t LongestRun(char letter) {
  switch (letter) {
    case 'd':
    case 'm':
    case 'y': return 4;
    case 'h':
    case 's': return 2;
    default: return 0;
  }
}

std::size_t RunLength(std::string_view pattern) {
  const char letter = cp1251::Fold(pattern.front());
  const std::string_view most = pattern.substr(0, LongestRun(letter));
  const auto end = std::find_if(most.begin(), most.end(), [&](char c) { return cp1251::Fold(c) != letter; });
  const auto length = static_cast<std::size_t>(end - most.begin());
  if (letter == 'y' && length % 2 != 0) return length - 1;  // years have two digits or four
  return length;
}

// ---- Date from text

constexpr std::string_view kDigits = "0123456789";
constexpr int kNoNumber = -1;
constexpr int kTooLarge = 10'000;  // more than any part of a date

struct DatePart {
  int number;
  bool month_name;
};

struct ParsedText {
  std::vector<DatePart> date;
  std::optional<std::array<int, 3>> time;
};

// The longest name that `text` begins with: its 1-based place in the list, 0 when none does.
struct NameMatch {
  std::size_t length = 0;
  int number = 0;
};

void MatchNames(std::string_view text, std::span<const std::string_view> names, NameMatch& longest) {
  for (std::size_t i = 0; i < names.size(); ++i)
    if (names[i].size() > longest.length && cp1251::StartsWithIgnoringCase(text, names[i]))
      longest = {names[i].size(), static_cast<int>(i + 1)};
}

// Cuts a text into date parts and a time, from left to right.
class DateReader {
 public:
  explicit DateReader(std::string_view text) : rest_(text) {}

  std::optional<ParsedText> Read() {
    for (SkipNeutral(); !rest_.empty(); SkipNeutral())
      if (!ReadPart()) return std::nullopt;
    if (separator_pending_) return std::nullopt;
    return std::move(found_);
  }

 private:
  void Skip(std::string_view set) { rest_.remove_prefix(std::min(rest_.find_first_not_of(set), rest_.size())); }
  void SkipNeutral() { Skip(" ,"); }
  void SkipBlanks() { Skip(" "); }

  bool TakeIf(std::string_view set) {
    const bool fits = !rest_.empty() && set.find(rest_.front()) != std::string_view::npos;
    if (fits) rest_.remove_prefix(1);
    return fits;
  }

  int TakeNumber() {
    const std::string_view digits = rest_.substr(0, rest_.find_first_not_of(kDigits));
    rest_.remove_prefix(digits.size());
    if (digits.empty()) return kNoNumber;
    int number = 0;
    for (const char digit : digits) number = std::min(kTooLarge, number * 10 + (digit - '0'));
    return number;
  }

  bool ReadPart() {
    if (TakeIf("-/.")) return AddSeparator();
    if (const int number = TakeNumber(); number != kNoNumber) {
      SkipBlanks();
      return TakeIf(":") ? ReadTime(number) : AddDatePart({number, false});
    }
    return ReadName();
  }

  bool AddSeparator() {
    constexpr int kMostSeparators = 2;
    if (found_.date.empty() || separator_pending_ || after_time_) return false;
    separator_pending_ = true;
    return ++separators_ <= kMostSeparators;
  }

  bool AddDatePart(DatePart part) {
    constexpr std::size_t kMostParts = 3;
    if (after_time_ && !found_.date.empty()) return false;  // the time stands inside the date
    after_time_ = false;
    separator_pending_ = false;
    found_.date.push_back(part);
    return found_.date.size() <= kMostParts;
  }

  bool ReadTime(int hour) {
    if (found_.time || separator_pending_) return false;
    SkipBlanks();
    const int minute = TakeNumber();
    SkipBlanks();
    int second = 0;
    if (TakeIf(":")) {
      SkipBlanks();
      second = TakeNumber();
    }
    found_.time = {hour, minute, second};
    after_time_ = true;
    return hour <= 23 && minute >= 0 && minute <= 59 && second >= 0 && second <= 59;
  }

  bool ReadName() {
    NameMatch month, weekday;
    for (const auto* names : {&kMonths, &kMonthsGenitive, &kMonthsShort}) MatchNames(rest_, *names, month);
    for (const auto* names : {&kWeekdays, &kWeekdaysShort}) MatchNames(rest_, *names, weekday);
    const std::size_t length = std::max(month.length, weekday.length);
    rest_.remove_prefix(length);
    if (length == 0) return false;
    return weekday.length > month.length || AddDatePart({month.number, true});
  }

  std::string_view rest_;
  ParsedText found_;
  int separators_ = 0;
  bool separator_pending_ = false;  // a part must follow
  bool after_time_ = false;         // the last part was the time
};

// Places of year, month and day among the parts; kGiven: the current year or the first day.
constexpr int kGiven = -1;
struct Order {
  int year, month, day;
};
constexpr Order kThreeParts[] = {{2, 1, 0}, {0, 1, 2}, {2, 0, 1}, {0, 2, 1}};
constexpr Order kTwoParts[] = {{kGiven, 1, 0}, {kGiven, 0, 1}, {1, 0, kGiven}, {0, 1, kGiven}};

int FullYear(int year) { return year < 30 ? year + 2000 : year < 100 ? year + 1900 : year; }

std::optional<OleDate> DateInOrder(const std::vector<DatePart>& parts, const Order& order, int current_year) {
  const auto number = [&](int place, int given) {
    return place == kGiven ? given : parts[static_cast<std::size_t>(place)].number;
  };
  for (std::size_t i = 0; i < parts.size(); ++i)
    if (parts[i].month_name && static_cast<int>(i) != order.month) return std::nullopt;
  const int year = FullYear(number(order.year, current_year)), month = number(order.month, 1),
            day = number(order.day, 1);
  const bool real = year <= 9999 && month >= 1 && month <= 12 && day >= 1 && day <= ole_date::DaysInMonth(year, month);
  if (!real) return std::nullopt;
  return ole_date::FromCivil({.year = year, .month = month, .day = day});
}

std::optional<OleDate> DateOfParts(const std::vector<DatePart>& parts, const Clock& clock) {
  if (parts.empty()) return OleDate{0};  // a time alone
  if (parts.size() == 1) return std::nullopt;
  const int current_year = ole_date::ToCivil(clock.Now()).year;
  const std::span<const Order> orders = parts.size() == 3 ? std::span<const Order>(kThreeParts) : kTwoParts;
  for (const Order& order : orders)
    if (const auto date = DateInOrder(parts, order, current_year)) return date;
  return std::nullopt;
}

}  // namespace

std::string FormatDate(OleDate date, std::string_view pattern) {
  const CivilTime time = ole_date::ToCivil(date);
  const int weekday = ole_date::Weekday(date);
  std::string text;
  bool after_hour = false;
  while (!pattern.empty()) {
    const char letter = cp1251::Fold(pattern.front());
    const std::size_t length = RunLength(pattern);
    if (length == 0) {
      text += letter == '/' ? kDateSign : pattern.front();
    } else {
      text += PrintRun(letter, length, time, weekday, after_hour);
      after_hour = letter == 'h';
    }
    pattern.remove_prefix(std::max<std::size_t>(length, 1));
  }
  return text;
}

std::string FormatDate(const std::optional<OleDate>& date, std::string_view pattern) {
  return date ? FormatDate(*date, pattern) : "";
}

std::string DateText(OleDate date) {
  const CivilTime time = ole_date::ToCivil(date);
  const bool day_zero = ole_date::DayNumber(time.year, time.month, time.day) == 0;
  const bool midnight = time.hour == 0 && time.minute == 0 && time.second == 0;
  std::string text;
  if (!day_zero) text = FormatDate(date, "dd/mm/yyyy");
  if (!day_zero && !midnight) text += ' ';
  if (day_zero || !midnight) text += FormatDate(date, "h:mm:ss");
  return text;
}

std::optional<OleDate> ParseDate(std::string_view text, const Clock& clock) {
  const std::optional<ParsedText> parsed = DateReader(text).Read();
  if (!parsed || (parsed->date.empty() && !parsed->time)) return std::nullopt;
  const std::optional<OleDate> day = DateOfParts(parsed->date, clock);
  if (!day || !parsed->time) return day;
  CivilTime moment = ole_date::ToCivil(*day);
  const auto [hour, minute, second] = *parsed->time;
  moment.hour = hour;
  moment.minute = minute;
  moment.second = second;
  return ole_date::FromCivil(moment);
}

bool IsDate(std::string_view text, const Clock& clock) { return ParseDate(text, clock).has_value(); }

OleDate DateFromParts(int year, int month, int day) {
  for (const int part : {year, month, day}) CheckedCast<std::int16_t>(part);
  if (year < 0) ThrowBadArgument();
  const int months = FullYear(year) * 12 + (month - 1);
  const int full_year = months / 12;
  if (months < 0 || full_year > 9999) ThrowBadArgument();
  const OleDate date{static_cast<double>(ole_date::DayNumber(full_year, months % 12 + 1, 1) + (day - 1))};
  if (!ole_date::InRange(date)) ThrowBadArgument();
  return date;
}

}  // namespace text
