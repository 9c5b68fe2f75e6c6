#include "explorer/ui/KDVExplorer.h"

#include <utility>

#include <QClipboard>
#include <QCloseEvent>
#include <QGuiApplication>
#include <QMimeData>
#include <QVBoxLayout>

#include "base/cat.h"
#include "base/error.h"
#include "base/ru_literal.h"
#include "config/recent_bases.h"
#include "config/user_settings.h"
#include "explorer/base_rows.h"
#include "explorer/downloaded_messages.h"
#include "explorer/empty_tree.h"
#include "explorer/ui/damage_hint.h"
#include "explorer/ui/long_work.h"
#include "explorer/ui/window_state.h"
#include "store/message_rows.h"
#include "text/numbers.h"
#include "ui/busy.h"
#include "ui/icons.h"
#include "ui/text.h"

namespace {

constexpr QSize kSmallestSize(467, 533);  // pixels
constexpr QSize kFirstSize(960, 720);
constexpr double kTreePercent = 70;  // of the height, at the start

const QString kNothingOpen = QStringLiteral(
    "Чтобы читать сообщения, откройте базу: нажмите кнопку «Открыть» (Ctrl+O) и выберите форум и файл базы "
    "или перетащите файл базы в это окно. Новую базу создаёт команда «Файл — Создать базу…».");

/// The one message base among what is dragged; empty when it is anything else.
QString DraggedBase(const QMimeData* data) {
  const QList<QUrl> urls = data->urls();
  if (urls.size() != 1 || !urls[0].isLocalFile()) return {};
  const QString path = urls[0].toLocalFile();
  return path.endsWith(QLatin1String(".mdb"), Qt::CaseInsensitive) ? path : QString();
}

}  // namespace

KDVExplorer::KDVExplorer(const ExplorerNeeds& needs) : needs_(needs), base_(needs.files, needs.clock, needs.ini) {
  setObjectName(QStringLiteral("KDVExplorer"));
  setWindowIcon(ProgramIcon());
  setMinimumSize(kSmallestSize);
  resize(kFirstSize);
  AddControls();
  AddMenus();
  setAcceptDrops(true);
  commands_ = std::make_unique<MessageCommands>(
      MessageCommandNeeds{this, needs_.dialogs, base_, model_, tree_, StatBar_, Progress_, *this});
  ConnectControls();
  Form_Load();
}

void KDVExplorer::AddControls() {
  tBar_ = new ToolBar(this);
  addToolBar(tBar_);
  statBarTop_ = new StatusPanels(QStringLiteral("statBarTop"), 1, this);
  statBarTop_->setAccessibleName(QStringLiteral("Открытая база"));

  model_ = new TreeModel(this);
  tree_ = Named<MessageTree>("tree", this);
  tree_->setAccessibleName(QStringLiteral("Дерево сообщений"));
  tree_->setModel(model_);
  expansion_ = new TreeExpansion(tree_, model_);
  pane_ = new MessagePane(this);
  reading_ = new Reading(tree_, model_, pane_->body);
  imgSplitter_ = Named<PercentSplitter>("imgSplitter", this);
  imgSplitter_->SetPanes(tree_, pane_);

  auto* content = new QWidget(this);
  auto* column = new QVBoxLayout(content);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(0);
  column->addWidget(statBarTop_);
  column->addWidget(imgSplitter_, 1);
  setCentralWidget(content);
  tree_->setFocus();

  StatBar_ = new StatusPanels(QStringLiteral("StatBar"), 1, this);
  StatBar_->setAccessibleName(QStringLiteral("Состояние"));
  Progress_ = Named<QProgressBar>("Progress", this);
  Progress_->setAccessibleName(QStringLiteral("Ход работы"));
  Progress_->setMaximumWidth(160);
  StatBar_->addPermanentWidget(Progress_);
  setStatusBar(StatBar_);
}

void KDVExplorer::AddMenus() {
  tree_menu_ = new TreeMenu(tree_, this);
  menu_ = new MainMenu(this, this);  // shares what the tree's menu has
  setMenuBar(menu_);
  QList<QAction*> shared;
  for (const char* name : {"mnuCopyMessage", "mnuCopyNumber"})
    shared.append(menu_->findChild<QAction*>(QString::fromLatin1(name)));
  tree_menu_->AddShared(shared);
}

