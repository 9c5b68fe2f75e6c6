#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "base/ru_literal.h"
#include "jet/faults.h"
#include "jet/table_writer.h"
#include "store/damaged_messages.h"
#include "store/new_base.h"
#include "store/rescue_messages.h"
#include "support/faulty_file.h"
#include "support/fixed_clock.h"
#include "support/message_generator.h"

namespace rescue_stage {

using jet::Version;
using Fields = std::vector<jet::Value>;
using Messages = std::map<int, Fields>;

inline const std::string kOld = "kdv.mdb", kNew = "kdv_rescued.mdb", kUnfinished = kNew + ".new", kJournal = "-journal";
inline const FixedClock kClock{2024, 3, 15};
inline constexpr std::size_t kBody = 6;  // place of the column Текст

inline jet::Database Open(FileSystem& files, const std::string& path) {
  return jet::Database::Open(files, path, jet::Access::kRead);
}

inline Fields FieldsOf(const jet::Table& table, const jet::Row& row) {
  Fields fields;
  for (const jet::Column& column : table.def().columns) fields.push_back(row.Get(column));
  return fields;
}

inline Messages MessagesOf(jet::Database base) {
  const jet::Table table = base.OpenTable("База"_ru);
  Messages messages;
  for (jet::TableCursor cursor = table.Scan(); cursor.Next();)
    messages[cursor.row().Int(table.def().columns[0])] = FieldsOf(table, cursor.row());
  return messages;
}

inline std::set<std::string> FaultsOf(jet::Database base) { return jet::FaultsOf(base); }

/// Puts messages into an empty base in no order; bodies of all kinds, Nulls, rows that have moved, and deleted ones.
inline void Fill(jet::Database base, int count, int first = 1) {
  const jet::Table table = base.OpenTable("База"_ru);
  jet::Transaction transaction(base.store());
  jet::TableWriter writer(transaction, table, base.PropertiesOf(table));
  using Values = std::vector<jet::Assignment>;
  const auto column = [&](std::size_t place) { return &table.def().columns[place]; };
  MessageGenerator messages(7);
  std::vector<jet::RowId> rows;
  for (int i = 0; i < count; ++i) {
    const MessageRecord message = messages.Next();
    const std::string body = message.Текст + std::string(i % 20 == 0 ? 9000 : (i % 3 == 0 ? 700 : 0), 'x');
    rows.push_back(writer.Insert(Values{{column(0), first + i * 7 % count}, {column(1), message.Вответ}}));
    writer.Update(rows.back(), Values{{column(3), *message.Дата}, {column(4), message.Автор}, {column(kBody), body}});
    if (i % 30 == 29) writer.Delete(rows.back());
  }
  for (int i = 0; i < count; i += 9) writer.Update(rows[std::size_t(i)], Values{{column(2), std::string(200, 'z')}});
  transaction.Commit();
}

/// A base of either version in memory, its messages, and damaged images of it.
class Rescuing : public testing::TestWithParam<Version> {
 protected:
  void Make(int count) {
    CreateMessageBase(disk, kOld, {GetParam()}, kClock);
    Fill(jet::Database::Open(disk, kOld, jet::Access::kReadWrite), count);
    def = Open(disk, kOld).OpenTable("База"_ru).def();
    messages = MessagesOf(Open(disk, kOld));
    good = disk.Content(kOld);
  }
  RescueResult Rescue(FileSystem& files) { return RescueMessages(files, kOld, kNew, kClock, nobody); }

  /// Calls `rescue(files, operation)` for every disk operation of a rescue, on a disk where that one will fail.
  template <typename Attempt>
  void AtEachOperation(FaultyFileSystem::Fault fault, Attempt rescue) {
    Make(40);
    FaultyFileSystem counting(kOld, good);
    Rescue(counting);
    for (std::uint64_t operation = 1; operation <= counting.operations(); ++operation) {
      FaultyFileSystem files(kOld, good);
      files.FailAt(operation, fault);
      rescue(files, counting.log()[operation - 1]);
    }
  }

  /// The pages of a kind that belong to `owner`.
  std::vector<std::uint32_t> PagesOf(unsigned kind, std::uint32_t owner) const {
    std::vector<std::uint32_t> found;
    for (std::size_t at = 0; at < good.size(); at += layout.page_size)
      if (LoadU8(AsBytes(good), at) == kind && LoadU32(AsBytes(good), at + jet::kOwnerAt) == owner)
        found.push_back(static_cast<std::uint32_t>(at / layout.page_size));
    return found;
  }
  std::uint32_t PageOf(unsigned kind, std::uint32_t owner) const {
    const auto found = PagesOf(kind, owner);
    return found.at(found.size() / 2);
  }
  std::string With(std::size_t at, std::string_view bytes) const {
    return std::string(good).replace(at, bytes.size(), bytes);
  }
  std::string Zeroed(std::size_t page) const {
    return With(page * layout.page_size, std::string(layout.page_size, '\0'));
  }
  std::string Random(std::size_t page) const {
    std::mt19937 random(11);
    std::string content(layout.page_size, '\0');
    for (char& byte : content) byte = static_cast<char>(random());
    return With(page * layout.page_size, content);
  }
  /// The rows of the damaged file that its indexes lead to and that can be read whole.
  Messages StillReadable(const std::string& image) const {
    const jet::PageFile whole(std::make_unique<MemoryFile>(good), layout),
        file(std::make_unique<MemoryFile>(image.substr(0, image.size() / layout.page_size * layout.page_size)), layout);
    Messages readable;
    for (jet::TableCursor cursor(whole, def); cursor.Next();) try {
        const jet::Table table(file, def);
        const Fields fields = FieldsOf(table, table.Read(cursor.row().id()));
        readable[std::get<std::int32_t>(fields[0])] = fields;
      } catch (const FormatError&) {
      }
    return readable;
  }
  /// A message that is not whole says so; what it holds is true.
  static bool IsBeginning(Fields saved, Fields original) {
    const std::string mark(IncompleteMessageMark()), body = std::get<std::string>(saved[kBody]);
    const std::string kept = body.substr(0, body.size() - std::min(body.size(), mark.size()));
    const bool is_true = std::get<std::string>(original[kBody]).starts_with(kept.substr(0, kept.find_last_of('<')));
    saved[kBody] = original[kBody] = {};
    return body == kept + mark && is_true && saved == original;
  }

  const jet::Layout& layout = jet::LayoutOf(GetParam());
  FaultyFileSystem disk;
  NoProgress nobody;
  jet::TableDef def;
  Messages messages;
  std::string good;
};

}  // namespace rescue_stage
