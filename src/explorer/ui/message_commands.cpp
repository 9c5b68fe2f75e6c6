#include "explorer/ui/message_commands.h"

#include <QShortcut>

#include "base/error.h"
#include "explorer/email_lookup.h"
#include "explorer/ui/damage_hint.h"
#include "explorer/ui/long_work.h"
#include "ui/text.h"

namespace {

const QString kSearchTitle = QStringLiteral("Поиск");
const QString kSearchPrompt =
    QStringLiteral("Введите строку для поиска (строка ищется в тексте и теме сообщения, поиск идет по всему архиву)");
const QString kEmailTitle = QStringLiteral("Поиск E-Mail адресов");
const QString kEmailPrompt = QStringLiteral("Введите ник участника форума :");

/// Passes a progress on until the user presses Esc.
class StoppedByEscape : public Progress {
 public:
  StoppedByEscape(QWidget* window, Progress& progress) : progress_(progress), escape_(Qt::Key_Escape, window) {
    QObject::connect(&escape_, &QShortcut::activated, [this] { stopped_ = true; });
  }
  bool Advance(int percent) override { return progress_.Advance(percent) && !stopped_; }

 private:
  Progress& progress_;
  QShortcut escape_;
  bool stopped_ = false;
};

}  // namespace

template <typename Action>
void MessageCommands::Try(Action action) {
  if (!needs_.base.IsOpen()) return;
  try {
    action();
  } catch (const Error& error) {
    needs_.dialogs.Tell(needs_.window, FromCp1251(error.what()));
    ShowDamageHint(*needs_.status, error);
  }
}

// A character that no base can hold would become "?", which stands for any other.
std::string MessageCommands::AskText(const QString& prompt, const QString& title) {
  const QString text = needs_.dialogs.AskLine(needs_.window, prompt, title);
  if (FitsCp1251(text)) return ToCp1251(text);
  needs_.dialogs.Tell(needs_.window, QStringLiteral("В базах не бывает таких знаков: %1").arg(text), BoxIcon::kNone,
                      title);
  return {};
}

void MessageCommands::FindText() {
  Try([this] {
    typed_ = AskText(kSearchPrompt, kSearchTitle);
    const LongWork work(needs_.bar);
    StoppedByEscape progress(needs_.window, needs_.progress);
    Search(needs_.base, typed_, progress, *this);
  });
}

void MessageCommands::FindEmails() {
  Try([this] {
    const std::string nick = AskText(kEmailPrompt, kEmailTitle);
    const std::optional<std::string> answer = [&] {
      const Hourglass hourglass;
      return LookUpEmails(needs_.base.connection(), nick);
    }();
    if (answer) needs_.dialogs.Tell(needs_.window, FromCp1251(*answer));
  });
}

void MessageCommands::Delete(const QModelIndex& node) {
  const NodeTree& nodes = needs_.model->Tree();
  const NodeId chosen = needs_.model->NodeOf(node);
  if (CanDelete(nodes, chosen)) Try([&] { DeleteMessage(nodes, chosen, edits_, *this); });
}

void MessageCommands::DeleteWithReplies(const QModelIndex& node) {
  const NodeTree& nodes = needs_.model->Tree();
  const NodeId chosen = needs_.model->NodeOf(node);
  if (CanDeleteWithReplies(nodes, chosen)) Try([&] { ::DeleteWithReplies(nodes, chosen, edits_, *this); });
}

void MessageCommands::ClearResults() {
  searched_ = typed_;
  needs_.model->ClearResults();
}

// The results come last in the tree, below what may be a hundred thousand threads: they are brought
// into sight, without being chosen, which would show another message.
void MessageCommands::ShowResults(std::span<const FoundMessage> found) {
  needs_.model->ShowResults(found);
  const QModelIndex results = needs_.model->IndexOf(needs_.model->Tree().Find(NodeKind::kResults));
  needs_.tree->expand(results);
  needs_.tree->scrollTo(results, QAbstractItemView::PositionAtTop);
}

void MessageCommands::SetStatus(std::string_view text) { needs_.status->SetPanel(1, FromCp1251(text)); }

bool MessageCommands::AskOkCancel(std::string_view title, std::string_view text) {
  return needs_.dialogs.AskOkCancel(needs_.window, FromCp1251(text), BoxIcon::kQuestion, FromCp1251(title));
}
