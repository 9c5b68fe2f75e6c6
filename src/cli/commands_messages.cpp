#include "base/cat.h"
#include "base/cp1251.h"
#include "base/progress.h"
#include "base/ru_literal.h"
#include "cli/command.h"
#include "cli/open_base.h"
#include "explorer/delete_messages.h"
#include "explorer/email_lookup.h"
#include "explorer/search.h"
#include "export/thread_choice.h"
#include "store/message_edits.h"
#include "text/strings.h"

namespace cli {
namespace {

/// The window's deletion without a window: whoever wrote the script has decided already.
class Deletion : public MessageEdits, public DeletionView {
 public:
  Deletion(sql::Connection& connection, std::ostream& out) : connection_(connection), out_(out) {}
  void Delete(std::span<const std::int32_t> numbers) override { DeleteMessages(connection_, numbers); }
  bool AskOkCancel(std::string_view, std::string_view) override { return true; }
  void RemoveNode(NodeId) override {}
  void SetStatus(std::string_view text) override { out_ << cp1251::ToUtf8(text) << '\n'; }

 private:
  sql::Connection& connection_;
  std::ostream& out_;
};

void Delete(const Arguments& arguments, Context& context) {
  const std::int32_t number = MessageNumber(arguments[1]);
  OpenBase base(arguments, context, jet::Access::kReadWrite);
  const NodeTree threads = WholeArchive(base.connection, {}, context.clock);
  const NodeId node = threads.Find(NodeKind::kThreadMessage, number);
  if (node == kNoNode) throw Error(error_number::kNoCurrentRecord, Cat("В базе нет сообщения с номером "_ru, number));
  Deletion deletion(base.connection, context.out);
  if (arguments.Has("--with-replies"))
    DeleteWithReplies(threads, node, deletion, deletion);
  else
    DeleteMessage(threads, node, deletion, deletion);
}

/// The text that a command looks for. @throws UsageError for blanks alone
std::string Wanted(const Arguments& arguments) {
  std::string wanted = cp1251::FromUtf8(arguments[1]);
  // A character that no base can hold would become "?", which stands for any other.
  if (cp1251::ToUtf8(wanted) != arguments[1]) throw UsageError("В базах не бывает таких знаков, как в этом тексте"_ru);
  if (text::Trim(wanted).empty()) throw UsageError("Нечего искать: текст пуст"_ru);
  return wanted;
}

void Search(const Arguments& arguments, Context& context) {
  const std::string wanted = Wanted(arguments);
  OpenBase base(arguments, context, jet::Access::kRead);
  NoProgress nobody;
  for (const FoundMessage& found : FindMessages(base.database, base.connection, wanted, nobody))
    context.out << found.Код << '\t' << OneLine(found.Тема) << '\n';
}

void Emails(const Arguments& arguments, Context& context) {
  const std::string nick = Wanted(arguments);
  OpenBase base(arguments, context, jet::Access::kRead);
  const std::vector<std::string> addresses = EmailsOf(base.connection, nick);
  for (const std::string& address : addresses) context.out << OneLine(address) << '\n';
  if (addresses.empty()) context.errors << cp1251::ToUtf8(NoEmailsText(nick)) << '\n';
}

constexpr Option kDeleteOptions[] = {{"--with-replies"}};

constexpr Command kCommands[] = {
    {"delete", "БАЗА НОМЕР [--with-replies]",
     "удалить сообщение, не переспрашивая; с --with-replies — вместе со всеми ответами на него", 2, 2, kDeleteOptions,
     Delete},
    {"search",
     "БАЗА ТЕКСТ",
     "найти текст в сообщениях и темах: номер и тема каждого в строке; * ? # [ — знаки шаблона",
     2,
     2,
     {},
     Search},
    {"emails", "БАЗА НИК", "показать адреса E-Mail, которые указывал автор", 2, 2, {}, Emails},
};

}  // namespace

std::span<const Command> MessageCommands() { return kCommands; }

}  // namespace cli
