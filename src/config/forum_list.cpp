#include "config/forum_list.h"

#include "base/cat.h"
#include "base/cp1251.h"
#include "base/ru_literal.h"
#include "config/paths.h"

namespace forum_list {
namespace {

constexpr std::string_view kUnknownBase = "Неопознанный формат базы"_ru;

}  // namespace

std::vector<std::string> ReadForumList(const mdl_AZ::ForumIni& ini) {
  std::vector<std::string> forums{std::string(kUnknownBase)};
  const int count = ini.GetForumCount();
  for (int i = 1; i <= count; ++i) {
    std::string code = ini.ReadForumIni("FORUMS", Cat("f", i));
    if (code.empty()) break;
    forums.push_back(std::move(code));
  }
  return forums;
}

std::size_t ForumOfFile(const std::vector<std::string>& forums, std::string_view path) {
  const std::string name = cp1251::FromUtf8(paths::FileName(path));
  for (std::size_t i = 1; i < forums.size(); ++i)
    if (cp1251::StartsWithIgnoringCase(name, forums[i])) return i;
  return kUnknown;
}

std::string ForumName(const mdl_AZ::ForumIni& ini, std::string_view forum) {
  std::string name = ini.ReadForumIni(forum, "NAME");
  return name.empty() ? std::string(forum) : name;
}

std::vector<std::string> ForumsInUse(const mdl_AZ::ForumIni& ini) {
  std::vector<std::string> in_use;
  const std::vector<std::string> forums = ReadForumList(ini);
  for (std::size_t i = 1; i < forums.size(); ++i)
    if (ini.GetStopDownload(forums[i]) == 0) in_use.push_back(forums[i]);
  return in_use;
}

}  // namespace forum_list
