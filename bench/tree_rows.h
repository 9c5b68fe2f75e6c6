#pragma once

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <random>
#include <string>
#include <vector>

#include "base/cat.h"
#include "base/progress.h"
#include "base/ru_literal.h"
#include "explorer/tree_builder.h"

/// A made-up forum: 60 messages a day by 2000 authors of very different diligence, six in seven of them
/// replies to one of the last 300, one in a hundred to a message that the base lacks.
class MadeUpRows : public TreeRows {
 public:
  explicit MadeUpRows(std::int32_t count) {
    std::mt19937 random(1);
    const auto upto = [&](int n) { return std::uniform_int_distribution<int>(0, n)(random); };
    rows_.reserve(static_cast<std::size_t>(count));
    for (std::int32_t number = 1; number <= count; ++number) {
      const bool lost = upto(99) == 0, starts = !lost && upto(6) == 0;
      const int author = 2000 / (1 + upto(1999));
      rows_.push_back({.number = number * 2,
                       .answered = lost                    ? number * 2 - 1
                                   : starts || number == 1 ? 0
                                                           : 2 * std::max(1, number - 1 - upto(299)),
                       .subject = Cat(starts ? "" : "Re: ", "Курс и прогноз на завтра, "_ru, upto(999)),
                       .author = Cat("Участник "_ru, author),
                       .date = OleDate{36526 + number / 60.0}});
    }
  }

  /// Goes back before the first row.
  void Rewind() { next_ = 0; }
  OleDate LastDate() const { return rows_.back().date; }

  std::int32_t Count() override { return static_cast<std::int32_t>(rows_.size()); }
  bool Next() override { return next_++ < rows_.size(); }
  TreeRow Current() override {
    const Row& row = rows_[next_ - 1];
    return {row.number, row.answered, row.subject, row.author, row.date};
  }

 private:
  struct Row {
    std::int32_t number, answered;
    std::string subject, author;
    OleDate date;
  };
  std::vector<Row> rows_;
  std::size_t next_ = 0;
};

/// All three groupings with the longest node texts.
inline constexpr user_settings::TreeSettings kEverything{.BuildTreeByDate = true,
                                                         .BuildTreeByAuthor = true,
                                                         .open_threads = user_settings::OpenThreads::kAll,
                                                         .show_author = true,
                                                         .show_date = true};
/// What a user has who changed nothing but the threads to open.
inline constexpr user_settings::TreeSettings kThreadsOnly{.open_threads = user_settings::OpenThreads::kAll};

inline NodeTree BuildFrom(MadeUpRows& rows, const user_settings::TreeSettings& settings) {
  struct LastDay : Clock {
    explicit LastDay(OleDate date) : now(date) {}
    OleDate Now() const override { return now; }
    OleDate now;
  } const clock(rows.LastDate());
  struct : TreeTrouble {
    void Tell(std::string_view) override { std::abort(); }
  } no_trouble;
  NoProgress progress;
  rows.Rewind();
  return BuildTree(rows, settings, clock, progress, no_trouble).tree;
}
