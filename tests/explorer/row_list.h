#pragma once

#include <cstddef>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "base/error.h"
#include "explorer/tree_builder.h"

/// One row of a list. The texts, Windows-1251, outlive it.
struct ListRow {
  std::int32_t Код = 0;
  std::int32_t Вответ = 0;
  std::string_view Тема = "t", Автор = "a";
  std::optional<OleDate> Дата = std::nullopt;
};

/// Rows from memory. The row of number kUnreadable cannot be read.
class RowList : public TreeRows {
 public:
  static constexpr std::int32_t kUnreadable = -666;

  explicit RowList(std::vector<ListRow> rows) : rows_(std::move(rows)) {}
  std::int32_t Count() override { return static_cast<std::int32_t>(rows_.size()); }
  bool Next() override { return next_++ < rows_.size(); }
  TreeRow Current() override {
    const ListRow& row = rows_[next_ - 1];
    if (row.Код == kUnreadable) throw Error(error_number::kConversion, "unreadable");
    return {row.Код, row.Вответ, row.Тема, row.Автор, row.Дата};
  }

 private:
  std::vector<ListRow> rows_;
  std::size_t next_ = 0;
};
