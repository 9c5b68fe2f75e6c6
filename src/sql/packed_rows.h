#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "sql/row_source.h"

namespace sql {

/// Rows of a result, one behind another in a few large blocks of memory: a row takes the bytes of
/// its values, a bit per column for Null and eight bytes for its place. Move-only.
class PackedRows {
 public:
  explicit PackedRows(std::vector<Field> fields);

  const std::vector<Field>& fields() const { return fields_; }
  std::size_t size() const { return rows_.size(); }

  /// Builds one row, column by column from the first; Finish() completes it. Values are converted to
  /// their column's type. @throws SqlError 13, Error 6 when one does not fit
  void Add(const Scalar& value);
  /// For values that no Scalar holds in full.
  void Add(const jet::Value& value);
  void Finish();

  /// Memory that growing left unused is given back.
  void ShrinkToFit() { rows_.shrink_to_fit(); }
  void Truncate(std::size_t rows) { rows_.resize(rows); }
  /// Orders the rows; `less` compares positions as they are now, equal rows keep their order.
  template <typename Less>
  void Sort(Less less);

  /// A row as expressions see it; texts are views that live as long as the rows do.
  class Row final : public RowAccess {
   public:
    Row(const PackedRows& rows, std::size_t row) : rows_(&rows), bytes_(rows.rows_[row]) {}
    bool IsNull(std::size_t column) const override;
    Scalar Read(std::size_t column, std::string& buffer) const override;
    StoredText ReadStored(std::size_t column) const override;
    jet::Value Get(std::size_t column) const override;

   private:
    friend class PackedRows;
    Row(const char* bytes, const PackedRows& rows) : rows_(&rows), bytes_(bytes) {}
    std::string_view Variable(std::size_t column) const;
    template <typename Number>
    Number Fixed(std::size_t column) const;

    const PackedRows* rows_;
    const char* bytes_;
  };

 private:
  struct Place {
    jet::ColumnType type;
    bool variable;
    std::uint32_t at;  // fixed: bytes from the row's start; variable: how many stand before it
  };

  void AddNull();
  void AddVariable(std::string_view bytes);
  template <typename Number>
  void AddFixed(Number number);

  std::vector<Field> fields_;
  std::vector<Place> places_;
  std::size_t null_size_ = 0;     // bytes of null bits, with which a row begins
  std::size_t fixed_size_ = 0;    // these included
  std::string fixed_, variable_;  // the row being built
  std::size_t next_column_ = 0;
  std::vector<std::unique_ptr<char[]>> blocks_;
  std::size_t block_left_ = 0;
  char* block_at_ = nullptr;
  std::vector<const char*> rows_;
};

template <typename Less>
void PackedRows::Sort(Less less) {
  std::stable_sort(rows_.begin(), rows_.end(),
                   [&](const char* a, const char* b) { return less(Row(a, *this), Row(b, *this)); });
}

}  // namespace sql
