// Messages that are stored and deleted: our engine against SQLite holding the same rows (rollback
// journal, synchronous=FULL) on the same disk, in turns. The folder of the files is FORUM_BENCH_FOLDER, else the
// current one: one in memory would measure nothing.

#include <sqlite3.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

#include "base/clock.h"
#include "base/ru_literal.h"
#include "store/base_edits.h"
#include "store/base_recordset.h"
#include "store/new_base.h"

namespace {

constexpr int kRounds = 5;
constexpr std::int32_t kSingles = 100, kBulk = 20'000, kThread = 1'000;

double Seconds(const std::function<void()>& run) {
  const auto start = std::chrono::steady_clock::now();
  run();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

std::string BodyOf(std::int32_t number) { return std::string(200 + static_cast<std::size_t>(number) * 37 % 1200, 'x'); }

class Ours {
 public:
  explicit Ours(const std::string& folder) : ini_(files_, folder), base_(files_, clock_, ini_) {
    const std::string path = folder + "/write_bench.mdb";
    std::filesystem::remove(path);
    CreateMessageBase(files_, path, {}, clock_);
    base_.OpenBase(path);
  }

  void AddSingles(std::int32_t from, std::int32_t count) {
    BaseRecordset records(base_);
    for (std::int32_t number = from; number < from + count; ++number) Add(records, number);
  }
  void AddBulk(std::int32_t from, std::int32_t count) {
    BaseRecordset records(base_);
    sql::Transaction transaction(base_.connection());
    for (std::int32_t number = from; number < from + count; ++number) Add(records, number);
    transaction.Commit();
  }
  void Delete(const std::vector<std::int32_t>& numbers) { BaseEdits(base_).Delete(numbers); }

 private:
  static void Add(BaseRecordset& records, std::int32_t number) {
    records.AddNew();
    records.SetText("Текст"_ru, BodyOf(number));
    records.SetDate("Дата"_ru, OleDate{37000.0 + number});
    records.SetText("Автор"_ru, "author");
    records.SetText("Тема"_ru, "subject of the message");
    records.SetNumber("Вответ"_ru, number / 2);
    records.SetNumber("Код"_ru, number);
    records.Update();
  }

  DiskFileSystem files_;
  SystemClock clock_;
  mdl_AZ::ForumIni ini_;
  MessageBase base_;
};

class Sqlite {
 public:
  explicit Sqlite(const std::string& folder) {
    const std::string path = folder + "/write_bench.sqlite";
    std::filesystem::remove(path);
    if (sqlite3_open(path.c_str(), &base_) != SQLITE_OK) throw std::runtime_error("SQLite does not open " + path);
    Run("PRAGMA journal_mode=DELETE; PRAGMA synchronous=FULL;"
        "CREATE TABLE m(id INTEGER PRIMARY KEY, reply INTEGER, subject TEXT, date REAL, author TEXT, body TEXT);"
        "CREATE INDEX replies ON m(reply);");
    insert_ = Prepare("INSERT INTO m VALUES(?1, ?2, 'subject of the message', ?3, 'author', ?4)");
    delete_ = Prepare("DELETE FROM m WHERE id=?1");
  }
  ~Sqlite() {
    sqlite3_finalize(insert_);
    sqlite3_finalize(delete_);
    sqlite3_close(base_);
  }
  Sqlite(const Sqlite&) = delete;
  Sqlite& operator=(const Sqlite&) = delete;

  void AddSingles(std::int32_t from, std::int32_t count) {
    for (std::int32_t number = from; number < from + count; ++number) Add(number);
  }
  void AddBulk(std::int32_t from, std::int32_t count) {
    Run("BEGIN");
    AddSingles(from, count);
    Run("COMMIT");
  }
  void Delete(const std::vector<std::int32_t>& numbers) {
    Run("BEGIN");
    for (const std::int32_t number : numbers) {
      sqlite3_bind_int(delete_, 1, number);
      Step(delete_);
    }
    Run("COMMIT");
  }

 private:
  void Add(std::int32_t number) {
    const std::string body = BodyOf(number);
    sqlite3_bind_int(insert_, 1, number);
    sqlite3_bind_int(insert_, 2, number / 2);
    sqlite3_bind_double(insert_, 3, 37000.0 + number);
    sqlite3_bind_text(insert_, 4, body.data(), static_cast<int>(body.size()), SQLITE_STATIC);
    Step(insert_);
  }
  void Run(const char* sql) {
    if (sqlite3_exec(base_, sql, nullptr, nullptr, nullptr) != SQLITE_OK)
      throw std::runtime_error(sqlite3_errmsg(base_));
  }
  sqlite3_stmt* Prepare(const char* sql) {
    sqlite3_stmt* statement = nullptr;
    if (sqlite3_prepare_v2(base_, sql, -1, &statement, nullptr) != SQLITE_OK)
      throw std::runtime_error(sqlite3_errmsg(base_));
    return statement;
  }
  void Step(sqlite3_stmt* statement) {
    if (sqlite3_step(statement) != SQLITE_DONE) throw std::runtime_error(sqlite3_errmsg(base_));
    sqlite3_reset(statement);
  }

  sqlite3* base_ = nullptr;
  sqlite3_stmt* insert_ = nullptr;
  sqlite3_stmt* delete_ = nullptr;
};

/// Seconds of each step, the best of several runs.
struct Times {
  double singles = 1e9, bulk = 1e9, thread = 1e9;
};

template <typename Engine>
void Measure(const std::string& folder, Times& best) {
  Engine engine(folder);
  std::vector<std::int32_t> thread;  // scattered over the base, as threads are
  for (std::int32_t i = 0; i < kThread; ++i) thread.push_back(1 + i * (kBulk / kThread));
  best.bulk = std::min(best.bulk, Seconds([&] { engine.AddBulk(1, kBulk); }));
  best.singles = std::min(best.singles, Seconds([&] { engine.AddSingles(kBulk + 1, kSingles); }));
  best.thread = std::min(best.thread, Seconds([&] { engine.Delete(thread); }));
}

}  // namespace

int main() {
  const char* const chosen = std::getenv("FORUM_BENCH_FOLDER");
  const std::string folder = chosen == nullptr ? "." : chosen;
  Times ours, peer;
  for (int round = 0; round < kRounds; ++round) {
    Measure<Ours>(folder, ours);
    Measure<Sqlite>(folder, peer);
  }
  for (const char* name : {"/write_bench.mdb", "/write_bench.sqlite"}) std::filesystem::remove(folder + name);
  std::printf("durable single adds: %.0f/s, SQLite %.0f/s, ratio %.2f\n", kSingles / ours.singles,
              kSingles / peer.singles, peer.singles / ours.singles);
  std::printf("%d adds in one transaction: %.0f/s, SQLite %.0f/s, ratio %.2f\n", kBulk, kBulk / ours.bulk,
              kBulk / peer.bulk, peer.bulk / ours.bulk);
  std::printf("deletion of %d messages: %.1f ms, SQLite %.1f ms, ratio %.2f\n", kThread, ours.thread * 1e3,
              peer.thread * 1e3, peer.thread / ours.thread);
}