void KDVExplorer::ConnectControls() {
  connect(tBar_, &ToolBar::ButtonClick, this, &KDVExplorer::tBar_ButtonClick);
  connect(tBar_, &ToolBar::ButtonMenuClick, this, &KDVExplorer::tBar_ButtonMenuClick);
  connect(tBar_, &ToolBar::ExportMSG_Click, this, [this] {
    if (!busy_) needs_.windows.Export(*this);
  });
  connect(menu_, &MainMenu::Chosen, this, &KDVExplorer::Do);
  connect(menu_, &MainMenu::RecentChosen, this, [this](const QString& path) { Load(PathFromQString(path)); });
  connect(tree_, &MessageTree::NodeChosen, this, &KDVExplorer::tree_NodeClick);
  connect(tree_, &MessageTree::NodeOpened, this, &KDVExplorer::tree_NodeOpened);
  connect(tree_->selectionModel(), &QItemSelectionModel::currentChanged, this, &KDVExplorer::UpdateCommands);
  connect(model_, &TreeModel::modelReset, this, &KDVExplorer::UpdateCommands);
  connect(model_, &TreeModel::rowsRemoved, this, &KDVExplorer::UpdateCommands);
  connect(tree_, &MessageTree::MenuWanted, this,
          [this](const QModelIndex&, const QPoint& place) { tree_menu_->popup(place); });
  connect(tree_menu_, &TreeMenu::DeleteChosen, this, [this] { RunOnNode(&MessageCommands::Delete); });
  connect(tree_menu_, &TreeMenu::DeleteThreadChosen, this, [this] { RunOnNode(&MessageCommands::DeleteWithReplies); });
  connect(pane_->body, &MessageBody::LinkChosen, this, [this](const QUrl& target) { needs_.windows.OpenLink(target); });
}

void KDVExplorer::Form_Load() {
  first_activation_ = true;
  tBar_->SetBaseOpen(false);
  imgSplitter_->SetPercent(kTreePercent);
  window_state::Restore(needs_.settings, *this, *imgSplitter_);
  ShowRecentBases();
  Progress_->hide();
  tree_->SetEmptyText(kNothingOpen);
  SetCaption(ProgramName());
  SetTextSize(user_settings::TextSizeFromText(user_settings::SettingsForOpening(needs_.settings).TextFontSize));
}

void KDVExplorer::LoadLater(std::string path) { pending_load_ = std::move(path); }

void KDVExplorer::LoadInsteadOfDialog(std::string path) {
  first_activation_ = false;
  LoadLater(std::move(path));
}

bool KDVExplorer::event(QEvent* event) {
  // Queued, so that the window stands on the screen before a dialog or a load holds it up.
  if (event->type() == QEvent::WindowActivate)
    QMetaObject::invokeMethod(this, &KDVExplorer::Form_Activate, Qt::QueuedConnection);
  return QMainWindow::event(event);
}

void KDVExplorer::Load(std::string path) {
  if (busy_) return;
  LoadLater(std::move(path));
  Form_Activate();
}

void KDVExplorer::dragEnterEvent(QDragEnterEvent* event) {
  if (!busy_ && !DraggedBase(event->mimeData()).isEmpty()) event->acceptProposedAction();
}

void KDVExplorer::dropEvent(QDropEvent* event) {
  const QString path = DraggedBase(event->mimeData());
  event->acceptProposedAction();
  // The program that the file was dragged from waits for the drop to end.
  QMetaObject::invokeMethod(
      this, [this, path] { Load(PathFromQString(path)); }, Qt::QueuedConnection);
}

void KDVExplorer::closeEvent(QCloseEvent* event) {
  closing_ = true;
  window_state::Save(needs_.settings, *this, *imgSplitter_);
  QMainWindow::closeEvent(event);
}

void KDVExplorer::Form_Activate() {
  if (busy_ || closing_) return;
  if (pending_load_) LoadPendingBase();
  if (!std::exchange(first_activation_, false)) return;
  ShowOpenDialog(false);
}

void KDVExplorer::LoadPendingBase() {
  const BusyMark busy(busy_);
  // A tree built after a failure would put its own status in the place of the reason.
  if (OpenBase(*pending_load_)) BuildTreeOfBase();
  pending_load_.reset();
}

// Not every desktop activates the window again when a dialog over it closes.
void KDVExplorer::ShowOpenDialog(bool days_in_focus) {
  needs_.windows.OpenBaseDialog(*this, days_in_focus);
  Form_Activate();
}

