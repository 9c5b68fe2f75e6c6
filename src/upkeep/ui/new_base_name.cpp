#include "upkeep/ui/new_base_name.h"

#include "base/cp1251.h"
#include "config/forum_list.h"
#include "ui/text.h"

namespace {

constexpr std::string_view kExtension = ".mdb";

bool NameTellsForum(const std::vector<std::string>& forums, std::string_view forum, const std::string& path) {
  const std::size_t place = forum_list::ForumOfFile(forums, path);
  return place != forum_list::kUnknown && forums[place] == forum;
}

}  // namespace

std::string WithBaseExtension(std::string path) {
  const std::size_t size = kExtension.size();
  const bool has = path.size() >= size && cp1251::EqualIgnoringCase(path.substr(path.size() - size), kExtension);
  return has ? path : path.append(kExtension);
}

QString ObstacleToNewBase(const FileSystem& files, const std::vector<std::string>& forums, std::string_view forum,
                          const std::string& path) {
  if (!forum.empty() && !NameTellsForum(forums, forum, path))
    return QStringLiteral("Имя файла должно начинаться с «%1»: по нему программа узнаёт форум базы.")
        .arg(FromCp1251(forum));
  if (files.Exists(path))
    return QStringLiteral("Такой файл уже есть. Назовите базу иначе: готовые базы не перезаписываются.");
  return {};
}
