#include "sql/stored_table.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "base/bytes.h"
#include "sql/row_editor.h"

namespace sql {
namespace {

using jet::ColumnType;

bool IsWhole(ColumnType type) {
  return type == ColumnType::kByte || type == ColumnType::kInteger || type == ColumnType::kLong;
}

/// Types whose keys an index orders the way values are compared.
bool IsOrdered(ColumnType type) {
  return IsWhole(type) || type == ColumnType::kCurrency || type == ColumnType::kSingle || type == ColumnType::kDouble ||
         type == ColumnType::kDateTime;
}

bool IsPrimary(const jet::TableDef& def, const jet::RealIndex& index) {
  const auto position = static_cast<std::size_t>(&index - def.real_indexes.data());
  return std::any_of(def.logical_indexes.begin(), def.logical_indexes.end(), [position](const jet::LogicalIndex& name) {
    return name.kind == jet::IndexKind::kPrimary && name.real == position;
  });
}

/// A row of the engine as expressions see it.
class StoredRow final : public RowAccess {
 public:
  StoredRow(const jet::TableDef& def, jet::Version version) : def_(def), version_(version) {}
  void Show(const jet::Row& row) { row_ = &row; }

  bool IsNull(std::size_t column) const override { return row_->IsNull(def_.columns[column]); }

  Scalar Read(std::size_t column, std::string& buffer) const override {
    const jet::Column& c = def_.columns[column];
    if (c.type == ColumnType::kDateTime) {
      const auto date = row_->Date(c);
      return date ? Scalar::Date(*date) : Scalar();
    }
    if (row_->IsNull(c)) return {};
    switch (c.type) {
      case ColumnType::kBoolean: return Scalar::Boolean(row_->Bool(c));
      case ColumnType::kByte:
      case ColumnType::kInteger:
      case ColumnType::kLong: return Scalar::Long(row_->Int(c));
      case ColumnType::kText:
        if (version_ == jet::Version::kJet3) return Scalar::Text(AsText(row_->Stored(c)));
        [[fallthrough]];
      case ColumnType::kMemo:
        buffer.clear();
        row_->AppendText(c, buffer);
        return Scalar::Text(buffer);
      default: return ToScalar(row_->Get(c), buffer);
    }
  }

  StoredText ReadStored(std::size_t column) const override {
    const jet::Column& c = def_.columns[column];
    if (row_->IsNull(c)) return {};
    const auto encoding =
        version_ == jet::Version::kJet3 ? StoredText::Encoding::kWindows1251 : StoredText::Encoding::kUtf16;
    if (c.type == ColumnType::kText) return {encoding, AsText(row_->Stored(c))};
    return {encoding, AsText(row_->FetchStored(c, memo_))};
  }

  jet::Value Get(std::size_t column) const override { return row_->Get(def_.columns[column]); }

 private:
  const jet::TableDef& def_;
  jet::Version version_;
  const jet::Row* row_ = nullptr;
  mutable std::optional<jet::LongValue> memo_;  // that was asked for last
};

class ScanStream final : public RowStream {
 public:
  ScanStream(const jet::Table& table, jet::Version version) : cursor_(table.Scan()), shown_(table.def(), version) {}
  bool Next() override { return cursor_.Next(); }
  jet::RowId id() const override { return cursor_.row().id(); }
  const RowAccess& row() override {
    shown_.Show(cursor_.row());
    return shown_;
  }

 private:
  jet::TableCursor cursor_;
  StoredRow shown_;
};

/// Reads rows by their address, into one and the same row.
class StoredReader final : public RowReader {
 public:
  StoredReader(const jet::Table& table, jet::Version version) : table_(table), shown_(table.def(), version) {
    shown_.Show(row_);
  }
  const RowAccess* Find(jet::RowId id) override { return table_.TryRead(id, row_) ? &shown_ : nullptr; }
  /// @throws FormatError when no row has this address
  const RowAccess& Read(jet::RowId id) {
    table_.Read(id, row_);
    return shown_;
  }

