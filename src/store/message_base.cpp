#include "store/message_base.h"

#include <utility>
#include <vector>

#include "base/cat.h"
#include "base/cp1251.h"
#include "base/error.h"
#include "base/ru_literal.h"
#include "config/forum_list.h"
#include "config/paths.h"

namespace {

[[noreturn]] void ThrowMissing(std::string_view what) {
  throw Error(error_number::kNoSuchObject, Cat("В файле нет того, из чего состоит база сообщений: "_ru, what));
}

}  // namespace

void MessageBase::OpenBase(const std::string& path) {
  if (writings_ != 0) throw FileError(error_number::kLocked, "Сначала дождитесь конца записи в базу"_ru);
  open_ = Open(path, jet::Access::kRead);
  path_ = path;
  RequireBaseObjects();
  FindForum();
}

void MessageBase::Reopen() {
  if (open_ != nullptr && writings_ == 0) open_ = Open(path_, jet::Access::kRead);
}

std::unique_ptr<MessageBase::OpenFile> MessageBase::Open(const std::string& path, jet::Access access) {
  return std::make_unique<OpenFile>(jet::Database::Open(files_, paths::Resolve(path), access), clock_);
}

MessageBase::OpenFile& MessageBase::Current() {
  if (open_ == nullptr) throw Error(error_number::kBaseNotOpen, "База не открыта"_ru);
  return written_ != nullptr ? *written_ : *open_;
}

void MessageBase::BeginWriting() {
  Current();
  if (writings_ == 0) try {
      written_ = Open(path_, jet::Access::kReadWrite);
    } catch (const FileError& error) {
      if (error.number() != error_number::kNoAccess) throw;
      throw Error(error_number::kReadOnly, Cat("База открыта только для чтения. "_ru, error.what()));
    }
  ++writings_;
}

void MessageBase::EndWriting() noexcept {
  if (--writings_ == 0) written_.reset();
}

std::string MessageBase::Caption() const {
  if (forum_kind_.empty()) return {};
  return Cat(forum_name_, " (", cp1251::FromUtf8(path_), ")");
}

void MessageBase::RequireBaseObjects() {
  for (const std::string_view query : {"БазаЗапрос"_ru, "БазаИндекс"_ru})
    if (!open_->connection.HasQuery(query)) ThrowMissing(Cat("запроса "_ru, query));
  if (!open_->connection.HasTable("База"_ru)) ThrowMissing("таблицы База"_ru);
}

void MessageBase::FindForum() {
  host_.clear();
  title_suffix_.clear();
  forum_kind_.clear();
  forum_name_.clear();
  forum_ = forum_list::kUnknown;
  const std::vector<std::string> forums = forum_list::ReadForumList(ini_);
  forum_ = forum_list::ForumOfFile(forums, path_);
  if (forum_ == forum_list::kUnknown) return;
  forum_kind_ = forums[forum_];
  host_ = ini_.ReadForumIni(forum_kind_, "DOMAIN");
  forum_name_ = ini_.ReadForumIni(forum_kind_, "name");
  title_suffix_ = Cat(" - ", forum_name_);
}

std::string OpenFailureText(const std::string& path) {
  return Cat("Ошибка при загрузке "_ru, cp1251::FromUtf8(path), "\r\nПожалуйста, выберите другой файл..."_ru);
}
