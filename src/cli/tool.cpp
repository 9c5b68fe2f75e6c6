#include "cli/tool.h"

#include <algorithm>
#include <vector>

#include "base/cat.h"
#include "base/cp1251.h"
#include "base/ru_literal.h"
#include "base/version.h"
#include "cli/command.h"

namespace cli {
namespace {

constexpr std::string_view kHelp = "--help", kVersion = "--version", kDataDir = "--data-dir";

std::vector<Command> AllCommands() {
  std::vector<Command> all;
  for (const auto& commands : {BaseCommands(), RowCommands(), TreeCommands(), PageCommands(), ImportCommands(),
                               MessageCommands(), UpkeepCommands(), ExportCommands(), FetchCommands()})
    all.insert(all.end(), commands.begin(), commands.end());
  return all;
}

void PrintHelp(std::ostream& to, const Command& command) {
  to << "kdvbase " << command.name << ' ' << command.usage << "\n    " << command.summary << '\n';
}

void PrintHelp(std::ostream& to) {
  to << "kdvbase — базы сообщений форумов из командной строки\n\n";
  for (const Command& command : AllCommands()) PrintHelp(to, command);
  to << "\n--data-dir ПАПКА задаёт папку программы. Состояние выхода: 0 — сделано, 1 — ошибка, 2 — неверный вызов,\n"
        "3 — остановлено пользователем.\n";
}

bool AsksForHelp(std::span<const std::string> words) {
  return std::find(words.begin(), std::find(words.begin(), words.end(), "--"), kHelp) !=
         std::find(words.begin(), words.end(), "--");
}

Command FindCommand(const std::string& name) {
  const std::vector<Command> all = AllCommands();
  const auto found = std::find_if(all.begin(), all.end(), [&](const Command& command) { return command.name == name; });
  if (found == all.end()) throw UsageError(Cat("Неизвестная команда: "_ru, cp1251::FromUtf8(name)));
  return *found;
}

void RunCommand(const Command& command, std::span<const std::string> words, Context& context) {
  command.run(ReadArguments(command, words), context);
  if (!context.out.flush()) throw FileError(error_number::kNoAccess, "Не удалось записать вывод"_ru);
}

void PrintError(std::ostream& errors, const Error& error) {
  errors << "kdvbase: " << cp1251::ToUtf8(error.what()) << std::endl;
}

}  // namespace

int RunTool(std::span<const std::string> words, std::ostream& out, std::ostream& errors, FileSystem& files,
            const Clock& clock, const NetworkFactory& make_network, bool on_terminal) {
  if (words.empty()) {
    PrintHelp(errors);
    return kMisused;
  }
  if (words[0] == kHelp) {
    PrintHelp(out);
    return kDone;
  }
  if (words[0] == kVersion) {
    out << "kdvbase " << kProductVersion << '\n';
    return kDone;
  }
  if (words[0] == kDataDir && words.size() > 2) {  // it may stand before the command too
    std::vector<std::string> reordered{words[2], words[0], words[1]};
    reordered.insert(reordered.end(), words.begin() + 3, words.end());
    return RunTool(reordered, out, errors, files, clock, make_network, on_terminal);
  }
  try {
    const Command command = FindCommand(words[0]);
    const auto rest = words.subspan(1);
    if (AsksForHelp(rest)) {
      PrintHelp(out, command);
      return kDone;
    }
    Context context{out, errors, files, clock, make_network, on_terminal};
    RunCommand(command, rest, context);
    return context.status;
  } catch (const UsageError& e) {
    PrintError(errors, e);
    errors << "kdvbase --help покажет, как вызывать программу\n";
    return kMisused;
  } catch (const Error& e) {
    out.flush();
    PrintError(errors, e);
    return kFailed;
  }
}

}  // namespace cli
