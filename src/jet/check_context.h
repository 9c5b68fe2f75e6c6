#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/cat.h"
#include "base/error.h"
#include "base/progress.h"
#include "base/ru_literal.h"
#include "jet/check.h"
#include "jet/page_file.h"
#include "jet/table_def.h"

namespace jet {

/// What a part of the check tells and asks: findings, who owns which page, how far it has come.
class CheckContext {
 public:
  using Owner = std::uint32_t;
  static constexpr Owner kNobody = 0;

  CheckContext(const PageFile& file, Progress& progress, CheckResult& result);

  const PageFile& file() const { return file_; }
  const Layout& layout() const { return file_.layout(); }

  void Error(std::string text) { Add(Severity::kError, std::move(text)); }
  void Warning(std::string text) { Add(Severity::kWarning, std::move(text)); }
  /// Makes a finding of what `step` throws. @return whether it threw nothing
  template <typename Step>
  bool Try(std::string_view where, Step step) {
    try {
      step();
      return true;
    } catch (const ::Error& error) {
      Error(Cat(where, ": "_ru, error.what()));
      return false;
    }
  }

  /// @param name  says in a finding who it is: "данные таблицы «База»"
  Owner NewOwner(std::string_view name);
  /// @return false, with a finding, when the file has no such page or somebody owns it
  bool Claim(std::uint32_t page, Owner owner);
  Owner OwnerOf(std::uint32_t page) const { return page < owner_of_.size() ? owner_of_[page] : kNobody; }
  const std::string& NameOf(Owner owner) const { return owners_[owner]; }

  /// One more page has been looked at.
  void Advance();
  bool stopped() const { return !result_.complete; }

 private:
  void Add(Severity severity, std::string text);

  const PageFile& file_;
  Progress& progress_;
  CheckResult& result_;
  std::vector<std::string> owners_;
  std::vector<Owner> owner_of_;  // by page
  std::uint32_t pages_seen_ = 0;
  int percent_ = -1;
};

/// "Таблица «База», страница 24, строка 3".
std::string PlaceOf(std::string_view table, RowId row);
/// Checks a page of rows: its kind, its owner, its row table and its free bytes.
/// @param where  what the page belongs to, for findings
/// @return false, with a finding, when its rows cannot be looked at
bool CheckRowPage(CheckContext& context, std::uint32_t page, std::uint32_t owner, std::string_view where);

}  // namespace jet
