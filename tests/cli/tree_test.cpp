// The tree of real bases, held against counts taken from their listings without any of our own code.

#include <algorithm>
#include <cmath>
#include <map>
#include <set>

#include "cli/run_tool.h"
#include "support/listing.h"

namespace cli {
namespace {

using nlohmann::json;

/// Messages, threads, broken threads, days, dated messages, authors.
using Counts = std::map<std::string, std::size_t>;

std::string Trimmed(const std::string& text) {
  const std::size_t first = text.find_first_not_of(' ');
  return first == std::string::npos ? "" : text.substr(first, text.find_last_not_of(' ') - first + 1);
}

/// By the rules alone: a reply is broken when no message before it has the number that it answers.
Counts ExpectedOf(const ListedTable& table) {
  constexpr std::size_t kNumber = 0, kParent = 1, kDate = 3, kAuthor = 4;  // columns
  std::vector<json> rows = table.rows;
  std::sort(rows.begin(), rows.end());  // by number
  Counts counts;
  std::set<int> numbers, days;
  std::set<std::string> authors;
  for (const json& row : rows) {
    const json &parent = row[kParent], &date = row[kDate], &author = row[kAuthor];
    const bool starts = parent.is_null() || parent == 0;
    ++counts["messages"];
    counts["threads"] += starts;
    counts["broken"] += !starts && !numbers.contains(parent.get<int>());
    counts["dated"] += !date.is_null();
    numbers.insert(row[kNumber].get<int>());
    if (!date.is_null()) days.insert(static_cast<int>(std::floor(date.get<double>())));
    authors.insert(author.is_null() ? "" : Trimmed(author.get<std::string>()));
  }
  counts["days"] = days.size();
  counts["authors"] = authors.size();
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
    shown["threads"] += image == "thread_start" || (top == "threads" && image == "new_message");
    shown["broken"] += top == "broken" && node.at("depth") == 1;
    shown["messages"] += (top == "threads" || top == "broken") && node.at("depth") > 0;
    shown["days"] += image == "day";
    shown["dated"] += top == "dates" && image == "message";
    shown["authors"] += image == "author";
  }
  return shown;
}

TEST(Tree, ShowsWhatTheRowsSay) {
  for (const std::string name : {"kdv_2002", "ptrv_2002", "moysha_2001"}) {
    if (!HasSample(name)) GTEST_SKIP() << "no sample base " << name;
    const Outcome tree = Kdvbase({"tree", SamplePath(name), "--days", "all", "--by", "thread,date,author", "--json"});
    ASSERT_EQ(tree.status, 0) << tree.errors;
    EXPECT_EQ(ShownBy(tree.out), ExpectedOf(ReadListingFile(FORUM_SAMPLES "/" + name + ".jsonl").at(0))) << name;
  }
}

}  // namespace
}  // namespace cli
