#include "download/ui/download_pane.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QGridLayout>
#include <QHeaderView>
#include <QScrollBar>
#include <QShortcut>
#include <QSplitter>
#include <QTimer>
#include <QVBoxLayout>

#include "base/cat.h"
#include "ui/icons.h"
#include "ui/text.h"
#include "ui/tool_tip.h"

namespace {

constexpr int kIconSize = 16, kMargin = 9, kSpacing = 6;  // pixels
constexpr int kSubject = row_column::kSubject;            // the column that takes what room is left
constexpr int kRetryPause = 1000;                         // milliseconds

QPushButton* NewButton(const char* name, const char* text, const char* tip) {
  auto* button = Named<QPushButton>(name, QString::fromUtf8(text));
  button->setToolTip(QString::fromUtf8(tip));
  return button;
}

/// The small button beside a box that fills it in.
QPushButton* FillButton(const char* name, const char* what) {
  QPushButton* button = NewButton(name, "?", what);
  button->setAccessibleName(QString::fromUtf8(what));
  button->setFixedWidth(button->sizeHint().height());
  return button;
}

QLineEdit* NumberBox(const char* name, const char* accessible_name) {
  auto* box = Named<QLineEdit>(name);
  box->setAccessibleName(QString::fromUtf8(accessible_name));
  box->setFixedWidth(box->fontMetrics().horizontalAdvance(QStringLiteral("000000000000")));
  return box;
}

}  // namespace

DownloadPane::DownloadPane(int panels, Dialogs& dialogs, QWidget* parent) : QWidget(parent), dialogs_(dialogs) {
  AddRangeControls();
  AddList();
  AddReports(panels);
  LayOut();
  SetTabOrder();
  cmdCancelDL->setEnabled(false);
  chkAuto_->setChecked(true);
  UpdateBoxes();
  cmdDownload->setFocus();
}

void DownloadPane::AddRangeControls() {
  chkManual_ = Named<QRadioButton>("chkManual", QStringLiteral("Скачать сообщения с"));
  chkAuto_ =
      Named<QRadioButton>("chkAuto", QStringLiteral("Нифига не понял... Хочу просто скачать все новые сообщения"));
  txtBegin_ = NumberBox("txtBegin", "Номер первого сообщения");
  txtEnd_ = NumberBox("txtEnd", "Номер последнего сообщения");
  lblEnd_ = Named<QLabel>("lblEnd", QStringLiteral("по"));
  lblEnd_->setBuddy(txtEnd_);
  cmdGetFirst = FillButton("cmdGetFirst", "Последнее сообщение в базе");
  cmdGetLast = FillButton("cmdGetLast", "Последнее сообщение на форуме");
  cmdDownload = NewButton("cmdDownload", "&Загрузить", "Загрузить сообщения в базу");
  cmdDownload->setIcon(Icon(IconName::kDownload));
  cmdDownload->setDefault(true);
  cmdCancelDL = NewButton("cmdCancelDL", "&Остановить", "Закончить текущее сообщение и остановиться");
  cmdCancelDL->setIcon(Icon(IconName::kStop));
  cmdClose = NewButton("cmdClose", "За&крыть", "Закрыть окно (Esc)");
  txtHint_ = Named<QLineEdit>("txtHint");
  txtHint_->setAccessibleName(QStringLiteral("Подсказка"));
  txtHint_->setReadOnly(true);
  connect(chkManual_, &QRadioButton::toggled, this, &DownloadPane::UpdateBoxes);
}

void DownloadPane::AddList() {
  rows_ = new SessionRows(this);
  lvDownload_ = Named<QTreeView>("lvDownload");
  lvDownload_->setAccessibleName(QStringLiteral("Сообщения этой загрузки"));
  lvDownload_->setModel(rows_);
  lvDownload_->setRootIsDecorated(false);
  lvDownload_->setUniformRowHeights(true);
  lvDownload_->setAllColumnsShowFocus(true);
  lvDownload_->setIconSize({kIconSize, kIconSize});
  const char* const widest[] = {"0000000000", "00000000",        "Автор с ником",
                                "",           "00:00:00 000000", "Пропущен : уже есть  "};
  for (int column = 0; column < rows_->columnCount(); ++column)
    lvDownload_->setColumnWidth(column, fontMetrics().horizontalAdvance(QString::fromUtf8(widest[column])) + 12);
  lvDownload_->header()->setStretchLastSection(false);
  lvDownload_->header()->setSectionResizeMode(kSubject, QHeaderView::Stretch);
  connect(lvDownload_, &QTreeView::doubleClicked, this, &DownloadPane::OpenRow);
  // Shortcuts, so that the key does not reach the window's default button.
  for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter})
    connect(new QShortcut(key, lvDownload_, nullptr, nullptr, Qt::WidgetShortcut), &QShortcut::activated, this,
            [this] { OpenRow(lvDownload_->currentIndex()); });
}

