#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

#include "base/ole_date.h"
#include "jet/database.h"
#include "jet/properties_writer.h"
#include "jet/table_def.h"
#include "jet/table_writer.h"
#include "jet/transaction.h"

namespace jet {

/// One piece of a new saved query; QueryRow tells what they mean.
struct QueryPiece {
  int attribute = 0;
  std::uint32_t order = 1;
  std::optional<int> flag = std::nullopt;
  std::string_view name1 = "", expression = "";  // Windows-1251; empty = Null
};

/// Adds tables and queries to a base. Whatever is thrown, the transaction must not be committed then.
class CatalogWriter {
 public:
  /// @param now  the date of creation that the objects get
  CatalogWriter(Transaction& transaction, Database& base, OleDate now);

  /// @param design  from DesignTable. @throws Error 5 for a name that no table can have, 3022 when it is taken
  void CreateTable(std::string_view name, TableDef design, std::span<const NewProperties> properties = {});
  /// A select query. @throws as above
  void CreateQuery(std::string_view name, std::span<const QueryPiece> pieces);

 private:
  void RequireFreeName(std::string_view name) const;
  std::uint32_t NewId() const;
  void List(std::string_view name, std::uint32_t id, int type, std::string properties);
  void Permit(std::uint32_t id);
  void AddPiece(std::uint32_t query, const QueryPiece& piece);

  Transaction& transaction_;
  Database& base_;
  OleDate now_;
  Table objects_, permissions_, queries_;
  TableWriter object_rows_, permission_rows_, query_rows_;
};

}  // namespace jet
