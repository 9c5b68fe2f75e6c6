#include "demo_forum/demo_folder.h"

#include <algorithm>

#include "base/cat.h"
#include "base/error.h"
#include "base/ru_literal.h"
#include "config/ini_file.h"
#include "config/mdl_AZ.h"
#include "config/paths.h"
#include "config/program_folder.h"
#include "demo_forum/demo_pages.h"
#include "saved_pages/forum_pages.h"
#include "store/base_recordset.h"
#include "store/new_base.h"

namespace demo_folder {
namespace {

/// The keys of forum.ini that say where a forum lies.
class Addresses {
 public:
  Addresses(FileSystem& files, std::string path, std::string_view server)
      : files_(files), path_(std::move(path)), server_(server) {}

  void Write(const ForumAddress& forum) {
    const std::string folder = Cat(server_, "/", forum.kind);
    Set(forum.kind, "StopDownLoad", "0");
    // The program puts the rts-an forum's own domain behind this; it becomes the end of a folder's name.
    Set(forum.kind, "DOMAIN", forum.kind == "rts-an" ? Cat(folder, ".") : server_);
    if (forum.kind == "rts-an") return;
    if (forum.kind == "kdv") return Set(forum.kind, "URL", folder);
    Set(forum.kind, "URL", Cat(folder, forum.before_number));
    Set(forum.kind, "URLSFX", std::string(forum.behind_number));
    if (forum.kind == "ows_ptrv") Set(forum.kind, "URL1", Cat(folder, "/author.cgi?name="));
  }

 private:
  void Set(std::string_view section, std::string_view key, std::string value) {
    if (!mdl_AZ::WriteIni(files_, path_, section, key, value))
      throw FileError(error_number::kNoAccess, Cat("Не удалось записать "_ru, path_));
  }

  FileSystem& files_;
  std::string path_, server_;
};

/// Everything that the page of a message holds, and no more.
void StoreAsDownloaded(QueryRecordset& records, const ForumPages& forum, std::string_view kind,
                       const MessageRecord& message) {
  const std::string author_page = forum.HasAuthorPages() ? demo_pages::OwsAuthorPage(message) : std::string();
  const MessageRecord read = forum.Parse(demo_pages::MessagePage(kind, message), message.Код, author_page);
  StoreRow(records, forum.FieldsToStore(read));
}

void MakeBase(FileSystem& files, const std::string& folder, std::string_view kind, DemoSite& site, std::size_t count,
              const Clock& clock) {
  const std::string path = BasePath(folder, kind);
  if (files.Exists(path)) return;
  CreateMessageBase(files, path, {}, clock);
  const mdl_AZ::ForumIni ini(files, folder);
  MessageBase base(files, clock, ini);
  base.OpenBase(path);
  BaseRecordset records(base);
  sql::Transaction transaction(base.connection());
  const ForumPages forum(kind, clock);
  const auto messages = site.Messages(kind).All();
  for (std::size_t i = 0; i < std::min(count, messages.size()); ++i)
    StoreAsDownloaded(records, forum, kind, messages[i]);
  transaction.Commit();
}

}  // namespace

std::string BasePath(const std::string& folder, std::string_view kind) {
  return paths::Join(folder, Cat(kind, "_demo.mdb"));
}

void Make(FileSystem& files, const std::string& folder, std::string_view address, DemoSite& site, std::size_t messages,
          const Clock& clock) {
  program_folder::Prepare(folder, DEMO_SHIPPED_FILES);
  Addresses addresses(files, paths::Join(folder, "forum.ini"), address);
  for (const ForumAddress& forum : DemoSite::Forums()) {
    addresses.Write(forum);
    MakeBase(files, folder, forum.kind, site, messages, clock);
  }
}

}  // namespace demo_folder
