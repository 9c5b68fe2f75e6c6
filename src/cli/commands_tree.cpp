#include <array>
#include <optional>
#include <string>
#include <vector>

#include "base/cat.h"
#include "base/cp1251.h"
#include "base/progress.h"
#include "base/ru_literal.h"
#include "cli/chosen_clock.h"
#include "cli/command.h"
#include "cli/json_lines.h"
#include "cli/open_base.h"
#include "config/user_settings.h"
#include "explorer/base_rows.h"
#include "explorer/message_view.h"
#include "explorer/tree_builder.h"
#include "store/message_rows.h"
#include "text/dates.h"
#include "text/numbers.h"
#include "text/strings.h"

namespace cli {
namespace {

std::int32_t DaysOption(const Arguments& arguments, std::string_view option, std::int32_t missing) {
  const auto written = arguments.Value(option);
  if (!written) return missing;
  const std::string text = cp1251::FromUtf8(*written);
  if (option == "--days" && text == "all") return user_settings::kWholeArchive;
  const std::int32_t days = user_settings::DaysFromText(text);
  if (days <= 0) throw UsageError(Cat("Не число дней: "_ru, text));
  return days;
}

void ChooseGroupings(const std::string& list, user_settings::TreeSettings& settings) {
  settings.BuildTreeByThread = settings.BuildTreeByDate = settings.BuildTreeByAuthor = false;
  for (const std::string_view name : text::Split(list, ",")) {
    bool* const grouping = name == "thread"   ? &settings.BuildTreeByThread
                           : name == "date"   ? &settings.BuildTreeByDate
                           : name == "author" ? &settings.BuildTreeByAuthor
                                              : nullptr;
    if (grouping == nullptr) throw UsageError(Cat("Неизвестная группировка: "_ru, cp1251::FromUtf8(name)));
    *grouping = true;
  }
}

/// What users get who never changed a setting, unless options say otherwise.
user_settings::TreeSettings SettingsOf(const Arguments& arguments) {
  user_settings::SettingTexts texts;
  texts.BuildTreeByThread = "1";
  texts.MessageFormat = cp1251::FromUtf8(arguments.Value("--format").value_or(""));
  texts.OpenThreads = cp1251::FromUtf8(arguments.Value("--open").value_or(""));
  user_settings::TreeSettings settings = user_settings::ToTreeSettings(texts);
  constexpr user_settings::TreeSettings kUnset;
  settings.LoadDays = DaysOption(arguments, "--days", kUnset.LoadDays);
  settings.HighlightMessagesByDays = DaysOption(arguments, "--highlight", kUnset.HighlightMessagesByDays);
  if (const auto list = arguments.Value("--by")) ChooseGroupings(*list, settings);
  return settings;
}

constexpr std::array<std::string_view, kNodeImageCount> kImageNames = {
    "threads",     "broken",  "dates",         "authors", "results", "thread_start", "reply", "broken_reply",
    "new_message", "message", "found_message", "year",    "month",   "day",          "author"};

void PrintNode(const NodeTree& tree, NodeId node, std::size_t depth, bool json, std::ostream& out) {
  const std::string text = OneLine(tree.Text(node));
  if (!json) {
    out << std::string(2 * depth, ' ') << text << '\n';
    return;
  }
  const auto yes_or_no = [](bool value) { return value ? "true" : "false"; };
  std::string line = Cat("{\"depth\": ", depth, ", \"key\": ");
  json_lines::AppendText(cp1251::ToUtf8(KeyText(tree.Key(node))), line);
  line.append(", \"text\": ");
  json_lines::AppendText(text, line);
  line.append(Cat(", \"image\": \"", kImageNames[static_cast<std::size_t>(tree.Image(node))],
                  "\", \"expanded\": ", yes_or_no(tree.Expanded(node)),
                  ", \"new\": ", yes_or_no(tree.Image(node) == NodeImage::kNewMessage), "}\n"));
  out << line;
}

/// Depth first. A thread may be as deep as the archive is long, so the way down is kept in a list.
void PrintNodes(const NodeTree& tree, bool json, std::ostream& out) {
  struct Level {
    NodeId node;
    std::size_t next_child;
  };
  std::vector<Level> way{{kRootNode, 0}};
  while (!way.empty()) {
    Level& level = way.back();
    if (level.next_child == tree.ChildCount(level.node)) {
      way.pop_back();
      continue;
    }
    const NodeId child = tree.Child(level.node, level.next_child++);
    PrintNode(tree, child, way.size() - 1, json, out);
    way.push_back({child, 0});
  }
}

/// Rows that cannot be shown do not end the listing; the errors stand between its lines.
class TroubleLines : public TreeTrouble {
 public:
  explicit TroubleLines(std::ostream& out) : out_(out) {}
  void Tell(std::string_view text) override { out_ << cp1251::ToUtf8(text) << '\n'; }

 private:
  std::ostream& out_;
};

void Tree(const Arguments& arguments, Context& context) {
  const user_settings::TreeSettings settings = SettingsOf(arguments);
  const ChosenClock clock(arguments.Value("--now"), context.clock);
  OpenBase base(arguments, context, jet::Access::kRead);
  sql::Connection connection(base.database, clock);
  BaseRows rows(connection, settings);
  NoProgress progress;
  TroubleLines trouble(context.out);
  const BuiltTree built = BuildTree(rows, settings, clock, progress, trouble);
  const bool json = arguments.Has("--json");
  PrintNodes(built.tree, json, context.out);
  if (!json) context.out << cp1251::ToUtf8(built.status) << '\n';
}

void Show(const Arguments& arguments, Context& context) {
  const std::int32_t number = MessageNumber(arguments[1]);
  OpenBase base(arguments, context, jet::Access::kRead);
  const auto message = ReadMessage(base.connection, number);
  if (!message) throw Error(error_number::kNoCurrentRecord, Cat("В базе нет сообщения с номером "_ru, number));
  const MessageView view = ViewOfMessage(*message);
  for (const std::string& line :
       {view.status.value_or(""), view.txtSubj, view.txtAuthor, view.txtAuthorMail, view.txtData})
    if (!line.empty()) context.out << OneLine(line) << '\n';
  context.out << '\n' << cp1251::ToUtf8(text::ReplaceAll(view.body, "\r\n", "\n")) << '\n';
}

constexpr Option kTreeOptions[] = {{"--days", true}, {"--now", true},       {"--by", true},   {"--format", true},
                                   {"--open", true}, {"--highlight", true}, {"--json", false}};

constexpr Command kCommands[] = {
    {"tree",
     "БАЗА [--days N|all] [--now ВРЕМЯ] [--by thread,date,author] [--format \"Тема - Автор - Дата\"] "
     "[--open All|New|No] [--highlight N] [--json]",
     "показать дерево сообщений, узел в строке", 1, 1, kTreeOptions, Tree},
    {"show", "БАЗА НОМЕР", "показать сообщение", 2, 2, {}, Show},
};

}  // namespace

std::span<const Command> TreeCommands() { return kCommands; }

}  // namespace cli