bool KDVExplorer::OpenBase(const std::string& path) {
  try {
    base_.OpenBase(path);
  } catch (const Error& error) {
    needs_.dialogs.Tell(this, FromCp1251(OpenFailureText(path)));
    SetCaption(ProgramName());
    SetStatus(FromCp1251(error.what()));
    // The file may have taken the open base's place although it is none: a tree left of the base
    // before would name messages that are not in it.
    if (base_.path() == path) ClearTree();
    if (error.number() == error_number::kBaseNotFound) recent_bases::Forget(needs_.settings, path);
    ShowRecentBases();
    return false;
  }
  tBar_->SetBaseOpen(true);
  UpdateCommands();
  recent_bases::Remember(needs_.settings, path);
  ShowRecentBases();
  QGuiApplication::processEvents();
  const std::string caption = base_.Caption();
  if (!caption.empty()) SetCaption(FromCp1251(caption));
  return true;
}

void KDVExplorer::SR() {
  if (busy_ || !base_.IsOpen()) return;
  const BusyMark busy(busy_);
  RebuildTree();
}

void KDVExplorer::ShowDownloaded(const std::vector<std::int32_t>& stored, std::optional<std::int32_t> to_read) {
  if (busy_ || !base_.IsOpen()) return;
  NodeId shown = kNoNode;
  if (!stored.empty()) {
    const BusyMark busy(busy_);
    shown = RebuildTree(stored);
  }
  if (to_read) shown = NodeOfMessage(*to_read);
  if (shown == kNoNode) return TellOlder();
  reading_->GoTo(shown);
  if (to_read) tree_NodeOpened(tree_->currentIndex());
}

void KDVExplorer::TellOlder() {
  SetStatus(QStringLiteral("Эти сообщения старше показанных дней: чтобы увидеть их, нажмите кнопку АРХИВ"));
}

NodeId KDVExplorer::NodeOfMessage(std::int32_t number) const {
  for (const NodeKind kind : {NodeKind::kThreadMessage, NodeKind::kDateMessage, NodeKind::kAuthorMessage})
    if (const NodeId node = model_->Tree().Find(kind, number); node != kNoNode) return node;
  return kNoNode;
}

// A base that was just opened is not opened once more.
NodeId KDVExplorer::RebuildTree(const std::vector<std::int32_t>& downloaded) {
  try {
    base_.Reopen();
  } catch (const Error& error) {
    ClearTree();
    TellWithNumber(error);
    return kNoNode;
  }
  return BuildTreeOfBase(downloaded);
}

/// @return the first downloaded message that the tree shows
NodeId KDVExplorer::BuildTreeOfBase(const std::vector<std::int32_t>& downloaded) {
  const LongWork work(Progress_);
  ClearTree();
  NodeId first = kNoNode;
  try {
    BuiltTree built = ReadTree();
    first = MarkDownloaded(built.tree, downloaded);
    const NodeId threads = built.tree.Find(NodeKind::kThreads);
    if (threads != kNoNode) built.tree.SetExpanded(threads, true);  // or the window would show five lines
    tree_->SetEmptyText(FromCp1251(EmptyTreeText(base_.connection(), built)));
    model_->SetTree(std::move(built.tree));
    SetStatus(FromCp1251(built.status));
  } catch (const Error& error) {
    TellWithNumber(error);
  }
  return first;
}

// The rows are given back before the tree is shown.
BuiltTree KDVExplorer::ReadTree() {
  const auto settings = user_settings::ToTreeSettings(user_settings::SettingsForOpening(needs_.settings));
  BaseRows rows(base_.connection(), settings);
  return BuildTree(rows, settings, needs_.clock, *this, *this);
}

void KDVExplorer::ClearTree() {
  model_->SetTree(NodeTree());
  Show({}, {});
  tree_->SetEmptyText({});
}

bool KDVExplorer::Advance(int percent) {
  if (percent != Progress_->value()) {
    Progress_->setValue(percent);
    QGuiApplication::processEvents();
  }
  return !closing_;
}

void KDVExplorer::TellWithNumber(const Error& error) {
  Tell(Cat(error.number(), "\r\n", error.what()));
  ShowDamageHint(*StatBar_, error);
}

void KDVExplorer::Tell(std::string_view trouble) { needs_.dialogs.Tell(this, FromCp1251(trouble)); }

void KDVExplorer::tBar_ButtonClick(const QString& tag, bool archive) {
  if (busy_) return;
  switch (text::LenientLong(ToCp1251(tag))) {
    case 1: return ShowOpenDialog(archive);
    case 2: return needs_.windows.Download(*this);
    case 4: return needs_.windows.About(*this);
    case 5: return SR();
    case 6: return Run(&MessageCommands::FindText);
    case 7: return needs_.windows.Properties(*this);
    default: return;
  }
}

