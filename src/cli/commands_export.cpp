#include <filesystem>
#include <string>
#include <system_error>

#include "base/cat.h"
#include "base/error.h"
#include "base/ru_literal.h"
#include "cli/command.h"
#include "cli/open_base.h"
#include "config/mdl_AZ.h"
#include "config/user_settings.h"
#include "explorer/node_tree.h"
#include "export/export_names.h"
#include "export/thread_choice.h"
#include "export/xml_export.h"

namespace cli {
namespace {

/// The folder that --out names, made when it is missing; else the one of this base in the program folder.
std::string FolderFor(const Arguments& arguments, const mdl_AZ::ForumIni& ini) {
  const auto out = arguments.Value("--out");
  if (!out) return mdl_AZ::ExportFolder(ini.ProgramFolder(), mdl_AZ::ExportFolderName(arguments[0]));
  std::error_code ignored;  // a folder that is not there is missed when the file is opened
  std::filesystem::create_directories(*out, ignored);
  return *out;
}

void Export(const Arguments& arguments, Context& context) {
  const std::int32_t number = MessageNumber(arguments[1]);
  OpenBase base(arguments, context, jet::Access::kRead);
  const NodeTree threads = WholeArchive(base.connection, {}, context.clock);
  const NodeId thread = ThreadOf(threads, number);
  if (thread == kNoNode) throw Error(error_number::kNoCurrentRecord, Cat("В базе нет сообщения с номером "_ru, number));

  const mdl_AZ::ForumIni ini(context.files, ProgramFolder(arguments));
  const mdl_AZ::ForumLog log(ini, context.files, context.clock);
  const ExportOutcome outcome =
      ExportMessages({context.files, base.connection, ini, log, nullptr}, threads, thread, FolderFor(arguments, ini));
  if (!outcome.trouble.empty()) throw Error(error_number::kNoAccess, ExportSummary(outcome));
  context.out << outcome.path << '\n';
}

constexpr Option kOptions[] = {{"--out", true}};

constexpr Command kCommands[] = {
    {"export", "БАЗА НОМЕР [--out ПАПКА]",
     "записать всю цепочку, в которой стоит сообщение, в файл XML и назвать его; без --out - в папку базы в папке "
     "программы",
     2, 2, kOptions, Export},
};

}  // namespace

std::span<const Command> ExportCommands() { return kCommands; }

}  // namespace cli
