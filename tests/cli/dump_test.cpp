// dump, held against the listings of the sample bases and against an independent reader.

#include <gtest/gtest.h>

#include <cmath>
#include <ctime>
#include <filesystem>
#include <sstream>

#include "base/file.h"
#include "base/ole_date.h"
#include "cli/json_lines.h"
#include "cli/sha256.h"
#include "cli/tool.h"
#include "support/fixed_clock.h"
#include "support/listing.h"
#include "support/mdbtools.h"

namespace cli {
namespace {

namespace fs = std::filesystem;
using nlohmann::json;

/// These were made by Western programs; the forums hold 1251 whatever their header says.
std::string CodePageOf(const std::string& name) { return name.starts_with("access97_") ? "1252" : "1251"; }

std::vector<ListedTable> Dumped(const fs::path& base) {
  std::stringstream out, errors;
  DiskFileSystem files;
  const FixedClock clock(2002, 3, 15);
  const std::vector<std::string> words = {"dump", base.string(), "--codepage", CodePageOf(base.stem().string())};
  EXPECT_EQ(RunTool(words, out, errors, files, clock), 0) << errors.str();
  return ReadListing(out);
}

TEST(Dump, EqualsTheListingOfEverySampleBase) {
  if (!fs::is_directory(FORUM_SAMPLES)) GTEST_SKIP() << "no sample bases";
  int compared = 0;
  for (const fs::directory_entry& entry : fs::directory_iterator(FORUM_SAMPLES)) {
    if (entry.path().extension() != ".jsonl") continue;
    SCOPED_TRACE(entry.path().stem());
    const auto wanted = ReadListingFile(entry.path().string());
    const auto dumped = Dumped(fs::path(entry.path()).replace_extension(".mdb"));
    ASSERT_EQ(dumped.size(), wanted.size());
    for (std::size_t table = 0; table < wanted.size(); ++table) {
      EXPECT_EQ(dumped[table].name, wanted[table].name);
      EXPECT_EQ(dumped[table].columns, wanted[table].columns);
      ASSERT_EQ(dumped[table].rows.size(), wanted[table].rows.size()) << wanted[table].name;
      for (std::size_t row = 0; row < wanted[table].rows.size(); ++row)
        ASSERT_EQ(dumped[table].rows[row], wanted[table].rows[row]) << wanted[table].name << ' ' << row;
    }
    ++compared;
  }
  EXPECT_GT(compared, 0);
}

/// One value of a CSV line: texts stand in quotes, a missing value is nothing at all.
struct CsvValue {
  std::string text;
  bool quoted = false;
};

std::vector<std::vector<CsvValue>> ReadCsv(const std::string& csv) {
  std::vector<std::vector<CsvValue>> lines(1, std::vector<CsvValue>(1));
  bool inside = false;
  for (std::size_t at = 0; at < csv.size(); ++at) {
    CsvValue& value = lines.back().back();
    const char c = csv[at];
    if (inside && c == '"' && at + 1 < csv.size() && csv[at + 1] == '"') {
      value.text += csv[++at];
    } else if (c == '"') {
      inside = !inside;
      value.quoted = true;
    } else if (!inside && c == ',') {
      lines.back().emplace_back();
    } else if (!inside && c == '\n') {
      lines.emplace_back(1);
    } else {
      value.text += c;
    }
  }
  lines.pop_back();
  return lines;
}

/// Bytes from which on the judge may have cut a text: it prints into a buffer of 200,000.
constexpr std::size_t kJudgeCuts = 199'990;

// The judge cuts the fraction of a second off where we keep it.
void ExpectSameDate(const std::string& judged, const json& ours) {
  CivilTime time;
  ASSERT_EQ(std::sscanf(judged.c_str(), "%d-%d-%d %d:%d:%d", &time.year, &time.month, &time.day, &time.hour,
                        &time.minute, &time.second),
            6)
      << judged;
  constexpr double kSecond = 1.0 / 86400;
  EXPECT_NEAR(ole_date::FromCivil(time).days, ours.get<double>(), 1.01 * kSecond);
}

void ExpectSameValue(const CsvValue& judged, const json& ours) {
  if (ours.is_null()) {
    EXPECT_TRUE(judged.text.empty() && !judged.quoted) << judged.text;
  } else if (ours.is_string()) {
    EXPECT_TRUE(judged.quoted || judged.text.empty());  // the judge writes "" like a missing value
    const std::string text = ours.get<std::string>();
    EXPECT_EQ(judged.text, judged.text.size() < kJudgeCuts ? text : text.substr(0, judged.text.size()));
  } else if (ours.is_number_integer()) {
    EXPECT_EQ(judged.text, ours.dump());
  } else {
    ExpectSameDate(judged.text, ours);
  }
}

TEST(Dump, AgreesWithAnIndependentReader) {
  if (!mdbtools::AreInstalled()) GTEST_SKIP() << "mdbtools are not installed";
  for (const std::string name : {"ptrv_2002", "moysha_2001", "kdv_2002"}) {
    const fs::path base = fs::path(FORUM_SAMPLES) / (name + ".mdb");
    if (!fs::exists(base)) GTEST_SKIP() << "no sample base " << name;
    SCOPED_TRACE(name);
    const auto csv =
        mdbtools::Output("mdb-export -T '%Y-%m-%d %H:%M:%S' -D '%Y-%m-%d 00:00:00' '" + base.string() + "' База");
    ASSERT_NE(csv, "");
    const auto judged = ReadCsv(csv);
    const auto dumped = Dumped(base);
    ASSERT_EQ(dumped.size(), 1u);
    ASSERT_EQ(judged.size(), dumped[0].rows.size() + 1);
    for (std::size_t row = 0; row < dumped[0].rows.size(); ++row) {
      ASSERT_EQ(judged[row + 1].size(), dumped[0].rows[row].size());
      for (std::size_t column = 0; column < judged[row + 1].size(); ++column)
        ExpectSameValue(judged[row + 1][column], dumped[0].rows[row][column]);
      ASSERT_FALSE(HasFailure()) << "row " << row;
    }
  }
}

TEST(JsonLines, NumbersShowTheirKindAndLoseNothing) {
  const struct {
    jet::Value value;
    std::string_view text;
  } cases[] = {
      {0.0, "0.0"},
      {-0.0, "-0.0"},
      {5, "5"},
      {5.0, "5.0"},
      {0.1, "0.1"},
      {1e15, "1000000000000000.0"},
      {1e16, "1e+16"},
      {1e-4, "0.0001"},
      {1e-5, "1e-05"},
      {OleDate{37330}, "37330.0"},
      {jet::Null(), "null"},
      {true, "true"},
      {jet::Currency{35000}, "{\"decimal\": \"3.5\"}"},
  };
  for (const auto& c : cases) {
    std::string text;
    json_lines::AppendValue(c.value, text);
    EXPECT_EQ(text, c.text);
  }
}

TEST(Sha256, AgreesWithThePublishedExamples) {
  EXPECT_EQ(Sha256(""), "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855");
  EXPECT_EQ(Sha256("abc"), "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");
  EXPECT_EQ(Sha256("abcdbcdecdefdefgefghfghighijhijkijkljklmklmnlmnomnopnopq"),
            "248d6a61d20638b8e5c026930c3e6039a33ce45964ff2167f6ecedd419db06c1");
  EXPECT_EQ(Sha256(std::string(1'000'000, 'a')), "cdc76e5c9914fb9281a1c7e284d73e67f1809a48a497200e046d39ccc7112cd0");
}

}  // namespace
}  // namespace cli
