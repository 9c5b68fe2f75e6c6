#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <ostream>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "base/clock.h"
#include "base/error.h"
#include "base/file.h"
#include "cli/tool.h"

/// The parts of kdvbase. Everything printed, and every literal here, is UTF-8; errors carry
/// Windows-1251 as everywhere.
namespace cli {

inline constexpr int kDone = 0, kFailed = 1, kMisused = 2, kStopped = 3;  // exit status

/// The words do not make a command; kMisused.
class UsageError : public Error {
 public:
  explicit UsageError(std::string_view what) : Error(error_number::kBadArgument, what) {}
};

struct Option {
  std::string_view name;  // with its two dashes
  bool takes_value = false;
};

/// The words behind a command's name, checked against what it takes.
class Arguments {
 public:
  const std::string& operator[](std::size_t position) const { return words_[position]; }
  std::size_t size() const { return words_.size(); }
  std::span<const std::string> Words() const { return words_; }
  bool Has(std::string_view option) const { return options_.find(option) != options_.end(); }
  std::optional<std::string> Value(std::string_view option) const;

 private:
  friend class ArgumentReader;
  std::vector<std::string> words_;
  std::map<std::string, std::string, std::less<>> options_;
};

/// What commands work with.
struct Context {
  std::ostream& out;
  std::ostream& errors;  // for what does not end the command
  FileSystem& files;
  const Clock& clock;
  const NetworkFactory& make_network;  // may be empty
  bool on_terminal = false;
  int status = kDone;  // of a command that ends without an Error
};

inline constexpr std::size_t kAnyNumber = static_cast<std::size_t>(-1);

struct Command {
  std::string_view name;
  std::string_view usage;                       // what follows the name
  std::string_view summary;                     // one line
  std::size_t least_words = 1, most_words = 1;  // kAnyNumber for no limit
  std::span<const Option> options;
  void (*run)(const Arguments& arguments, Context& context) = nullptr;
};

/// "--name value", "--name=value"; behind "--" all words stand for themselves. --data-dir is known to
/// every command. @throws UsageError
Arguments ReadArguments(const Command& command, std::span<const std::string> words);

/// The program folder that --data-dir names, or the usual one; made and filled on first use.
std::string ProgramFolder(const Arguments& arguments);

/// A word as the number of a message. @throws UsageError when it is none
std::int32_t MessageNumber(const std::string& word);

/// A text of a message as UTF-8 on a line of its own: what would move the cursor of a terminal or change its colours
/// becomes blanks.
std::string OneLine(std::string_view text);

/// A word, in UTF-8, as the code of a forum whose pages can be read. @throws UsageError when it is none
std::string ForumCode(const std::string& word);

// Each file commands_*.cpp contributes its own.
std::span<const Command> BaseCommands();     // commands_base.cpp
std::span<const Command> RowCommands();      // commands_rows.cpp
std::span<const Command> TreeCommands();     // commands_tree.cpp
std::span<const Command> PageCommands();     // commands_pages.cpp
std::span<const Command> ImportCommands();   // commands_import.cpp
std::span<const Command> MessageCommands();  // commands_messages.cpp
std::span<const Command> UpkeepCommands();   // commands_upkeep.cpp
std::span<const Command> ExportCommands();   // commands_export.cpp
std::span<const Command> FetchCommands();    // commands_fetch.cpp

}  // namespace cli
