#include "config/base_list.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <tuple>
#include <utility>

#include "base/cat.h"
#include "base/cp1251.h"
#include "base/ole_date.h"
#include "config/forum_list.h"
#include "config/paths.h"
#include "text/numbers.h"

namespace base_list {
namespace {

struct Candidate {
  std::string path, name;  // `name` as it is shown
  std::string forum;
  NameDate date;
};

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

std::vector<std::string_view> DigitRuns(std::string_view name) {
  std::vector<std::string_view> runs;
  for (std::size_t begin = 0; begin < name.size();) {
    std::size_t end = begin;
    while (end < name.size() && IsDigit(name[end])) ++end;
    if (end > begin) runs.push_back(name.substr(begin, end - begin));
    begin = end + 1;
  }
  return runs;
}

/// The number when it has at most `digits` digits and lies between the bounds, else 0.
int NumberBetween(std::string_view run, std::size_t digits, int low, int high) {
  if (run.empty() || run.size() > digits) return 0;
  const int number = text::LenientLong(run);
  return number >= low && number <= high ? number : 0;
}

NameDate MakeDate(std::string_view year, std::string_view month, std::string_view day) {
  NameDate date{NumberBetween(year, 4, 1990, 2099), NumberBetween(month, 2, 1, 12), 0};
  if (date.year != 0 && date.month != 0)
    date.day = NumberBetween(day, 2, 1, ole_date::DaysInMonth(date.year, date.month));
  return date;
}

/// Digits written together: yyyymmdd, ddmmyyyy or yyyymm.
NameDate DateInRun(std::string_view run) {
  if (run.size() != 8 && run.size() != 6) return {};
  const NameDate date = MakeDate(run.substr(0, 4), run.substr(4, 2), run.substr(6));
  if (date.year != 0 && (run.size() == 6 ? date.month : date.day) != 0) return date;
  return run.size() == 8 ? MakeDate(run.substr(4), run.substr(2, 2), run.substr(0, 2)) : NameDate{};
}

NameDate DateAround(const std::vector<std::string_view>& runs, std::size_t year) {
  const auto run = [&](std::size_t i) { return i < runs.size() ? runs[i] : std::string_view(); };
  const NameDate behind = MakeDate(run(year), run(year + 1), run(year + 2));
  if (behind.month != 0 || year == 0) return behind;
  return MakeDate(run(year), run(year - 1), year >= 2 ? run(year - 2) : std::string_view());
}

bool IsBaseName(std::string_view name) { return name.ends_with(".mdb"); }

std::vector<Candidate> FindBases(const mdl_AZ::ForumIni& ini, const mdl_AZ::ForumLog& log, const std::string& folder) {
  const std::vector<std::string> forums = forum_list::ReadForumList(ini);
  std::vector<Candidate> bases;
  for (const std::string& file : paths::PlainFiles(folder)) {
    std::string name = paths::ShownName(file);
    if (!IsBaseName(name)) continue;
    log.Log(Cat("dir file: ", name));
    const std::size_t forum = forum_list::ForumOfFile(forums, file);
    if (forum == forum_list::kUnknown) continue;
    const NameDate date = DateInName(name);
    bases.push_back({paths::Join(folder, file), std::move(name), forums[forum], date});
  }
  return bases;
}

}  // namespace

NameDate DateInName(std::string_view file_name) {
  const std::vector<std::string_view> runs = DigitRuns(file_name);
  for (std::size_t i = 0; i < runs.size(); ++i) {
    const NameDate date = runs[i].size() == 4 ? DateAround(runs, i) : DateInRun(runs[i]);
    if (date.year != 0) return date;
  }
  return {};
}

std::vector<Base> ListBases(const mdl_AZ::ForumIni& ini, const mdl_AZ::ForumLog& log, const std::string& folder,
                            std::string_view preferred) {
  std::vector<Candidate> found = FindBases(ini, log, folder);
  std::sort(found.begin(), found.end(), [preferred](const Candidate& a, const Candidate& b) {
    const bool a_later = a.forum != preferred, b_later = b.forum != preferred;
    return std::tie(a_later, b.date, a.name, a.path) < std::tie(b_later, a.date, b.name, b.path);
  });
  std::vector<Base> bases;
  for (const Candidate& base : found)
    bases.push_back({base.path, Cat(forum_list::ForumName(ini, base.forum), " (", base.name, " )")});
  return bases;
}

}  // namespace base_list
