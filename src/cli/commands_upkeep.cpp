#include "base/cat.h"
#include "base/cp1251.h"
#include "base/progress.h"
#include "base/ru_literal.h"
#include "cli/command.h"
#include "cli/interrupt.h"
#include "jet/check.h"
#include "jet/compact.h"
#include "jet/database.h"
#include "store/new_base.h"
#include "store/rescue_messages.h"
#include "store/rescue_report.h"

namespace cli {
namespace {

constexpr std::string_view kJet4 = "--jet4", kRussian = "--russian";

void Create(const Arguments& arguments, Context& context) {
  jet::NewBase kind;
  if (arguments.Has(kJet4)) kind.version = jet::Version::kJet4;
  if (arguments.Has(kRussian)) kind.order = jet::SortOrder::kRussian;
  if (arguments.Has(kJet4) && arguments.Has(kRussian))
    throw UsageError("Параметр --russian нужен только базам без --jet4: в новых текст и так не зависит от языка"_ru);
  CreateMessageBase(context.files, arguments[0], kind, context.clock);
}

void Check(const Arguments& arguments, Context& context) {
  jet::Database base = jet::Database::Open(context.files, arguments[0], jet::Access::kRead);
  NoProgress nobody;
  const jet::CheckResult result = jet::Check(base, nobody);
  for (const jet::Finding& finding : result.findings)
    context.out << (finding.severity == jet::Severity::kError ? "Ошибка: " : "Замечание: ")
                << cp1251::ToUtf8(finding.text) << '\n';
  context.out << "Ошибок: " << result.errors << ", замечаний: " << result.warnings << '\n';
  if (result.errors != 0) throw Error(error_number::kNotABase, "База повреждена"_ru);
}

void Compact(const Arguments& arguments, Context& context) {
  const bool in_place = arguments.size() == 1;
  const jet::CompactOptions options{.leave_unknown_indexes_out = true};
  NoProgress nobody;
  const jet::CompactResult result = in_place
                                        ? jet::Compact(context.files, arguments[0], options, nobody)
                                        : jet::CompactInto(context.files, arguments[0], arguments[1], options, nobody);
  for (const std::string& note : result.notes) context.out << cp1251::ToUtf8(note) << '\n';
  context.out << "Байтов было: " << result.size_before << ", стало: " << result.size_after << '\n';
  if (in_place) context.out << "Прежняя база: " << jet::BackupPath(context.files.RealPath(arguments[0])) << '\n';
}

/// Ctrl-C must not leave a file behind.
class UntilInterrupted : public Progress {
 public:
  bool Advance(int) override { return !interrupt_.Asked(); }

 private:
  Interrupt interrupt_;
};

void Rescue(const Arguments& arguments, Context& context) {
  UntilInterrupted progress;
  const RescueResult result = RescueMessages(context.files, arguments[0], arguments[1], context.clock, progress);
  for (const std::string& line : RescueDetails(result)) context.out << cp1251::ToUtf8(line) << '\n';
  context.out << cp1251::ToUtf8(RescueSummary(result)) << '\n';
  if (!result.complete)
    context.status = kStopped;
  else if (result.HasLosses())
    throw Error(error_number::kNotABase, "Спасено не всё"_ru);
}

constexpr Option kCreateOptions[] = {{kJet4}, {kRussian}};

constexpr Command kCommands[] = {
    {"create", "БАЗА [--jet4] [--russian]",
     "создать пустую базу: обычную, с русским порядком сортировки или в более новом формате", 1, 1, kCreateOptions,
     Create},
    {"check", "БАЗА", "проверить, цела ли база; состояние выхода 1 - найдены ошибки", 1, 1, {}, Check},
    {"compact",
     "БАЗА [НОВАЯ]",
     "сжать базу на месте (прежняя остаётся рядом с именем .bak) или в новый файл",
     1,
     2,
     {},
     Compact},
    {"rescue",
     "БАЗА НОВАЯ",
     "переписать все сообщения повреждённой базы, которые ещё читаются, в новый файл; состояние выхода 1 - спасено\n"
     "    не всё, 3 - остановлено (Ctrl-C), нового файла нет",
     2,
     2,
     {},
     Rescue},
};

}  // namespace

std::span<const Command> UpkeepCommands() { return kCommands; }

}  // namespace cli
