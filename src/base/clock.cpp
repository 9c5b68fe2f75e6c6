#include "base/clock.h"

#include <algorithm>
#include <ctime>

OleDate SystemClock::Now() const {
  const std::time_t now = std::time(nullptr);
  std::tm local{};
  localtime_r(&now, &local);
  return ole_date::FromCivil({.year = local.tm_year + 1900,
                              .month = local.tm_mon + 1,
                              .day = local.tm_mday,
                              .hour = local.tm_hour,
                              .minute = local.tm_min,
                              .second = std::min(local.tm_sec, 59)});  // a leap second has no place in a base
}
