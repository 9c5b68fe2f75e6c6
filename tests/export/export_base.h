#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "base/cp1251.h"
#include "base/ru_literal.h"
#include "export/thread_choice.h"
#include "jet/table_writer.h"
#include "jet/transaction.h"
#include "store/new_base.h"
#include "support/program_stage.h"
#include "text/strings.h"

/// A message base with the rows that a test wants, and a program folder beside it.
class ExportBase : public testing::Test, protected ProgramStage {
 protected:
  struct Row {
    std::int32_t Код, Вответ;
    const char *Тема, *Автор, *Текст;  // UTF-8; nullptr = Null
    double Дата = 37330.5;             // 15 March 2002; 0 = Null
  };

  void Fill(const std::vector<Row>& rows) {
    const std::string path = folder_ / "kdv_2002.mdb";
    if (files_.Exists(path)) files_.Remove(path);
    CreateMessageBase(files_, path, {}, clock_);
    Open(path);
    const jet::Table table = base_->OpenTable("База"_ru);
    jet::Transaction transaction(base_->store());
    jet::TableWriter writer(transaction, table, base_->PropertiesOf(table));
    for (const Row& row : rows) {
      const auto at = [&](std::string_view name) { return table.def().FindColumn(name); };
      const auto text = [](const char* utf8) { return utf8 == nullptr ? jet::Value() : cp1251::FromUtf8(utf8); };
      const jet::Assignment values[] = {
          {at("Код"_ru), row.Код},           {at("Вответ"_ru), row.Вответ},
          {at("Тема"_ru), text(row.Тема)},   {at("Автор"_ru), text(row.Автор)},
          {at("Текст"_ru), text(row.Текст)}, {at("Дата"_ru), row.Дата == 0 ? jet::Value() : OleDate{row.Дата}}};
      writer.Insert(values);
    }
    transaction.Commit();
    tree_ = WholeArchive(*connection_, {}, clock_);
  }
  void Open(const std::string& path) {
    base_ = std::make_unique<jet::Database>(jet::Database::Open(files_, path, jet::Access::kReadWrite));
    connection_ = std::make_unique<sql::Connection>(*base_, clock_);
  }

  void PutIni(std::string_view utf8) { folder_.Put("forum.ini", cp1251::FromUtf8(utf8)); }
  /// A file as UTF-8, each CR LF as a plain line end.
  std::string Lines(std::string_view file) const {
    return text::ReplaceAll(cp1251::ToUtf8(folder_.Get(file)), "\r\n", "\n");
  }
  /// What forum.log says, without the times.
  std::string Log() const { return text::ReplaceAll(Lines("forum.log"), "2002-03-15 00:00:00 --> ", ""); }

  std::unique_ptr<jet::Database> base_;
  std::unique_ptr<sql::Connection> connection_;
  NodeTree tree_;
};
