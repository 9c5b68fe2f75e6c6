#include "app/command_line.h"

#include <string_view>

const char kUsage[] =
    "Использование: quorvex [--data-dir=ПАПКА] [БАЗА.mdb]\n"
    "Читает и пополняет архивы русскоязычных форумов.\n"
    "\n"
    "  БАЗА.mdb          открыть эту базу сразу, без окна выбора\n"
    "  --data-dir=ПАПКА  папка программы: forum.ini, forum.log, выгруженные цепочки\n"
    "  --help            показать эту справку\n"
    "  --version         показать версию программы\n";

CommandLine ParseCommandLine(std::span<const char* const> arguments) {
  constexpr std::string_view kDataDir = "--data-dir=";
  CommandLine line;
  bool options = true;  // "--" ends them
  for (const std::string_view argument : arguments) {
    if (options && argument == "--") {
      options = false;
    } else if (options && argument == "--help") {
      line.help = true;
    } else if (options && argument == "--version") {
      line.version = true;
    } else if (options && argument.starts_with(kDataDir)) {
      line.data_dir = argument.substr(kDataDir.size());
    } else if (options && argument.starts_with('-')) {
      throw UsageError("Неизвестный параметр: " + std::string(argument));
    } else if (!line.base.empty()) {
      throw UsageError("Можно открыть только одну базу: лишний параметр " + std::string(argument));
    } else {
      line.base = argument;
    }
  }
  return line;
}