void DownloadPane::AddReports(int panels) {
  txtLog_ = Named<QPlainTextEdit>("txtLog");
  txtLog_->setAccessibleName(QStringLiteral("Журнал загрузки"));
  txtLog_->setReadOnly(true);
  txtLog_->setUndoRedoEnabled(false);
  txtLog_->setMaximumBlockCount(kLogLines);
  txtLog_->setTabChangesFocus(true);
  txtLog_->setLineWrapMode(QPlainTextEdit::NoWrap);
  dlProgress_ = Named<QProgressBar>("dlProgress");
  dlProgress_->setAccessibleName(QStringLiteral("Ход загрузки"));
  dlProgress_->setRange(0, 100);
  dlProgress_->setValue(0);
  dlBar_ = new StatusPanels(QStringLiteral("dlBar"), panels, this);
  dlBar_->setAccessibleName(QStringLiteral("Состояние"));
}

void DownloadPane::LayOut() {
  auto* range = new QHBoxLayout;
  range->setSpacing(kSpacing);
  for (QWidget* control :
       {static_cast<QWidget*>(chkManual_), static_cast<QWidget*>(txtBegin_), static_cast<QWidget*>(cmdGetFirst),
        static_cast<QWidget*>(lblEnd_), static_cast<QWidget*>(txtEnd_), static_cast<QWidget*>(cmdGetLast)})
    range->addWidget(control);
  range->addStretch(1);

  auto* top = new QGridLayout;
  top->setHorizontalSpacing(2 * kSpacing);
  top->setVerticalSpacing(kSpacing);
  top->addLayout(range, 0, 0);
  top->addWidget(chkAuto_, 1, 0);
  top->addWidget(txtHint_, 2, 0);
  top->addWidget(cmdDownload, 0, 1);
  top->addWidget(cmdCancelDL, 1, 1);
  top->addWidget(cmdClose, 2, 1);
  top->setColumnStretch(0, 1);

  auto* reports = new QSplitter(Qt::Vertical);
  reports->addWidget(lvDownload_);
  reports->addWidget(txtLog_);
  reports->setChildrenCollapsible(false);
  reports->setStretchFactor(0, 3);
  reports->setStretchFactor(1, 1);

  auto* column = new QVBoxLayout;
  column->setContentsMargins(kMargin, kMargin, kMargin, kSpacing);
  column->setSpacing(kSpacing);
  column->addLayout(top);
  column->addWidget(reports, 1);
  column->addWidget(dlProgress_);

  auto* all = new QVBoxLayout(this);
  all->setContentsMargins(0, 0, 0, 0);
  all->setSpacing(0);  // the status bar reaches from border to border
  all->addLayout(column, 1);
  all->addWidget(dlBar_);
}

void DownloadPane::SetTabOrder() {
  QWidget* before = chkManual_;
  for (QWidget* control :
       std::initializer_list<QWidget*>{txtBegin_, cmdGetFirst, txtEnd_, cmdGetLast, chkAuto_, cmdDownload, cmdCancelDL,
                                       txtHint_, cmdClose, lvDownload_, txtLog_}) {
    setTabOrder(before, control);
    before = control;
  }
}

void DownloadPane::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::PaletteChange) UpdateBoxes();
}

// A range that is chosen by hand stands on a window's background, any other on that of a button.
void DownloadPane::UpdateBoxes() {
  const bool manual = chkManual_->isChecked() && chkManual_->isEnabled();
  for (QLineEdit* box : {txtBegin_, txtEnd_}) {
    box->setEnabled(manual);
    QPalette painted = box->palette();
    painted.setColor(QPalette::Base, palette().color(QPalette::Active, manual ? QPalette::Base : QPalette::Button));
    box->setPalette(painted);
  }
}

RangeChoice DownloadPane::Choice() const {
  return {
      .automatic = !chkManual_->isChecked(), .begin = ToCp1251(txtBegin_->text()), .end = ToCp1251(txtEnd_->text())};
}

void DownloadPane::ProposeRange(std::int32_t last_in_base) {
  SetBegin(Cat(last_in_base));
  SetEnd(Cat(std::int64_t{last_in_base} + kProposedNumbers));
}

