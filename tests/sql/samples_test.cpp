// Statements on real bases, held against the listings that stand beside them. Skipped without samples.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "base/error.h"
#include "base/file.h"
#include "sql/connection.h"
#include "support/fixed_clock.h"
#include "support/listing.h"
#include "test_base.h"

namespace sql {
namespace {

using nlohmann::json;

enum ListedColumn { kКод, kВответ, kТема, kДата, kАвтор, kАвторMail, kТекст, kКартинка };

json InListing(const jet::Value& value) {
  if (const auto* const text = std::get_if<std::string>(&value)) return cp1251::ToUtf8(*text);
  if (const auto* const number = std::get_if<std::int32_t>(&value)) return *number;
  if (const auto* const date = std::get_if<OleDate>(&value)) return date->days;
  return nullptr;
}

class SampleForum : public testing::TestWithParam<const char*> {
 protected:
  void SetUp() override {
    const std::string path = std::string(FORUM_SAMPLES) + "/" + GetParam();
    if (!std::filesystem::exists(path + ".mdb")) GTEST_SKIP() << "no sample base " << path;
    base_.emplace(jet::Database::Open(files_, path + ".mdb", jet::Access::kRead));
    connection_.emplace(*base_, clock_);
    rows_ = ReadListingFile(path + ".jsonl").at(0).rows;
    std::stable_sort(rows_.begin(), rows_.end(), [](const json& a, const json& b) { return a[kКод] < b[kКод]; });
  }

  static std::vector<json> All(Recordset rows) {
    std::vector<json> all;
    for (; !rows.Eof(); rows.MoveNext()) {
      json& row = all.emplace_back(json::array());
      for (std::size_t field = 0; field < rows.Fields().size(); ++field) row.push_back(InListing(rows.Get(field)));
    }
    return all;
  }

  template <typename Keep>
  std::vector<json> Listed(std::vector<int> columns, Keep keep) const {
    std::vector<json> listed;
    for (const json& row : rows_) {
      if (!keep(row)) continue;
      json& chosen = listed.emplace_back(json::array());
      for (const int column : columns) chosen.push_back(row[static_cast<std::size_t>(column)]);
    }
    return listed;
  }

