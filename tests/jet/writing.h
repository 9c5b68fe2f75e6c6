#pragma once

#include <initializer_list>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/ru_literal.h"
#include "jet/database.h"
#include "jet/table_writer.h"
#include "jet/tiny_base.h"
#include "support/faulty_file.h"

namespace jet {

inline const std::string kBasePath = "base.mdb";
inline constexpr Version kBothVersions[] = {Version::kJet3, Version::kJet4};

/// Assignments by the names of columns.
inline std::vector<Assignment> Values(const Table& table,
                                      std::initializer_list<std::pair<std::string_view, Value>> values) {
  std::vector<Assignment> assignments;
  for (const auto& [name, value] : values) assignments.push_back({table.def().FindColumn(name), value});
  return assignments;
}

/// All that a table holds, by the first column, which is a number.
inline std::map<std::int32_t, std::vector<Value>> RowsOf(const Table& table) {
  std::map<std::int32_t, std::vector<Value>> rows;
  for (TableCursor cursor = table.Scan(); cursor.Next();) {
    std::vector<Value>& values = rows[cursor.row().Int(table.def().columns.front())];
    for (const Column& column : table.def().columns) values.push_back(cursor.row().Get(column));
  }
  return rows;
}

/// A base of two tables on a disk in memory, open for writing.
struct WritableBase {
  explicit WritableBase(std::string image) : disk(kBasePath, std::move(image)) {}
  explicit WritableBase(Version version) : WritableBase(TinyBase(version)) {}

  FaultyFileSystem disk;
  Database base = Database::Open(disk, kBasePath, Access::kReadWrite);
  Table messages = base.OpenTable("База"_ru);

  /// What another program would read now.
  Database Reopened() const { return Database::OpenFile(std::make_unique<MemoryFile>(disk.Content(kBasePath))); }
};

inline Value Text(std::string_view text) { return std::string(text); }

}  // namespace jet
