#include <algorithm>
#include <optional>
#include <string>
#include <utility>

#include "sql/evaluate.h"
#include "sql/result_rows.h"
#include "sql/row_editor.h"
#include "sql/sql_errors.h"

namespace sql {
namespace {

/// A condition on the result's fields as one on the source's columns.
BoundExpression OnSource(BoundExpression condition, const std::vector<Output>& outputs) {
  if (condition.kind == BoundExpression::Kind::kColumn) return outputs[condition.column].expression;
  for (BoundExpression& operand : condition.operands) operand = OnSource(std::move(operand), outputs);
  return condition;
}

/// A stored row as the plan's outputs show it.
class OutputRow final : public RowAccess {
 public:
  explicit OutputRow(const Plan& plan) : outputs_(plan.outputs), evaluator_(plan.source->fields().size()) {}

  void Show(const RowAccess& row) {
    row_ = &row;
    evaluator_.SetRow(row);
  }

  bool IsNull(std::size_t field) const override {
    const BoundExpression& output = outputs_[field].expression;
    return IsColumn(output) ? row_->IsNull(output.column) : evaluator_.ValueOf(output).IsNull();
  }
  Scalar Read(std::size_t field, std::string& buffer) const override {
    const BoundExpression& output = outputs_[field].expression;
    return IsColumn(output) ? row_->Read(output.column, buffer) : evaluator_.ValueOf(output);
  }
  StoredText ReadStored(std::size_t field) const override {
    const BoundExpression& output = outputs_[field].expression;
    if (IsColumn(output)) return row_->ReadStored(output.column);
    const Scalar value = evaluator_.ValueOf(output);
    if (value.IsNull()) return {};
    calculated_.clear();
    AppendAsText(value, calculated_);
    return {StoredText::Encoding::kWindows1251, calculated_};
  }
  jet::Value Get(std::size_t field) const override {
    const BoundExpression& output = outputs_[field].expression;
    return IsColumn(output) ? row_->Get(output.column) : ToValue(evaluator_.ValueOf(output));
  }

 private:
  static bool IsColumn(const BoundExpression& output) { return output.kind == BoundExpression::Kind::kColumn; }

  const std::vector<Output>& outputs_;
  const RowAccess* row_ = nullptr;
  mutable Evaluator evaluator_;
  mutable std::string calculated_;
};

class DynasetRows final : public ResultRows {
 public:
  DynasetRows(Plan plan, std::vector<jet::RowId> keys)
      : plan_(std::move(plan)),
        keys_(std::move(keys)),
        chosen_(keys_.size()),
        reader_(plan_.source->OpenReader()),
        editor_(plan_.source->OpenEditor()),
        shown_(plan_) {}

  std::size_t size() const override { return keys_.size(); }

  void GoTo(std::size_t position) override {
    current_ = keys_[position];
    position_ = position;
    is_read_ = false;
  }

  /// A row found through an index is looked for among the keys only when its place matters.
  std::size_t Position() override {
    if (!position_) {
      const auto place = std::find(keys_.begin(), keys_.end(), current_);
      position_ = static_cast<std::size_t>(place - keys_.begin());
    }
    return *position_;
  }

  const RowAccess& Row() override {
    if (is_read_) return shown_;
    const RowAccess* const row = reader_->Find(current_);
    if (row == nullptr) ThrowRowDeleted();
    shown_.Show(*row);
    is_read_ = true;
    return shown_;
  }

  bool FindFirst(const BoundExpression& condition) override {
    const BoundExpression wanted = OnSource(condition, plan_.outputs);
    if (const auto path = FindSeek(wanted, *plan_.source)) return FindThroughIndex(wanted, *path);
    Evaluator evaluator(plan_.source->fields().size());
    for (std::size_t position = 0; position < keys_.size(); ++position) {
      const RowAccess* const row = reader_->Find(keys_[position]);
      if (row == nullptr) continue;
      evaluator.SetRow(*row);
      if (!evaluator.IsTrue(wanted)) continue;
      GoTo(position);
      return true;
    }
    is_read_ = false;
    return false;
  }

  void StartRow() override { Editor().Start(); }

  void Set(std::size_t field, jet::Value value) override {
    const BoundExpression& output = plan_.outputs[field].expression;
    if (output.kind != BoundExpression::Kind::kColumn) ThrowNotUpdatable();
    Editor().Set(output.column, std::move(value));
  }

  void StoreRow() override {
    keys_.push_back(Editor().Store());
    is_read_ = false;
  }

  void Delete() override {
    Row();  // refuses a row that somebody else has deleted
    Editor().Delete(current_);
    const std::size_t position = Position();
    keys_.erase(keys_.begin() + static_cast<std::ptrdiff_t>(position));
    if (position < chosen_) --chosen_;
    is_read_ = false;
  }

 private:
  RowEditor& Editor() {
    if (editor_ == nullptr) ThrowNotUpdatable();
    return *editor_;
  }

  /// An added row belongs to the set even where WHERE would not have chosen it.
  bool IsAdded(jet::RowId id) const {
    const auto added = keys_.begin() + static_cast<std::ptrdiff_t>(chosen_);
    return std::find(added, keys_.end(), id) != keys_.end();
  }

  bool FindThroughIndex(const BoundExpression& wanted, const AccessPath& path) {
    const auto stream = plan_.source->Open(path);
    Evaluator evaluator(plan_.source->fields().size());
    while (stream->Next()) {
      evaluator.SetRow(stream->row());
      const bool belongs = !plan_.where || evaluator.IsTrue(*plan_.where) || IsAdded(stream->id());
      if (!belongs || !evaluator.IsTrue(wanted)) continue;
      current_ = stream->id();
      position_.reset();
      is_read_ = false;
      return true;
    }
    return false;
  }

  Plan plan_;
  std::vector<jet::RowId> keys_;
  std::size_t chosen_;  // how many of them WHERE chose; the others were added
  std::unique_ptr<RowReader> reader_;
  std::unique_ptr<RowEditor> editor_;
  OutputRow shown_;
  jet::RowId current_;
  std::optional<std::size_t> position_;  // of current_ among keys_, when known
  bool is_read_ = false;                 // shown_ shows current_
};

}  // namespace

std::unique_ptr<ResultRows> MakeDynasetRows(Plan plan, std::vector<jet::RowId> keys) {
  return std::make_unique<DynasetRows>(std::move(plan), std::move(keys));
}

}  // namespace sql
