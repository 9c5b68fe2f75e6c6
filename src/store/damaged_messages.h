#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/error.h"
#include "base/progress.h"
#include "jet/row.h"
#include "jet/row_draft.h"
#include "jet/salvage.h"
#include "jet/table_def.h"

/// Stands at the end of a message's text when some of the message could not be read. HTML.
std::string_view IncompleteMessageMark();

/// The table База of a damaged base: where it is, and what its rows still say.
class DamagedMessages {
 public:
  /// @param base  outlives this
  /// @param to    the table that messages are to go to; outlives this
  /// @throws Error 3265 when the base has no such table, or nothing tells any more where it is
  DamagedMessages(const jet::SalvagedBase& base, const jet::TableDef& to, Progress& progress);
  DamagedMessages(const DamagedMessages&) = delete;
  DamagedMessages& operator=(const DamagedMessages&) = delete;

  /// Has the user stopped the search for the table? Then nothing else may be asked.
  bool stopped() const { return stopped_; }
  const jet::TableDef& def() const { return def_; }
  /// Is anything of it from the table's own definition? Otherwise rows are taken to look as in a new base.
  bool knows_definition() const { return knows_definition_; }
  /// What a new base will not have; Russian, Windows-1251.
  const std::vector<std::string>& notes() const { return notes_; }
  /// The column Код.
  const jet::Column& number() const { return *columns_[number_at_].from; }

  struct Message {
    std::int32_t number = 0;
    bool whole = true;                                 // else its text ends in IncompleteMessageMark
    std::int64_t damaged_page = FormatError::kNoPage;  // where something is missing, if that is known
    std::vector<jet::Assignment> values;               // for the table `to`
  };
  /// @return none when the row has no number that a message can have
  std::optional<Message> Read(const jet::Row& row) const;

 private:
  struct Carried {
    const jet::Column *from, *to;
  };

  jet::TableDef FindDefinition(const jet::SalvagedBase& base, const jet::Catalog& catalog, const jet::TableDef& to,
                               Progress& progress);
  std::optional<jet::TableDef> FindElsewhere(const jet::SalvagedBase& base, const jet::Catalog& catalog,
                                             Progress& progress);
  jet::TableDef WithUsualColumns(jet::TableDef def, const jet::TableDef& usual);
  void PlanColumns(const jet::TableDef& to);
  void NoteWhatStays(const jet::Catalog& catalog);
  jet::Value ReadValue(const jet::Row& row, const Carried& column, Message& message) const;
  jet::Value ReadMemo(const jet::Row& row, const jet::Column& column, Message& message) const;

  jet::Version version_;
  bool stopped_ = false;
  bool knows_definition_ = true;
  std::vector<std::string> notes_;
  jet::TableDef def_;
  std::vector<Carried> columns_;
  std::size_t number_at_ = 0;  // in columns_
};