void DownloadPane::ShowUnknownForum() {
  SetHint(kUnknownForumHint);
  for (QWidget* control : std::initializer_list<QWidget*>{cmdGetFirst, cmdGetLast, chkManual_, chkAuto_})
    control->setEnabled(false);
  UpdateBoxes();
}

void DownloadPane::SetPanel(int panel, std::string_view text) { dlBar_->SetPanel(panel, FromCp1251(text)); }

void DownloadPane::SetHint(std::string_view text) {
  txtHint_->setText(FromCp1251(text));
  txtHint_->setCursorPosition(0);
  txtHint_->setToolTip(PlainToolTip(txtHint_->text()));
}

void DownloadPane::SetBegin(std::string_view text) { txtBegin_->setText(FromCp1251(text)); }
void DownloadPane::SetEnd(std::string_view text) { txtEnd_->setText(FromCp1251(text)); }
void DownloadPane::ClearLog() { txtLog_->clear(); }

void DownloadPane::AppendLog(std::string_view text) {
  QTextCursor end(txtLog_->document());
  end.movePosition(QTextCursor::End);
  end.insertText(FromCp1251(text).replace(QLatin1String("\r\n"), QLatin1String("\n")));
  txtLog_->setTextCursor(end);
  txtLog_->horizontalScrollBar()->setValue(0);  // a long line is read from its beginning
}

void DownloadPane::SetProgress(int percent) { dlProgress_->setValue(percent); }
void DownloadPane::ClearRows() { rows_->Clear(); }
void DownloadPane::SortRowsNewestFirst() { rows_->SortNewestFirst(); }

// The list follows the newest row until the user scrolls away from it.
void DownloadPane::AddRow(std::string_view text) {
  const QScrollBar* place = lvDownload_->verticalScrollBar();
  const bool follows = !rows_->IsNewestFirst() && place->value() == place->maximum();
  rows_->Add(text);
  if (follows) lvDownload_->scrollToBottom();
}

void DownloadPane::SetCell(int column, std::string_view text) { rows_->SetCell(column, text); }
void DownloadPane::SetIcon(int icon) { rows_->SetIcon(icon); }
void DownloadPane::SetColour(std::uint32_t bgr) { rows_->SetColour(bgr); }

void DownloadPane::ScrollToRow() {
  if (const QModelIndex row = rows_->LastAdded(); row.isValid()) lvDownload_->scrollTo(row);
}

QPushButton* DownloadPane::ButtonOf(SessionButton button) const {
  switch (button) {
    case SessionButton::cmdDownload: return cmdDownload;
    case SessionButton::cmdGetLast: return cmdGetLast;
    case SessionButton::cmdCancelDL: return cmdCancelDL;
  }
  return cmdDownload;
}

// The keyboard goes from the button that started a session to the one that stops it. At the end it goes to the list:
// a key meant for the stop button starts nothing anew.
void DownloadPane::Enable(SessionButton button, bool enabled) {
  QPushButton* const control = ButtonOf(button);
  if (!enabled && control != cmdCancelDL) focus_goes_to_cancel_ |= control->hasFocus();
  if (enabled && control == cmdDownload && cmdCancelDL->hasFocus()) lvDownload_->setFocus();
  control->setEnabled(enabled);
  if (enabled && control == cmdCancelDL && std::exchange(focus_goes_to_cancel_, false)) cmdCancelDL->setFocus();
}

bool DownloadPane::IsEnabled(SessionButton button) const { return ButtonOf(button)->isEnabled(); }

void DownloadPane::SetHourglass(bool hourglass) {
  if (!hourglass)
    hourglass_.reset();
  else if (!hourglass_)
    hourglass_.emplace();
}

void DownloadPane::ProcessEvents() { QCoreApplication::processEvents(); }
void DownloadPane::WaitForEvents() { QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents); }

void DownloadPane::PauseBeforeRetry() {
  QEventLoop pause;
  QTimer::singleShot(kRetryPause, &pause, &QEventLoop::quit);
  connect(cmdCancelDL, &QPushButton::clicked, &pause, &QEventLoop::quit);
  pause.exec();
}

void DownloadPane::Close() { window()->close(); }

void DownloadPane::ShowMessage(MessageIcon icon, std::string_view text) {
  dialogs_.Tell(window(), FromCp1251(text), icon == MessageIcon::kCritical ? BoxIcon::kError : BoxIcon::kNone);
}

void DownloadPane::OpenRow(const QModelIndex& row) {
  if (!row.isValid()) return;
  if (const auto number = rows_->Number(row)) emit RowOpened(*number);
}
