#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <QAbstractTableModel>

/// The list of a session: a row per message number, with a picture and perhaps a colour. What is set goes into the
/// row added last; without one it goes nowhere. Texts are Windows-1251.
class SessionRows : public QAbstractTableModel {
  Q_OBJECT
 public:
  using QAbstractTableModel::QAbstractTableModel;

  void Clear();
  /// Rows stand in falling order of adding, now and from now on.
  void SortNewestFirst();
  void Add(std::string_view text);
  /// @param column  from 0, the row's own text
  void SetCell(int column, std::string_view text);
  /// @param icon  a row_icon
  void SetIcon(int icon);
  /// Of all texts of the row. @param bgr  00BBGGRR
  void SetColour(std::uint32_t bgr);
  /// Says of the row of a message that it failed after all; of the newest, when there are several.
  void MarkNotStored(std::int32_t number);

  /// The first cell of the row added last; invalid when there is none.
  QModelIndex LastAdded() const;
  bool IsNewestFirst() const { return newest_first_; }
  /// The message number of a row; none when it cannot be read.
  std::optional<std::int32_t> Number(const QModelIndex& cell) const;

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  struct Row {
    std::array<std::string, 6> cells;
    int icon = 0;  // 0 = none
    std::optional<std::uint32_t> colour;
  };

  const Row& At(const QModelIndex& index) const { return rows_[static_cast<std::size_t>(Place(index.row()))]; }
  int Place(int row) const { return newest_first_ ? static_cast<int>(rows_.size()) - 1 - row : row; }
  void TellChange(const QModelIndex& first);

  std::vector<Row> rows_;  // in the order of adding
  bool newest_first_ = false;
};
