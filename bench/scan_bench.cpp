// The rows of a tree, read in the order of their numbers: our engine against SQLite holding the same
// rows, and a whole table against mdb-export. Bases are the arguments, or those of FORUM_BENCH_BASES
// (separated by colons), or the sample forums. Each figure is the best of several runs.

#include <fcntl.h>
#include <spawn.h>
#include <sqlite3.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "base/clock.h"
#include "base/cp1251.h"
#include "base/file.h"
#include "base/ru_literal.h"
#include "sql/connection.h"

namespace {

constexpr int kRuns = 15;
constexpr const char* kTreeStatement = "SELECT Код, Вответ, Тема, Дата, Автор FROM БазаИндекс ORDER BY Код";

double BestMilliseconds(const std::function<void()>& run) {
  double best = 1e9;
  for (int i = 0; i < kRuns; ++i) {
    const auto start = std::chrono::steady_clock::now();
    run();
    best = std::min(best, std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count());
  }
  return best;
}

/// Touches every value, so that no engine gets away with not reading one.
struct Checksum {
  std::size_t bytes = 0;
  double numbers = 0;
};

Checksum ReadTree(sql::Recordset rows) {
  Checksum sum;
  for (; !rows.Eof(); rows.MoveNext()) {
    sum.numbers += rows.Int(0) + rows.Int(1) + rows.Date(3).value_or(OleDate()).days;
    sum.bytes += rows.Text(2).size() + rows.Text(4).size();
  }
  return sum;
}

std::size_t ReadAll(sql::Recordset rows) {
  std::size_t bytes = 0;
  for (; !rows.Eof(); rows.MoveNext())
    for (std::size_t field = 0; field < rows.Fields().size(); ++field) bytes += rows.Text(field).size();
  return bytes;
}

class Sqlite {
 public:
  explicit Sqlite(const std::string& path) : path_(path) {
    Check(sqlite3_open(path.c_str(), &db_));
    Run("PRAGMA journal_mode=OFF; PRAGMA synchronous=OFF; PRAGMA cache_size=-65536");
    Run("CREATE TABLE База(Код INTEGER PRIMARY KEY, Вответ INTEGER, Тема TEXT, Дата REAL, Автор TEXT, "
        "АвторMail TEXT, Текст TEXT, Картинка TEXT)");
    Run("CREATE VIEW БазаИндекс AS SELECT Код, Вответ, Тема, Дата, Автор FROM База");
  }
  ~Sqlite() {
    sqlite3_close(db_);
    std::filesystem::remove(path_);
  }
  Sqlite(const Sqlite&) = delete;
  Sqlite& operator=(const Sqlite&) = delete;

  void Fill(sql::Recordset rows) {
    Run("BEGIN");
    sqlite3_stmt* insert = Prepare("INSERT INTO База VALUES(?,?,?,?,?,?,?,?)");
    for (; !rows.Eof(); rows.MoveNext()) {
      for (std::size_t field = 0; field < rows.Fields().size(); ++field)
        Bind(insert, static_cast<int>(field) + 1, rows.Get(field));
      sqlite3_step(insert);
      sqlite3_reset(insert);
    }
    sqlite3_finalize(insert);
    Run("COMMIT");
  }

  Checksum ReadTree() {
    Checksum sum;
    sqlite3_stmt* select = Prepare(kTreeStatement);
    while (sqlite3_step(select) == SQLITE_ROW) {
      sum.numbers += sqlite3_column_int(select, 0) + sqlite3_column_int(select, 1) + sqlite3_column_double(select, 3);
      for (const int field : {2, 4})
        if (sqlite3_column_text(select, field) != nullptr)
          sum.bytes += static_cast<std::size_t>(sqlite3_column_bytes(select, field));
    }
    sqlite3_finalize(select);
    return sum;
  }

