#include "base/ole_date.h"

#include <chrono>
#include <cmath>

#include "base/error.h"
#include "base/ru_literal.h"

namespace ole_date {
namespace {

constexpr std::chrono::sys_days kEpoch = std::chrono::year{1899} / 12 / 30;
constexpr long kSecondsPerDay = 86'400;
constexpr double kFirstDay = -657'434;  // 0100-01-01
constexpr double kEndDay = 2'958'466;   // 10000-01-01, the first day that is no date any more

[[noreturn]] void ThrowNoDate() { throw ConversionError(error_number::kTypeMismatch, "Такой даты не бывает"_ru); }

struct DayAndSecond {
  long day;
  long second;
};

DayAndSecond Split(OleDate date) {
  if (!InRange(date)) ThrowNoDate();
  const double whole = std::trunc(date.days);
  long day = static_cast<long>(whole);
  long second = std::lround(std::abs(date.days - whole) * static_cast<double>(kSecondsPerDay));
  if (second == kSecondsPerDay) {
    second = 0;
    ++day;
  }
  return {day, second};
}

std::chrono::sys_days SysDays(long day) { return kEpoch + std::chrono::days{day}; }

}  // namespace

bool InRange(OleDate date) {
  // The fraction counts forward, so the first day's moments lie between its number and the one below.
  return date.days > kFirstDay - 1 && date.days < kEndDay;
}

CivilTime ToCivil(OleDate date) {
  const auto [day, second] = Split(date);
  const std::chrono::year_month_day ymd{SysDays(day)};
  return {.year = static_cast<int>(ymd.year()),
          .month = static_cast<int>(static_cast<unsigned>(ymd.month())),
          .day = static_cast<int>(static_cast<unsigned>(ymd.day())),
          .hour = static_cast<int>(second / 3600),
          .minute = static_cast<int>(second / 60 % 60),
          .second = static_cast<int>(second % 60)};
}

OleDate FromCivil(const CivilTime& time) {
  const bool real = time.year >= 100 && time.year <= 9999 && time.month >= 1 && time.month <= 12 && time.day >= 1 &&
                    time.day <= DaysInMonth(time.year, time.month) && time.hour >= 0 && time.hour < 24 &&
                    time.minute >= 0 && time.minute < 60 && time.second >= 0 && time.second < 60;
  if (!real) ThrowNoDate();
  const double day = static_cast<double>(DayNumber(time.year, time.month, time.day));
  const double part =
      static_cast<double>((time.hour * 60 + time.minute) * 60 + time.second) / static_cast<double>(kSecondsPerDay);
  return {day < 0 ? day - part : day + part};
}

long DayNumber(int year, int month, int day) {
  const std::chrono::year_month_day ymd{std::chrono::year{year}, std::chrono::month{static_cast<unsigned>(month)},
                                        std::chrono::day{static_cast<unsigned>(day)}};
  return (std::chrono::sys_days{ymd} - kEpoch).count();
}

int DaysInMonth(int year, int month) {
  const std::chrono::year_month_day_last last{
      std::chrono::year{year}, std::chrono::month_day_last{std::chrono::month{static_cast<unsigned>(month)}}};
  return static_cast<int>(static_cast<unsigned>(last.day()));
}

int Weekday(OleDate date) { return static_cast<int>(std::chrono::weekday{SysDays(Split(date).day)}.c_encoding()) + 1; }

}  // namespace ole_date