void KDVExplorer::tBar_ButtonMenuClick(const QString& tag) {
  if (tag == QStringLiteral("п1")) return Run(&MessageCommands::FindEmails);
  if (tag == QStringLiteral("п2")) return Run(&MessageCommands::FindText);
}

void KDVExplorer::Run(void (MessageCommands::*command)()) {
  if (busy_) return;
  const BusyMark busy(busy_);
  (*commands_.*command)();
}

// Not marked as busy: when the node goes, the view chooses another, which is to be shown.
void KDVExplorer::RunOnNode(void (MessageCommands::*command)(const QModelIndex&)) {
  if (!busy_) (*commands_.*command)(tree_->currentIndex());
}

void KDVExplorer::Do(MenuCommand command) {
  if (command == MenuCommand::kQuit) {
    close();
    return;
  }
  if (busy_) return;
  switch (command) {
    case MenuCommand::kNewBase: return needs_.windows.NewBase(*this);
    case MenuCommand::kImportPages: return needs_.windows.ImportPages(*this);
    case MenuCommand::kCompact: return needs_.windows.CompactBase(*this);
    case MenuCommand::kCheck: return needs_.windows.CheckBase(*this);
    case MenuCommand::kLargerText: return pane_->body->zoomIn();
    case MenuCommand::kSmallerText: return pane_->body->zoomOut();
    case MenuCommand::kUsualText: return pane_->body->ResetZoom();
    default: return DoOnMessages(command);
  }
}

void KDVExplorer::DoOnMessages(MenuCommand command) {
  switch (command) {
    case MenuCommand::kNextMessage: return reading_->Next();
    case MenuCommand::kPreviousMessage: return reading_->Previous();
    case MenuCommand::kParentMessage: return reading_->Parent();
    case MenuCommand::kNextNew: return reading_->NextNew();
    case MenuCommand::kCopyMessage: return QGuiApplication::clipboard()->setText(pane_->AsText());
    case MenuCommand::kCopyNumber: return QGuiApplication::clipboard()->setText(QString::number(msgKod_));
    case MenuCommand::kExpandBranch: return expansion_->ExpandAll(tree_->currentIndex());
    case MenuCommand::kCollapseBranch: return tree_->collapse(tree_->currentIndex());
    default: return;
  }
}

void KDVExplorer::UpdateCommands() {
  const NodeId node = ChosenNode();
  tree_menu_->SetDeletable(CanDelete(model_->Tree(), node), CanDeleteWithReplies(model_->Tree(), node));
  menu_->SetAvailable(base_.IsOpen(), message_shown_);
}

void KDVExplorer::ShowRecentBases() {
  QStringList paths;
  for (const std::string& path : recent_bases::List(needs_.settings)) paths.append(QStringFromPath(path));
  menu_->SetRecent(paths);
}

void KDVExplorer::tree_NodeClick(const QModelIndex& index) {
  if (busy_) return;
  try {
    const NodeId node = model_->NodeOf(index);
    const bool is_found = model_->Tree().Kind(node) == NodeKind::kFoundMessage;
    Show(ViewOfNode(node), is_found ? FromCp1251(TextToMark(commands_->searched())) : QString());
  } catch (const Error& error) {
    Tell(error.what());
    ShowDamageHint(*StatBar_, error);
  }
}

// Choosing a message shows it; opening it takes the keyboard there.
void KDVExplorer::tree_NodeOpened(const QModelIndex& index) {
  if (IsMessage(model_->Tree().Kind(model_->NodeOf(index)))) pane_->body->setFocus();
}

void KDVExplorer::Show(const MessageView& view, const QString& found) {
  pane_->Show(view, found);
  if (view.status) SetStatus(FromCp1251(*view.status));
  msgKod_ = view.message.value_or(msgKod_);
  message_shown_ = view.message.has_value();
  UpdateCommands();
}

MessageView KDVExplorer::ViewOfNode(NodeId node) {
  const NodeTree& nodes = model_->Tree();
  if (!IsMessage(nodes.Kind(node))) return ViewOfGroup(nodes, node);
  const std::int32_t number = nodes.Number(node);
  const std::optional<MessageRecord> message = ReadMessage(base_.connection(), number);
  return message ? ViewOfMessage(*message) : ViewOfMissingMessage(number);
}

void KDVExplorer::SetStatus(const QString& text) { StatBar_->SetPanel(1, text); }

void KDVExplorer::SetCaption(const QString& caption) {
  setWindowTitle(caption);
  statBarTop_->SetPanel(1, caption);
}
