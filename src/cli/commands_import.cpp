#include <filesystem>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "base/cat.h"
#include "base/cp1251.h"
#include "base/error.h"
#include "base/progress.h"
#include "base/ru_literal.h"
#include "cli/command.h"
#include "config/mdl_AZ.h"
#include "saved_pages/import_saved_pages.h"
#include "store/base_recordset.h"
#include "store/message_base.h"

namespace cli {
namespace {

class TroubleLines : public page_files::Trouble {
 public:
  explicit TroubleLines(std::ostream& errors) : errors_(errors) {}
  void Tell(const std::string& path, std::string_view why) override {
    errors_ << path << ": " << cp1251::ToUtf8(why) << '\n';
  }

 private:
  std::ostream& errors_;
};

/// A line for every tenth of a long import.
class TenthLines : public Progress {
 public:
  TenthLines(std::ostream& errors, std::size_t pages) : errors_(errors), tells_(pages >= kLong) {}
  bool Advance(int percent) override {
    if (tells_ && percent / 10 > tenths_) errors_ << 10 * (tenths_ = percent / 10) << " %" << std::endl;
    return true;
  }

 private:
  static constexpr std::size_t kLong = 1000;
  std::ostream& errors_;
  bool tells_;
  int tenths_ = 0;
};

std::string KindOf(const Arguments& arguments, const MessageBase& base) {
  if (const auto kind = arguments.Value("--kind")) return ForumCode(*kind);
  if (base.forum_kind().empty()) throw UsageError("Из имени базы непонятно, какого она форума: нужен --kind"_ru);
  return base.forum_kind();
}

void Import(const Arguments& arguments, Context& context) {
  const mdl_AZ::ForumIni ini(context.files, ProgramFolder(arguments));
  MessageBase base(context.files, context.clock, ini);
  base.OpenBase(arguments[0]);
  const std::string kind = KindOf(arguments, base);
  TroubleLines trouble(context.errors);
  for (const std::string& name : arguments.Words().subspan(1))
    if (std::error_code ignored; !std::filesystem::exists(name, ignored))
      throw FileError(error_number::kFileNotFound, Cat("Нет такого файла и такой папки: "_ru, cp1251::FromUtf8(name)));
  const std::vector<std::string> pages = page_files::Find(arguments.Words().subspan(1), trouble);
  TenthLines progress(context.errors, pages.size());
  BaseRecordset records(base);
  const ImportTotals totals = ImportSavedPages({context.files, records, context.clock, progress, trouble}, kind, pages);
  context.out << cp1251::ToUtf8(ImportSummary(totals)) << '\n';
  if (totals.not_imported > 0)
    throw Error(error_number::kNoSuchItem, Cat("Не записано страниц: "_ru, totals.not_imported));
}

constexpr Option kOptions[] = {{"--kind", true}};

constexpr Command kCommands[] = {
    {"import", "БАЗА СТРАНИЦА|ПАПКА... [--kind ФОРУМ]",
     "записать в базу сообщения сохранённых страниц; номер сообщения стоит в имени файла", 2, kAnyNumber, kOptions,
     Import},
};

}  // namespace

std::span<const Command> ImportCommands() { return kCommands; }

}  // namespace cli