 private:
  static void Check(int result) {
    if (result != SQLITE_OK) throw std::runtime_error("SQLite failed");
  }
  void Run(const char* statement) { Check(sqlite3_exec(db_, statement, nullptr, nullptr, nullptr)); }
  sqlite3_stmt* Prepare(const char* statement) {
    sqlite3_stmt* prepared = nullptr;
    Check(sqlite3_prepare_v2(db_, statement, -1, &prepared, nullptr));
    return prepared;
  }
  static void Bind(sqlite3_stmt* statement, int place, const jet::Value& value) {
    if (const auto* const text = std::get_if<std::string>(&value)) {
      const std::string utf8 = cp1251::ToUtf8(*text);
      sqlite3_bind_text(statement, place, utf8.data(), static_cast<int>(utf8.size()), SQLITE_TRANSIENT);
    } else if (const auto* const number = std::get_if<std::int32_t>(&value)) {
      sqlite3_bind_int(statement, place, *number);
    } else if (const auto* const date = std::get_if<OleDate>(&value)) {
      sqlite3_bind_double(statement, place, date->days);
    } else {
      sqlite3_bind_null(statement, place);
    }
  }

  std::string path_;
  sqlite3* db_ = nullptr;
};

/// Runs a program with its output thrown away. @return false when it cannot be run or fails
bool RunProgram(const std::vector<std::string>& words) {
  std::vector<char*> arguments;
  for (const std::string& word : words) arguments.push_back(const_cast<char*>(word.c_str()));
  arguments.push_back(nullptr);
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
  pid_t child = 0;
  const bool started = posix_spawnp(&child, arguments[0], &actions, nullptr, arguments.data(), environ) == 0;
  posix_spawn_file_actions_destroy(&actions);
  int status = 0;
  return started && waitpid(child, &status, 0) == child && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

void PrintRatio(const char* what, double ours, const char* peer, double theirs) {
  std::printf("  %-34s %9.3f ms   %-12s %9.3f ms   ratio %.2f\n", what, ours, peer, theirs, ours / theirs);
}

void Measure(const std::string& path) {
  DiskFileSystem files;
  const SystemClock clock;
  jet::Database base = jet::Database::Open(files, path, jet::Access::kRead);
  sql::Connection connection(base, clock);
  Sqlite sqlite(std::filesystem::temp_directory_path() / ("scan_bench." + std::to_string(getpid())));
  sqlite.Fill(connection.OpenSnapshot("База"_ru));
  const std::string tree = cp1251::FromUtf8(kTreeStatement);

  Checksum ours, theirs;
  const double own = BestMilliseconds([&] { ours = ReadTree(connection.OpenSnapshot(tree)); });
  const double peer = BestMilliseconds([&] { theirs = sqlite.ReadTree(); });
  std::printf("%s\n", path.c_str());
  if (ours.numbers != theirs.numbers) throw std::runtime_error("the engines read different rows");
  PrintRatio("five columns by number", own, "SQLite", peer);

  const double whole = BestMilliseconds([&] {
    jet::Database again = jet::Database::Open(files, path, jet::Access::kRead);
    ReadAll(sql::Connection(again, clock).OpenSnapshot("База"_ru));
  });
  bool ran = true;
  const double exported = BestMilliseconds([&] { ran = ran && RunProgram({"mdb-export", path, "База"}); });
  if (ran)
    PrintRatio("whole table, base opened anew", whole, "mdb-export", exported);
  else
    std::printf("  whole table, base opened anew %9.3f ms   mdb-export failed or is not installed\n", whole);
}

std::vector<std::string> Bases(int count, char** arguments) {
  std::vector<std::string> bases(arguments + 1, arguments + count);
  if (!bases.empty()) return bases;
  const char* const listed = std::getenv("FORUM_BENCH_BASES");
  if (listed == nullptr) return {FORUM_SAMPLES "/ptrv_2002.mdb", FORUM_SAMPLES "/kdv_2002.mdb"};
  const std::string list = listed;
  for (std::size_t start = 0; start <= list.size();) {
    const std::size_t end = std::min(list.find(':', start), list.size());
    bases.push_back(list.substr(start, end - start));
    start = end + 1;
  }
  return bases;
}

}  // namespace

int main(int count, char** arguments) {
  ::setenv("MDB_JET3_CHARSET", "cp1251", 1);  // whatever the header says, so are the texts
  try {
    for (const std::string& base : Bases(count, arguments)) Measure(base);
    return 0;
  } catch (const std::exception& e) {
    std::fprintf(stderr, "%s\n", cp1251::ToUtf8(e.what()).c_str());
    return 1;
  }
}
