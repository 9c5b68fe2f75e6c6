#include "make_archive/make_archive.h"

#include <vector>

#include "base/clock.h"
#include "base/ole_date.h"
#include "base/ru_literal.h"
#include "jet/database.h"
#include "jet/table_writer.h"
#include "jet/transaction.h"
#include "make_archive/archive_messages.h"
#include "store/new_base.h"

namespace {

/// Every archive is made on the same day.
class ArchiveClock : public Clock {
 public:
  OleDate Now() const override { return ole_date::FromCivil({.year = 2002, .month = 3, .day = 15}); }
};

/// Adds messages to the table База.
class MessageWriter {
 public:
  MessageWriter(jet::Transaction& transaction, jet::Database& base)
      : table_(base.OpenTable("База"_ru)), writer_(transaction, table_, base.PropertiesOf(table_)) {
    for (const std::string_view name :
         {"Код"_ru, "Вответ"_ru, "Тема"_ru, "Дата"_ru, "Автор"_ru, "АвторMail"_ru, "Текст"_ru, "Картинка"_ru})
      values_.push_back({table_.def().FindColumn(name), {}});
  }

  void Add(MessageRecord message) {
    std::size_t next = 0;
    const auto set = [&](jet::Value value) { values_[next++].value = std::move(value); };
    set(message.Код);
    set(message.Вответ);
    set(std::move(message.Тема));
    set(message.Дата ? jet::Value(*message.Дата) : jet::Value());
    set(std::move(message.Автор));
    set(std::move(message.АвторMail));
    set(std::move(message.Текст));
    set(std::move(message.Картинка));
    writer_.Insert(values_);
  }

 private:
  jet::Table table_;
  jet::TableWriter writer_;
  std::vector<jet::Assignment> values_;
};

}  // namespace

void MakeArchive(FileSystem& files, const std::string& path, const ArchiveOptions& options) {
  CreateMessageBase(files, path, options.kind, ArchiveClock());
  jet::Database base = jet::Database::Open(files, path, jet::Access::kReadWrite);
  jet::Transaction transaction(base.store());
  MessageWriter writer(transaction, base);
  ArchiveMessages messages(options.seed, options.longest);
  for (std::uint32_t i = 0; i < options.messages; ++i) writer.Add(messages.Next());
  transaction.Commit();
}
