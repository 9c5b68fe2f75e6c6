#include "ui/work_dialog.h"

#include <utility>

#include <QClipboard>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QVBoxLayout>

#include "base/error.h"
#include "ui/busy.h"
#include "ui/controls.h"
#include "ui/text.h"

namespace {
constexpr int kMillisecondsBetweenEvents = 40;  // the eye takes this for at once
constexpr int kWidth = 84, kLines = 10;         // of the window and of the list, in characters
}  // namespace

WorkDialog::WorkDialog(const QString& title, QWidget* parent) : QDialog(parent) {
  setWindowTitle(title);
  setWindowModality(Qt::WindowModal);
  AddControls();
  connect(cmdCopy_, &QPushButton::clicked, this, &WorkDialog::CopyAll);
  connect(cmdStop_, &QPushButton::clicked, this, &WorkDialog::reject);
  connect(cmdClose_, &QPushButton::clicked, this, &WorkDialog::reject);
  ShowRunning(false);
  Show({});
}

void WorkDialog::AddControls() {
  lblStatus_ = Named<QLabel>("lblStatus");
  lblStatus_->setTextFormat(Qt::PlainText);
  lblStatus_->setWordWrap(true);
  lblStatus_->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  lblStatus_->setFocusPolicy(Qt::NoFocus);
  lblStatus_->setMinimumWidth(fontMetrics().averageCharWidth() * kWidth);
  bar_ = Named<QProgressBar>("bar");
  bar_->setAccessibleName(QStringLiteral("Ход работы"));
  txtDetails_ = Named<QPlainTextEdit>("txtDetails");
  txtDetails_->setReadOnly(true);
  txtDetails_->setAccessibleName(QStringLiteral("Подробности"));
  txtDetails_->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  txtDetails_->setTabChangesFocus(true);
  txtDetails_->setMinimumHeight(fontMetrics().lineSpacing() * kLines);
  cmdCopy_ = Named<QPushButton>("cmdCopy", QStringLiteral("&Копировать"));
  cmdCopy_->setToolTip(QStringLiteral("Скопировать итог и весь список"));
  cmdStop_ = Named<QPushButton>("cmdStop", QStringLiteral("&Остановить"));
  cmdClose_ = Named<QPushButton>("cmdClose", QStringLiteral("&Закрыть"));
  for (QPushButton* button : {cmdCopy_, cmdStop_, cmdClose_}) button->setAutoDefault(false);

  auto* buttons = new QHBoxLayout;
  buttons->setObjectName(QStringLiteral("buttons"));
  buttons->addWidget(cmdCopy_);
  buttons->addStretch(1);
  buttons->addWidget(cmdStop_);
  buttons->addWidget(cmdClose_);
  auto* column = new QVBoxLayout(this);
  column->addWidget(lblStatus_);
  column->addWidget(bar_);
  column->addWidget(txtDetails_, 1);
  column->addLayout(buttons);
}

void WorkDialog::SetTop(QWidget* top) {
  top_ = top;
  static_cast<QVBoxLayout*>(layout())->insertWidget(0, top);
}

void WorkDialog::AddButton(QPushButton* button) {
  constexpr int kBehindTheStretch = 2;
  button_ = button;
  findChild<QHBoxLayout*>(QStringLiteral("buttons"))->insertWidget(kBehindTheStretch, button);
  button->setDefault(true);
}

void WorkDialog::Run(const QString& doing, const Work& work) {
  if (running_) return;
  ShowStatus(doing);
  ShowRunning(true);
  WorkReport report;
  try {
    const BusyMark running(running_);
    report = work(*this);
  } catch (const Error& error) {
    report.summary = FromCp1251(error.what());
  }
  ShowRunning(false);
  Show(report);
}

void WorkDialog::RunWhenShown(const QString& doing, Work work) {
  ShowStatus(doing);
  const auto run = [this, doing, work = std::move(work)] { Run(doing, work); };
  QMetaObject::invokeMethod(this, run, Qt::QueuedConnection);
}

void WorkDialog::reject() {
  if (!running_) return QDialog::reject();
  stopped_ = true;
  cmdStop_->setEnabled(false);
  ShowStatus(QStringLiteral("Останавливаю…"));
}

bool WorkDialog::Advance(int percent) {
  if (percent != bar_->value() || since_events_.hasExpired(kMillisecondsBetweenEvents)) {
    bar_->setValue(percent);
    QGuiApplication::processEvents();
    since_events_.restart();
  }
  return !stopped_;
}

void WorkDialog::ShowRunning(bool running) {
  stopped_ = false;
  bar_->setValue(0);
  bar_->setVisible(running);
  since_events_.restart();
  if (running) Show({lblStatus_->text(), {}});
  if (top_ != nullptr) top_->setEnabled(!running);
  if (button_ != nullptr) button_->setEnabled(!running);
  cmdStop_->setEnabled(running);
  cmdStop_->setVisible(running);
  cmdClose_->setVisible(!running);
  (running ? cmdStop_ : cmdClose_)->setFocus();
}

// A list that is empty takes no room from the sentence above it.
void WorkDialog::Show(const WorkReport& report) {
  ShowStatus(report.summary);
  txtDetails_->setPlainText(report.lines.join(QLatin1Char('\n')));
  txtDetails_->setVisible(!report.lines.isEmpty());
  cmdCopy_->setVisible(!report.lines.isEmpty());
  FitHeight();
}

void WorkDialog::showEvent(QShowEvent* event) {
  QDialog::showEvent(event);
  FitHeight();
}

// Sentences that wrap ask for a height that the window does not give them by itself. It never gets smaller, so that
// it does not jump under the mouse.
void WorkDialog::FitHeight() {
  if (!isVisible()) return;
  layout()->activate();
  const int wanted = layout()->totalHeightForWidth(width());
  setMinimumHeight(wanted);
  if (height() < wanted) resize(width(), wanted);
}

void WorkDialog::CopyAll() const {
  QGuiApplication::clipboard()->setText(lblStatus_->text() + QLatin1Char('\n') + txtDetails_->toPlainText());
}
