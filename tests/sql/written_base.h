#pragma once

#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/ru_literal.h"
#include "jet/create.h"
#include "jet/table_design.h"
#include "sql/connection.h"
#include "support/error_of.h"
#include "support/faulty_file.h"
#include "support/fixed_clock.h"

namespace sql {

inline const std::string kPath = "base.mdb";

/// The image of a base with the table База (Код is the key, Вответ begins as 0, Тема takes no empty text, Автор
/// neither empty text nor Null, Почта any of 10 characters), messages 1, 2, 3 and 5, and the query Ответы.
std::string MessageImage(jet::Version version);

/// A base on a disk in memory.
struct WrittenBase {
  explicit WrittenBase(const std::string& image, jet::Access access = jet::Access::kReadWrite)
      : disk(kPath, image), base(jet::Database::Open(disk, kPath, access)) {}

  FaultyFileSystem disk;
  jet::Database base;
  FixedClock clock{2002, 3, 15};
  Connection connection{base, clock};
};

/// All rows of База as "1 0 тема #37000# автор почта 12", the last being the length of the text; UTF-8.
std::vector<std::string> Messages(Connection& connection);

/// Adds a row with the fields that a message cannot do without, and these.
void Add(Recordset& rows, std::int32_t number,
         std::initializer_list<std::pair<std::string_view, jet::Value>> fields = {});

}  // namespace sql