 private:
  jet::Table table_;
  jet::Row row_;
  StoredRow shown_;
};

/// Rows in the order of an index: those whose key begins with `prefix`, all when it is empty.
class IndexStream final : public RowStream {
 public:
  IndexStream(const jet::Table& table, jet::Version version, jet::IndexCursor cursor, std::string prefix = {})
      : cursor_(std::move(cursor)), prefix_(std::move(prefix)), reader_(table, version) {
    if (!prefix_.empty()) cursor_.Seek(AsBytes(prefix_));
  }

  bool Next() override {
    row_ = nullptr;
    return cursor_.Next() && (prefix_.empty() || AsText(cursor_.key()).substr(0, prefix_.size()) == prefix_);
  }
  jet::RowId id() const override { return cursor_.id(); }
  const RowAccess& row() override {
    if (row_ == nullptr) row_ = &reader_.Read(cursor_.id());
    return *row_;
  }

 private:
  jet::IndexCursor cursor_;
  std::string prefix_;
  StoredReader reader_;
  const RowAccess* row_ = nullptr;  // of the current entry, once read
};

}  // namespace

StoredTable::StoredTable(const jet::Table& table, Changes& changes)
    : table_(table), changes_(changes), version_(changes.version()) {
  for (const jet::Column& column : table_.def().columns) fields_.push_back({column.name, column.type});
}

const jet::RealIndex* StoredTable::IndexOn(std::size_t column) const {
  return table_.def().IndexOn(table_.def().columns[column]);
}

bool StoredTable::CanSeek(std::size_t column) const {
  return IsWhole(fields_[column].type) && IndexOn(column) != nullptr;
}

bool StoredTable::CanWalk(std::size_t column) const {
  const jet::RealIndex* const index = IndexOn(column);
  if (index == nullptr || !IsOrdered(fields_[column].type)) return false;
  const bool holds_every_row = !index->ignore_nulls || index->required || IsPrimary(table_.def(), *index);
  return holds_every_row;
}

bool StoredTable::IsUnique(std::size_t column) const {
  const jet::RealIndex* const index = IndexOn(column);
  return index != nullptr && index->columns.size() == 1 && (index->unique || IsPrimary(table_.def(), *index));
}

std::unique_ptr<RowStream> StoredTable::Open(const AccessPath& path) const {
  if (path.kind == AccessPath::Kind::kStored) return std::make_unique<ScanStream>(table_, version_);
  if (path.kind == AccessPath::Kind::kNatural) return OpenNatural();

  const jet::RealIndex& index = *IndexOn(path.column);
  if (path.kind == AccessPath::Kind::kEqual) {
    const jet::Value key = path.key;
    auto prefix = table_.KeyPrefix(index, std::span(&key, 1));
    return std::make_unique<IndexStream>(table_, version_, table_.Walk(index), std::move(*prefix));
  }
  const bool with_index = index.columns.front().ascending == (path.kind == AccessPath::Kind::kAscending);
  const auto direction = with_index ? jet::Direction::kForward : jet::Direction::kBackward;
  return std::make_unique<IndexStream>(table_, version_, table_.Walk(index, direction));
}

std::unique_ptr<RowStream> StoredTable::OpenNatural() const {
  const jet::TableDef& def = table_.def();
  for (std::size_t column = 0; column < fields_.size(); ++column) {
    const jet::RealIndex* const index = IndexOn(column);
    if (index != nullptr && IsPrimary(def, *index) && CanWalk(column))
      return Open({AccessPath::Kind::kAscending, column, 0});
  }
  return Open({AccessPath::Kind::kStored, 0, 0});
}

std::unique_ptr<RowReader> StoredTable::OpenReader() const { return std::make_unique<StoredReader>(table_, version_); }

std::unique_ptr<RowEditor> StoredTable::OpenEditor() const { return std::make_unique<RowEditor>(changes_, table_); }

}  // namespace sql
