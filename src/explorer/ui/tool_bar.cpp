#include "explorer/ui/tool_bar.h"

#include <QEvent>
#include <QMenu>
#include <QToolButton>

#include "ui/icons.h"

namespace {

enum class Offered { kAlways, kWithBase };

struct Command {
  const char* name = nullptr;  // of its action; none: a separator
  const char* tag = "";
  IconName icon{};
  const char* text = "";       // on the button
  const char* menu_text = "";  // where the command stands in a menu
  const char* tip = "";
  const char* keys = "";
  Offered offered = Offered::kAlways;
};

constexpr Command kSeparator{};

// In the order of the bar. The places 3, 9 and 11 are commands that a base must be open for.
constexpr Command kButtons[] = {
    {"cmdOpen", "1", IconName::kOpen, "Открыть", "&Открыть базу…", "Открыть базу сообщений", "Ctrl+O"},
    {"cmdArchive", "1", IconName::kArchive, "АРХИВ", "&Архив…", "Загрузить больше дней из архива", "Ctrl+D"},
    {"cmdDownload", "2", IconName::kDownload, "Загрузить", "&Загрузить новые сообщения…",
     "Загрузить новые сообщения с форума", "F9", Offered::kWithBase},
    kSeparator,
    {"cmdRebuild", "5", IconName::kRebuild, "Обновить", "&Обновить", "Построить дерево сообщений заново", "F5",
     Offered::kWithBase},
    kSeparator,
    {"cmdProperties", "7", IconName::kSettings, "Настройки", "&Настройки…", "Настроить дерево и вид сообщений",
     "Ctrl+P"},
    kSeparator,
    {"cmdSearch", "6", IconName::kSearch, "Поиск", "Поиск &текста…", "Найти текст во всём архиве", "Ctrl+F",
     Offered::kWithBase},
    kSeparator,
    {"cmdExport", "", IconName::kExport, "Экспорт", "&Экспорт цепочки…", "Записать цепочку сообщений в файл XML",
     "Ctrl+E", Offered::kWithBase},
    kSeparator,
    {"cmdAbout", "4", IconName::kAbout, "О программе", "&О программе", "О программе и её версии", "F1"},
};

// The drop-down menu of the search button.
constexpr Command kSearchEntries[] = {
    {"mnuEmail", "п1", IconName::kEmail, "Адреса E-Mail автора...", "&Адреса E-Mail автора...",
     "Какие адреса указывал участник форума", "", Offered::kWithBase},
    {"mnuSearch", "п2", IconName::kSearch, "Поиск текста...", "&Поиск текста...", "Найти текст во всём архиве", "",
     Offered::kWithBase},
};

QString ToolTip(const Command& command) {
  const QString tip = QString::fromUtf8(command.tip);
  return *command.keys == '\0' ? tip : QStringLiteral("%1 (%2)").arg(tip, QString::fromLatin1(command.keys));
}

QAction* NewAction(const Command& command, QObject* parent) {
  auto* action = new QAction(Icon(command.icon), QString::fromUtf8(command.menu_text), parent);
  action->setIconText(QString::fromUtf8(command.text));
  action->setObjectName(QString::fromLatin1(command.name));
  action->setData(QString::fromUtf8(command.tag));
  action->setToolTip(ToolTip(command));
  action->setShortcut(QString::fromLatin1(command.keys));
  action->setEnabled(command.offered == Offered::kAlways);
  return action;
}

}  // namespace

ToolBar::ToolBar(QWidget* parent) : QToolBar(parent) {
  setObjectName(QStringLiteral("tBar"));
  setAccessibleName(QStringLiteral("Команды"));
  setWindowTitle(QStringLiteral("Команды"));
  setMovable(false);
  setContextMenuPolicy(Qt::PreventContextMenu);
  AddButtons();
  MeasureTexts();
  // Qt's own button, which shows what a narrow window has no room for.
  if (auto* more = findChild<QToolButton*>(QStringLiteral("qt_toolbar_ext_button")))
    more->setAccessibleName(QStringLiteral("Ещё команды"));
}

void ToolBar::AddButtons() {
  for (const Command& command : kButtons) {
    if (command.name == nullptr) {
      addSeparator();
      continue;
    }
    QAction* button = NewAction(command, this);
    addAction(button);
    const bool archive = command.icon == IconName::kArchive;
    if (command.icon == IconName::kExport)
      connect(button, &QAction::triggered, this, &ToolBar::ExportMSG_Click);
    else
      connect(button, &QAction::triggered, this, [=, this] { emit ButtonClick(button->data().toString(), archive); });
    if (command.icon == IconName::kSearch) AddMenu(button);
  }
}

void ToolBar::AddMenu(QAction* button) {
  auto* menu = new QMenu(this);
  for (const Command& command : kSearchEntries) {
    QAction* entry = NewAction(command, menu);
    menu->addAction(entry);
    connect(entry, &QAction::triggered, this, [=, this] { emit ButtonMenuClick(entry->data().toString()); });
  }
  button->setMenu(menu);
  qobject_cast<QToolButton*>(widgetForAction(button))->setPopupMode(QToolButton::MenuButtonPopup);
}

void ToolBar::SetBaseOpen(bool open) {
  const auto set = [this, open](const Command& command) {
    if (command.name != nullptr && command.offered == Offered::kWithBase)
      findChild<QAction*>(QString::fromLatin1(command.name))->setEnabled(open);
  };
  for (const Command& command : kButtons) set(command);
  for (const Command& command : kSearchEntries) set(command);
}

void ToolBar::resizeEvent(QResizeEvent* event) {
  QToolBar::resizeEvent(event);
  FitTexts();
}

void ToolBar::changeEvent(QEvent* event) {
  QToolBar::changeEvent(event);
  if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) MeasureTexts();
}

// Texts stand under the pictures while all buttons find room so; else the pictures stand alone.
void ToolBar::FitTexts() {
  setToolButtonStyle(width_with_texts_ <= width() ? Qt::ToolButtonTextUnderIcon : Qt::ToolButtonIconOnly);
}

void ToolBar::MeasureTexts() {
  setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
  width_with_texts_ = sizeHint().width();
  FitTexts();
}
