#include "explorer/ui/main_menu.h"

#include <optional>

#include <QFileInfo>

namespace {

enum class Needs { kNothing, kBase, kMessage };

// A line of a menu: a menu's own title, a shared action, a command, the list of recent bases or a separator.
struct Line {
  enum Kind { kMenu, kShared, kCommand, kRecent, kSeparator } kind;
  const char* name = "";  // of the action
  const char* text = "";
  const char* keys = "";
  MenuCommand command{};
  Needs needs = Needs::kNothing;
};

constexpr Line Menu(const char* name, const char* text) { return {Line::kMenu, name, text}; }
constexpr Line Shared(const char* name) { return {Line::kShared, name}; }
constexpr Line Command(const char* name, const char* text, const char* keys, MenuCommand command,
                       Needs needs = Needs::kNothing) {
  return {Line::kCommand, name, text, keys, command, needs};
}
constexpr Line kSeparator{Line::kSeparator};

constexpr Line kLines[] = {
    Menu("mnuFile", "&Файл"),
    Shared("cmdOpen"),
    Command("mnuNewBase", "&Создать базу…", "Ctrl+N", MenuCommand::kNewBase),
    {Line::kRecent, "mnuRecent", "&Недавние базы"},
    kSeparator,
    Shared("cmdDownload"),
    Command("mnuImportPages", "&Импортировать сохранённые страницы…", "Ctrl+I", MenuCommand::kImportPages,
            Needs::kBase),
    Shared("cmdExport"),
    kSeparator,
    Command("mnuCompact", "С&жать базу", "", MenuCommand::kCompact, Needs::kBase),
    Command("mnuCheck", "&Проверить базу", "", MenuCommand::kCheck),
    kSeparator,
    Command("mnuQuit", "В&ыход", "Ctrl+Q", MenuCommand::kQuit),

    Menu("mnuMessage", "&Сообщение"),
    Command("mnuNext", "&Следующее", "Alt+Down", MenuCommand::kNextMessage, Needs::kBase),
    Command("mnuPrevious", "П&редыдущее", "Alt+Up", MenuCommand::kPreviousMessage, Needs::kBase),
    Command("mnuParent", "На &что отвечает", "Alt+Left", MenuCommand::kParentMessage, Needs::kBase),
    Command("mnuNextNew", "Следующее &новое", "Alt+Right", MenuCommand::kNextNew, Needs::kBase),
    kSeparator,
    Command("mnuCopyMessage", "&Копировать сообщение", "Ctrl+Shift+C", MenuCommand::kCopyMessage, Needs::kMessage),
    Command("mnuCopyNumber", "Копировать н&омер", "", MenuCommand::kCopyNumber, Needs::kMessage),
    kSeparator,
    Shared("mnuDelete"),
    Shared("mnuDeleteThread"),

    Menu("mnuView", "&Вид"),
    Shared("cmdRebuild"),
    Shared("cmdArchive"),
    kSeparator,
    Command("mnuExpand", "&Раскрыть ветвь", "Ctrl+Shift+Right", MenuCommand::kExpandBranch, Needs::kBase),
    Command("mnuCollapse", "&Свернуть ветвь", "Ctrl+Shift+Left", MenuCommand::kCollapseBranch, Needs::kBase),
    kSeparator,
    Command("mnuLarger", "&Крупнее", "Ctrl++; Ctrl+=", MenuCommand::kLargerText),
    Command("mnuSmaller", "&Мельче", "Ctrl+-", MenuCommand::kSmallerText),
    Command("mnuUsual", "&Обычный размер", "Ctrl+0", MenuCommand::kUsualText),
    kSeparator,
    Shared("cmdProperties"),

    Menu("mnuFind", "&Поиск"),
    Shared("cmdSearch"),
    Shared("mnuEmail"),

    Menu("mnuHelp", "Спр&авка"),
    Shared("cmdAbout"),
};

}  // namespace

MainMenu::MainMenu(const QWidget* shared, QWidget* parent) : QMenuBar(parent) {
  setObjectName(QStringLiteral("mainMenu"));
  setAccessibleName(QStringLiteral("Меню"));
  QMenu* menu = nullptr;
  for (const Line& line : kLines) {
    const QString name = QString::fromLatin1(line.name), text = QString::fromUtf8(line.text);
    switch (line.kind) {
      case Line::kMenu:
        menu = addMenu(text);
        menu->setObjectName(name);
        break;
      case Line::kShared: menu->addAction(shared->findChild<QAction*>(name)); break;
      case Line::kCommand: {
        QAction* action = menu->addAction(text, this, [this, command = line.command] { emit Chosen(command); });
        action->setObjectName(name);
        action->setShortcuts(QKeySequence::listFromString(QString::fromLatin1(line.keys)));
        break;
      }
      case Line::kRecent:
        recent_ = menu->addMenu(text);
        recent_->setObjectName(name);
        break;
      case Line::kSeparator: menu->addSeparator(); break;
    }
  }
  SetAvailable(false, false);
  SetRecent({});
}

void MainMenu::SetAvailable(bool base_open, bool message_shown) {
  for (const Line& line : kLines)
    if (line.needs != Needs::kNothing)
      findChild<QAction*>(QString::fromLatin1(line.name))
          ->setEnabled(line.needs == Needs::kBase ? base_open : message_shown);
}

void MainMenu::SetRecent(const QStringList& paths) {
  recent_->clear();
  recent_->setEnabled(!paths.isEmpty());
  int place = 0;
  for (const QString& path : paths) {
    const QFileInfo file(path);
    QString text = QStringLiteral("%1 — %2").arg(file.fileName(), file.path());
    text.replace(QLatin1Char('&'), QLatin1String("&&"));
    recent_->addAction(QStringLiteral("&%1  %2").arg(++place).arg(text), this,
                       [this, path] { emit RecentChosen(path); });
  }
}
