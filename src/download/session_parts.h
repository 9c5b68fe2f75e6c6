#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "base/clock.h"
#include "base/ru_literal.h"
#include "download/session_view.h"

/// What both download sessions word and count alike.

/// Pictures of a row, by their number in the windows' small image list.
namespace row_icon {
inline constexpr int kLoaded = 1, kFetching = 5, kNoConnection = 9, kSkipped = 13, kStatus = 15, kNotFound = 16;
}

/// Of the texts of rows that failed, as 00BBGGRR.
inline constexpr std::uint32_t kRed = 0x0000FF;

/// Columns of a row behind its own text.
namespace row_column {
inline constexpr int kNumber = 1, kAuthor = 2, kSubject = 3, kDate = 4, kStatus = 5;
}

inline constexpr std::string_view kBadNumberHint = "Ошибка в номере первого или последнего сообщения. Исправьте..."_ru;
inline constexpr std::string_view kNothingNewHint = "На форуме нет новых сообщений"_ru;
inline constexpr std::string_view kWaitHint = "Дождитесь завершения скачивания текущего файла...."_ru;
inline constexpr std::string_view kIdleHint =
    "Hint : для определения последнего сообщения в базе или последнего сообщения на форуме нажмите на кнопки \"?\""_ru;
inline constexpr std::string_view kStoppedText = "Остановлено пользователем"_ru;
inline constexpr std::string_view kUnknownForumMessage =
    "Я не знаю откуда качать ! Из названия файла непонятно, что это за база"_ru;
inline constexpr std::string_view kUnknownForumHint =
    "Из имени файла базы сообщений непонятно, что это за база. Поэтому откуда качать, я тоже не знаю..."_ru;

/// How far behind the last number in the base a window proposes to go.
inline constexpr std::int32_t kProposedNumbers = 100;

/// What the user chose: everything new, or the texts of the two boxes.
struct RangeChoice {
  bool automatic = true;
  std::string begin, end;
};

/// Both ends belong to it.
struct NumberRange {
  std::int32_t first = 0, last = 0;
};

/// The boxes as numbers, fractions cut off; a text that is no number reads as 0. Negative numbers pass.
/// @return none when either is 0 or greater than 100000. @throws Error 6 outside 32 bits
std::optional<NumberRange> ManualRange(const RangeChoice& choice);

struct Counters {
  std::int32_t loaded = 0, not_found = 0, skipped = 0, total = 0;
};

/// @throws Error 6 when the counter is full
void CountOne(std::int32_t& counter);

std::string Summary(const Counters& counters);
std::string GettingHint(NumberRange range);

/// The place of a number in a session, as the row's own text: five digits from 00001.
std::string RowText(std::int32_t number, std::int32_t first);
/// 0 to 100: how much of the range lies before `number`.
int Percent(std::int32_t number, NumberRange range);

/// A line of the log box: it begins with the line break that parts it from the one above.
std::string LogLine(const Clock& clock, std::string_view text);

/// Tells in the log box why a message is not in the base: the row has room for the step alone.
void TellNotStored(SessionView& view, const Clock& clock, std::int32_t number, std::string_view reason);

/// The buttons of a session that runs, and of none.
void ShowRunning(SessionView& view);
void ShowIdle(SessionView& view);

/// Marks the current row with a status in red; whoever calls may choose another icon afterwards.
void Printstatus(SessionView& view, std::string_view text);
