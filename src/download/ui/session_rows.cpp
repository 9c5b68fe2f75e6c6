#include "download/ui/session_rows.h"

#include <algorithm>

#include <QColor>
#include <QGuiApplication>
#include <QPalette>

#include "download/session_parts.h"
#include "ui/icons.h"
#include "ui/text.h"

namespace {

constexpr const char* kHeaders[] = {"N", "Код", "Автор", "Тема", "Дата", "Статус"};

IconName IconOf(int icon) {
  switch (icon) {
    case row_icon::kLoaded: return IconName::kLoaded;
    case row_icon::kFetching: return IconName::kLoading;
    case row_icon::kSkipped: return IconName::kSkipped;
    case row_icon::kNotFound: return IconName::kNotFound;
    default: return IconName::kFailed;
  }
}

/// On a dark background a pure colour is hard to read: it becomes lighter there.
QColor Readable(std::uint32_t bgr) {
  constexpr int kDark = 128, kLighter = 150;  // of 255; per cent
  const auto part = [bgr](unsigned shift) { return static_cast<int>(bgr >> shift & 0xFF); };
  const QColor colour(part(0), part(8), part(16));
  return QGuiApplication::palette().color(QPalette::Base).lightness() < kDark ? colour.lighter(kLighter) : colour;
}

/// A row is one line, whatever a subject holds.
QString OneLine(std::string text) {
  std::replace_if(
      text.begin(), text.end(), [](char c) { return c >= '\0' && c < ' '; }, ' ');
  return FromCp1251(text);
}

}  // namespace

void SessionRows::Clear() {
  beginResetModel();
  rows_.clear();
  endResetModel();
}

void SessionRows::SortNewestFirst() {
  if (newest_first_) return;
  beginResetModel();
  newest_first_ = true;
  endResetModel();
}

void SessionRows::Add(std::string_view text) {
  const int row = newest_first_ ? 0 : rowCount();
  beginInsertRows({}, row, row);
  rows_.emplace_back().cells[0] = text;
  endInsertRows();
}

void SessionRows::SetCell(int column, std::string_view text) {
  if (rows_.empty()) return;
  rows_.back().cells.at(static_cast<std::size_t>(column)) = text;
  TellChange(LastAdded());
}

void SessionRows::SetIcon(int icon) {
  if (rows_.empty()) return;
  rows_.back().icon = icon;
  TellChange(LastAdded());
}

void SessionRows::SetColour(std::uint32_t bgr) {
  if (rows_.empty()) return;
  rows_.back().colour = bgr;
  TellChange(LastAdded());
}

void SessionRows::MarkNotStored(std::int32_t number) {
  for (int i = rowCount() - 1; i >= 0; --i) {
    const QModelIndex first = index(Place(i), 0);
    if (Number(first) != number) continue;
    Row& row = rows_[static_cast<std::size_t>(i)];
    row.cells[row_column::kStatus] = "Не записано"_ru;
    row.icon = row_icon::kStatus;
    row.colour = kRed;
    return TellChange(first);
  }
}

void SessionRows::TellChange(const QModelIndex& first) {
  emit dataChanged(first, index(first.row(), columnCount() - 1));
}

QModelIndex SessionRows::LastAdded() const { return rows_.empty() ? QModelIndex() : index(Place(rowCount() - 1), 0); }

std::optional<std::int32_t> SessionRows::Number(const QModelIndex& cell) const {
  bool is_number = false;
  const int number = QString::fromLatin1(At(cell).cells[row_column::kNumber].c_str()).toInt(&is_number);
  return is_number ? std::optional(number) : std::nullopt;
}

int SessionRows::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

int SessionRows::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(std::size(kHeaders));
}

QVariant SessionRows::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) return {};
  const Row& row = At(index);
  switch (role) {
    case Qt::DisplayRole: return OneLine(row.cells[static_cast<std::size_t>(index.column())]);
    case Qt::DecorationRole: return index.column() == 0 && row.icon != 0 ? Icon(IconOf(row.icon)) : QVariant();
    case Qt::ForegroundRole: return row.colour ? QVariant(Readable(*row.colour)) : QVariant();
    default: return {};
  }
}

QVariant SessionRows::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || role != Qt::DisplayRole) return {};
  return QString::fromUtf8(kHeaders[section]);
}
