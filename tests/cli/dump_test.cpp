// dump, held against the listings of the sample bases and against an independent reader.

#include <cstdio>

#include "base/ole_date.h"
#include "cli/json_lines.h"
#include "cli/run_tool.h"
#include "cli/sha256.h"
#include "support/listing.h"
#include "support/mdbtools.h"

namespace cli {
namespace {

namespace fs = std::filesystem;
using nlohmann::json;

std::string Dumped(const std::string& name) {
  // Western programs made these; the forums hold 1251 whatever their header says.
  const std::string code_page = name.starts_with("access97_") ? "1252" : "1251";
  const Outcome dump = Kdvbase({"dump", SamplePath(name), "--codepage", code_page});
  EXPECT_EQ(dump.status, 0) << dump.errors;
  return dump.out;
}

TEST(Dump, EqualsTheListingOfEverySampleBase) {
  if (!fs::is_directory(FORUM_SAMPLES)) GTEST_SKIP() << "no sample bases";
  int compared = 0;
  for (const fs::directory_entry& entry : fs::directory_iterator(FORUM_SAMPLES)) {
    if (entry.path().extension() != ".jsonl") continue;
    SCOPED_TRACE(entry.path().stem());
    std::ifstream listing(entry.path());
    std::istringstream dump(Dumped(entry.path().stem().string()));
    std::string line;
    for (std::string wanted; std::getline(listing, wanted);) {
      ASSERT_TRUE(std::getline(dump, line)) << "ends before " << wanted;
      ASSERT_EQ(json::parse(line), json::parse(wanted));
    }
    EXPECT_FALSE(std::getline(dump, line)) << line;
    ++compared;
  }
  EXPECT_GT(compared, 0);
}

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

/// @param judged  null where the judge tells nothing: of Null and of the empty text
void ExpectSameValue(const json& judged, const json& ours) {
  constexpr std::size_t kJudgeCuts = 199'990;  // bytes: it prints into a buffer of 200,000
  if (ours.is_null() || ours == "") {
    EXPECT_TRUE(judged.is_null()) << judged;
  } else if (ours.is_number_float()) {
    ExpectSameDate(judged.get<std::string>(), ours);
  } else if (judged.is_string() && judged.get<std::string>().size() >= kJudgeCuts) {
    EXPECT_TRUE(ours.get<std::string>().starts_with(judged.get<std::string>()));
  } else {
    EXPECT_EQ(judged, ours);
  }
}

TEST(Dump, AgreesWithAnIndependentReader) {
  if (!mdbtools::AreInstalled()) GTEST_SKIP() << "mdbtools are not installed";
  for (const std::string name : {"ptrv_2002", "moysha_2001", "kdv_2002"}) {
    if (!HasSample(name)) GTEST_SKIP() << "no sample base " << name;
    SCOPED_TRACE(name);
    std::istringstream judged(
        mdbtools::Output("mdb-json -T '%Y-%m-%d %H:%M:%S' -D '%Y-%m-%d 00:00:00' '" + SamplePath(name) + "' База"));
    std::istringstream dump(Dumped(name));
    const auto dumped = ReadListing(dump);
    ASSERT_EQ(dumped.size(), 1u);
    std::string line;
    for (const json& row : dumped[0].rows) {
      ASSERT_TRUE(std::getline(judged, line)) << "fewer rows";
      const json values = json::parse(line);
      for (std::size_t column = 0; column < row.size(); ++column)
        ExpectSameValue(values.value(dumped[0].columns[column][0].get<std::string>(), json()), row[column]);
      ASSERT_FALSE(HasFailure()) << line;
    }
    EXPECT_FALSE(std::getline(judged, line)) << "more rows";
  }
}

TEST(JsonLines, NumbersShowTheirKindAndLoseNothing) {
  const struct {
    jet::Value value;
    std::string_view text;
  } cases[] = {{0.0, "0.0"}, {-0.0, "-0.0"},  {1e-4, "0.0001"},      {1e15, "1000000000000000.0"},
               {5, "5"},     {1e16, "1e+16"}, {1e-5, "1e-05"},       {OleDate{37330}, "37330.0"},
               {5.0, "5.0"}, {true, "true"},  {jet::Null(), "null"}, {jet::Currency{35000}, "{\"decimal\": \"3.5\"}"},
               {0.1, "0.1"}};
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
