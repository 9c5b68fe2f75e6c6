#include "sql/recordset.h"

#include <algorithm>
#include <utility>

#include "base/cat.h"
#include "base/checked.h"
#include "base/error.h"
#include "base/ru_literal.h"
#include "sql/parser.h"
#include "sql/sql_errors.h"
#include "text/numbers.h"

namespace sql {
namespace {

[[noreturn]] void ThrowNoCurrentRecord() { throw Error(error_number::kNoCurrentRecord, "Нет текущей записи"_ru); }

[[noreturn]] void ThrowNothingToStore() { throw Error(error_number::kNothingToStore, "Нет добавляемой записи"_ru); }

}  // namespace

Recordset::Recordset(std::vector<Field> fields, std::unique_ptr<ResultRows> rows, OleDate now)
    : fields_(std::move(fields)), rows_(std::move(rows)), now_(now), texts_(fields_.size()) {
  at_end_ = rows_->size() == 0;
  if (!at_end_) GoTo(0);
}

std::size_t Recordset::FieldIndex(std::string_view name) const {
  const auto field = FindField(fields_, name);
  if (!field) throw Error(error_number::kNoSuchObject, Cat("В базе нет такого объекта: поле «"_ru, name, "»"_ru));
  return *field;
}

void Recordset::MoveFirst() {
  adding_ = false;
  if (rows_->size() == 0) ThrowNoCurrentRecord();
  GoTo(0);
}

void Recordset::MoveLast() {
  adding_ = false;
  if (rows_->size() == 0) ThrowNoCurrentRecord();
  GoTo(rows_->size() - 1);
}

void Recordset::GoTo(std::size_t position) {
  rows_->GoTo(position);
  position_ = position;
  row_ = nullptr;
  has_current_ = true;
  at_end_ = deleted_ = false;
  visited_ = std::max(visited_, position + 1);
}

void Recordset::MoveNext() {
  adding_ = false;
  if (!has_current_ && !deleted_) ThrowNoCurrentRecord();
  const std::size_t next = deleted_ ? *position_ : CurrentPosition() + 1;
  if (next < rows_->size()) return GoTo(next);
  has_current_ = deleted_ = false;
  at_end_ = true;
}

std::size_t Recordset::CurrentPosition() { return position_ ? *position_ : rows_->Position(); }

std::int32_t Recordset::RecordCount() const {
  return CheckedCast<std::int32_t>(std::min(visited_ + added_, rows_->size()));
}

void Recordset::FindFirst(std::string_view criterion) {
  const BoundExpression condition = Bind(ParseCondition(criterion), {fields_, {}, now_});
  adding_ = deleted_ = false;
  position_.reset();
  row_ = nullptr;
  has_current_ = rows_->FindFirst(condition);
  no_match_ = !has_current_;
  at_end_ = rows_->size() == 0;
}

void Recordset::AddNew() {
  adding_ = false;
  rows_->StartRow();
  adding_ = true;
}

void Recordset::Set(std::size_t field, jet::Value value) {
  if (!adding_) ThrowNothingToStore();
  rows_->Set(field, std::move(value));
}

void Recordset::Update() {
  if (!adding_) ThrowNothingToStore();
  rows_->StoreRow();
  adding_ = false;
  row_ = nullptr;
  ++added_;
}

void Recordset::Delete() {
  adding_ = false;
  if (deleted_) ThrowRowDeleted();
  if (!has_current_) ThrowNoCurrentRecord();
  const std::size_t position = CurrentPosition();
  rows_->Delete();
  position_ = position;
  row_ = nullptr;
  has_current_ = false;
  deleted_ = true;
  if (position < visited_) --visited_;
}

const RowAccess& Recordset::Current() {
  if (deleted_) ThrowRowDeleted();
  if (!has_current_) ThrowNoCurrentRecord();
  if (row_ == nullptr) row_ = &rows_->Row();
  return *row_;
}

bool Recordset::IsNull(std::size_t field) { return Current().IsNull(field); }

std::int32_t Recordset::Int(std::size_t field) {
  const Scalar value = Current().Read(field, texts_[field]);
  if (value.kind == ScalarKind::kText) ThrowTypeMismatch();
  if (value.kind == ScalarKind::kLong || value.IsNull()) return static_cast<std::int32_t>(value.number);
  return text::RoundHalfEven(value.number);
}

std::string_view Recordset::Text(std::size_t field) {
  std::string& text = texts_[field];
  const Scalar value = Current().Read(field, text);
  if (value.kind == ScalarKind::kText) return value.text;
  text.clear();
  AppendAsText(value, text);
  return text;
}

std::optional<OleDate> Recordset::Date(std::size_t field) {
  const Scalar value = Current().Read(field, texts_[field]);
  if (value.IsNull()) return std::nullopt;
  if (value.kind == ScalarKind::kText) ThrowTypeMismatch();
  return OleDate{value.number};
}

jet::Value Recordset::Get(std::size_t field) { return Current().Get(field); }

}  // namespace sql