  DiskFileSystem files_;
  FixedClock clock_{2002, 3, 15};
  std::optional<jet::Database> base_;
  std::optional<Connection> connection_;
  std::vector<json> rows_;  // by Код
};
INSTANTIATE_TEST_SUITE_P(Samples, SampleForum, testing::Values("ptrv_2002", "moysha_2001", "kdv_2002"),
                         [](const auto& base) { return std::string(base.param); });

TEST_P(SampleForum, EveryWayOfOpeningGivesTheListedRows) {
  for (const std::string_view source : {"База", "БазаЗапрос", "select * from [База] order by Код"}) {
    EXPECT_EQ(All(connection_->OpenSnapshot(Ru(source))), rows_) << source;
    EXPECT_EQ(All(connection_->OpenDynaset(Ru(source))), rows_) << source;
  }
  const auto tree = Listed({kКод, kВответ, kТема, kДата, kАвтор}, [](const json&) { return true; });
  EXPECT_EQ(All(connection_->OpenSnapshot(Ru("SELECT Код, Вответ, Тема, Дата, Автор from БазаИндекс order by Код"))),
            tree);
}

TEST_P(SampleForum, ConditionsKeepTheListedRows) {
  const double now = clock_.Now().days;
  const auto contains = [](const json& text, const std::string& word) {
    return text.is_string() && cp1251::Folded(Ru(text.get<std::string>())).find(Ru(word)) != std::string::npos;
  };
  EXPECT_EQ(All(connection_->OpenSnapshot(Ru("SELECT Код from БазаИндекс where Дата>now()-30 order by Код"))),
            Listed({kКод}, [&](const json& row) { return row[kДата].is_number() && row[kДата] > now - 30; }));
  for (const std::string word : {"спасибо", "b", "почему", "ё", "нет такого слова"}) {
    const std::string statement =
        "select Код from [База] where [Текст] Like '*" + word + "*' or [Тема] Like '*" + word + "*'";
    EXPECT_EQ(
        All(connection_->OpenSnapshot(Ru(statement))),
        Listed({kКод}, [&](const json& row) { return contains(row[kТекст], word) || contains(row[kТема], word); }))
        << word;
  }
  EXPECT_EQ(All(connection_->OpenSnapshot(Ru("select Код from База where Автор is null"))),
            Listed({kКод}, [](const json& row) { return row[kАвтор].is_null(); }));
}

TEST_P(SampleForum, FindsMessagesByNumber) {
  Recordset records = connection_->OpenDynaset(Ru("БазаЗапрос"));
  records.MoveLast();
  const std::size_t number = records.FieldIndex(Ru("Код"));
  EXPECT_EQ(records.Int(number), rows_.back()[kКод]);
  for (std::size_t i = 0; i < rows_.size(); i += 97) {
    const std::string criterion = "[Код] = " + rows_[i][kКод].dump();
    records.FindFirst(Ru(criterion));
    ASSERT_FALSE(records.NoMatch()) << criterion;
    EXPECT_EQ(InListing(records.Get(kТекст)), rows_[i][kТекст]);
    const auto one = All(connection_->OpenSnapshot(Ru("select * from [База] where Код = " + rows_[i][kКод].dump())));
    EXPECT_EQ(one, std::vector<json>{rows_[i]});
  }
  records.FindFirst(Ru("[Код] = 9999999"));
  EXPECT_TRUE(records.NoMatch());
}

TEST_P(SampleForum, SavedQueriesAreReadFromTheCatalog) {
  EXPECT_TRUE(connection_->HasTable(Ru("база")) && connection_->HasQuery(Ru("БАЗАИНДЕКС")));
  EXPECT_FALSE(connection_->HasTable(Ru("БазаИндекс")) || connection_->HasQuery(Ru("База")));
  EXPECT_EQ(cp1251::ToUtf8(connection_->QueryText(Ru("БазаИндекс"))),
            "SELECT [Код], [Вответ], [Тема], [Дата], [Автор] FROM База;");
  EXPECT_EQ(cp1251::ToUtf8(connection_->QueryText(Ru("БазаЗапрос"))), "SELECT * FROM База ORDER BY [Код];");
}

TEST(SampleQueries, EverySavedQueryIsReadOrRefusedInWords) {
  if (!std::filesystem::is_directory(FORUM_SAMPLES)) GTEST_SKIP() << "no sample bases";
  DiskFileSystem files;
  const FixedClock clock(2002, 3, 15);
  for (const char* const name :
       {"access97_queries", "access97_orders", "access97_orders_small", "access2000_queries", "access2000_russian"}) {
    const std::string path = std::string(FORUM_SAMPLES) + "/" + name + ".mdb";
    if (!std::filesystem::exists(path)) continue;
    auto base = jet::Database::Open(files, path, jet::Access::kRead);
    Connection connection(base, clock);
    for (const std::string& query : connection.QueryNames()) {
      EXPECT_FALSE(connection.QueryText(query).empty()) << name << ' ' << cp1251::ToUtf8(query);
      try {
        connection.OpenSnapshot(query);
      } catch (const SqlError& e) {
        EXPECT_NE(e.number(), error_number::kUnknownTable) << cp1251::ToUtf8(query);
      }
    }
  }
}

// Known answers about an order base: an alias, a constant, an order by text.
TEST(SampleQueries, AQueryWithAnAliasAndAConstantGivesItsRows) {
  const std::string path = std::string(FORUM_SAMPLES) + "/access97_orders";
  if (!std::filesystem::exists(path + ".mdb")) GTEST_SKIP() << "no sample base " << path;
  DiskFileSystem files;
  const FixedClock clock(2002, 3, 15);
  auto base = jet::Database::Open(files, path + ".mdb", jet::Access::kRead);
  Connection connection(base, clock);

  std::size_t on_sale = 0;
  for (const ListedTable& table : ReadListingFile(path + ".jsonl"))
    for (const json& row : table.rows) on_sale += table.name == "Products" && row.back() == false ? 1u : 0u;

  std::vector<std::string> names;
  Recordset products = connection.OpenSnapshot("Current Product List");
  for (; !products.Eof(); products.MoveNext()) names.emplace_back(products.Text(products.FieldIndex("ProductName")));
  EXPECT_EQ(names.size(), on_sale);
  EXPECT_TRUE(std::is_sorted(names.begin(), names.end(), [](const std::string& a, const std::string& b) {
    return cp1251::CompareForSorting(a, b) < 0;
  }));
}

}  // namespace
}  // namespace sql
