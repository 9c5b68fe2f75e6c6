#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "base/ole_date.h"

/// Tree keys have seven digits for a number.
inline constexpr std::int32_t kLargestNumber = 9'999'999;

/// One message between a page parser and the base.
struct MessageRecord {
  std::int32_t Код = 0;     // 1..kLargestNumber; 0 is never a message
  std::int32_t Вответ = 0;  // the message answered; 0 = starts a thread
  std::string Тема, Автор, АвторMail;
  std::optional<OleDate> Дата;  // none when the page's date cannot be read
  std::string Текст;            // HTML fragments, line breaks as "<br>" and "<p>"
  std::string Картинка;         // file name without folder and extension
};
