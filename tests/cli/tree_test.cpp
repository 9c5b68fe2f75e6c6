// The tree of real bases, held against counts taken from their listings without any of our own code.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <map>
#include <nlohmann/json.hpp>
#include <set>
#include <sstream>
#include <string>

#include "base/file.h"
#include "cli/tool.h"
#include "support/fixed_clock.h"
#include "support/listing.h"

namespace {

using nlohmann::json;

struct Counts {
  std::size_t messages = 0, threads = 0, broken = 0, days = 0, dated = 0, authors = 0;
  friend bool operator==(const Counts&, const Counts&) = default;
};

void PrintTo(const Counts& c, std::ostream* out) {
  *out << c.messages << " messages, " << c.threads << " threads, " << c.broken << " broken, " << c.days << " days, "
       << c.dated << " dated, " << c.authors << " authors";
}

std::string Trimmed(const std::string& text) {
  const std::size_t first = text.find_first_not_of(' ');
  return first == std::string::npos ? "" : text.substr(first, text.find_last_not_of(' ') - first + 1);
}

/// By the rules alone: a reply is broken when no message before it has the number that it answers.
Counts ExpectedOf(const ListedTable& table) {
  std::map<std::string, std::size_t> column;
  for (std::size_t i = 0; i < table.columns.size(); ++i) column[table.columns[i][0]] = i;
  std::vector<json> rows = table.rows;
  std::sort(rows.begin(), rows.end(),
            [&](const json& a, const json& b) { return a[column["Код"]] < b[column["Код"]]; });
  Counts counts;
  std::set<int> numbers, days;
  std::set<std::string> authors;
  for (const json& row : rows) {
    const json &parent = row[column["Вответ"]], &date = row[column["Дата"]], &author = row[column["Автор"]];
    ++counts.messages;
    if (parent.is_null() || parent == 0)
      ++counts.threads;
    else if (!numbers.contains(parent.get<int>()))
      ++counts.broken;
    numbers.insert(row[column["Код"]].get<int>());
    if (!date.is_null()) days.insert(static_cast<int>(std::floor(date.get<double>())));
    counts.dated += date.is_null() ? 0 : 1;
    authors.insert(author.is_null() ? "" : Trimmed(author.get<std::string>()));
  }
  counts.days = days.size();
  counts.authors = authors.size();
  return counts;
}

Counts ShownBy(const std::string& lines) {
  Counts shown;
  std::istringstream input(lines);
  std::string top;
  for (std::string line; std::getline(input, line);) {
    const json node = json::parse(line);
    const std::string image = node.at("image");
    if (node.at("depth") == 0) top = image;
    shown.threads += image == "thread_start" || (top == "threads" && image == "new_message");
    shown.broken += top == "broken" && node.at("depth") == 1;
    shown.messages += (top == "threads" || top == "broken") && node.at("depth") > 0;
    shown.days += image == "day";
    shown.dated += top == "dates" && image == "message";
    shown.authors += image == "author";
  }
  return shown;
}

TEST(Tree, ShowsWhatTheRowsSay) {
  for (const std::string name : {"kdv_2002", "ptrv_2002", "moysha_2001"}) {
    const std::string base = std::string(FORUM_SAMPLES) + "/" + name;
    if (!std::filesystem::exists(base + ".mdb")) GTEST_SKIP() << "the sample bases are absent";
    std::ostringstream out, errors;
    DiskFileSystem files;
    const FixedClock clock(2002, 3, 15);
    const std::vector<std::string> words = {"tree", base + ".mdb",        "--days", "all",
                                            "--by", "thread,date,author", "--json"};
    ASSERT_EQ(cli::RunTool(words, out, errors, files, clock), 0) << errors.str();
    EXPECT_EQ(ShownBy(out.str()), ExpectedOf(ReadListingFile(base + ".jsonl").at(0))) << name;
  }
}

}  // namespace
