#include "download/ui/download_window.h"

#include <QCoreApplication>
#include <QScreen>
#include <QVBoxLayout>

namespace {
constexpr QSize kFirstSize(960, 640);  // pixels
constexpr int kPaintingPause = 40;     // milliseconds
}  // namespace

DownloadWindow::DownloadWindow(const char* name, int panels, const DownloadNeeds& needs, QWidget* parent)
    : QDialog(parent),
      pane_(new DownloadPane(panels, needs.dialogs, this)),
      clock_(needs.clock),
      rows_(needs.base),
      records_(rows_, needs.alarm, [this](const SettledRows& settled) { TakeNote(settled); }) {
  setObjectName(QString::fromLatin1(name));
  setWindowTitle(QStringLiteral("Загрузка новых сообщений"));
  setWindowFlag(Qt::WindowMaximizeButtonHint);
  setModal(true);
  auto* all = new QVBoxLayout(this);
  all->setContentsMargins(0, 0, 0, 0);
  all->addWidget(pane_);
  resize(kFirstSize.boundedTo(screen()->availableSize()));
  next_painting_.setSingleShot(true);
  connect(&next_painting_, &QTimer::timeout, this, [this] {
    since_painting_.invalidate();
    QCoreApplication::postEvent(this, new QEvent(QEvent::UpdateRequest));
  });
  connect(pane_->cmdClose, &QPushButton::clicked, this, &DownloadWindow::close);
  connect(pane_, &DownloadPane::RowOpened, this, &DownloadWindow::OpenRow);
}

// Each number changes the whole list, and a fast forum sends hundreds in a second: painting them all would take most
// of a session's time.
bool DownloadWindow::event(QEvent* event) {
  if (event->type() != QEvent::UpdateRequest) return QDialog::event(event);
  if (since_painting_.isValid() && !since_painting_.hasExpired(kPaintingPause)) {
    if (!next_painting_.isActive()) next_painting_.start(kPaintingPause);
    return true;
  }
  since_painting_.start();
  return QDialog::event(event);
}

// Esc and the frame's button both come here.
void DownloadWindow::reject() {
  if (MayClose()) QDialog::reject();
}

void DownloadWindow::OpenRow(std::int32_t number) {
  if (!pane_->IsEnabled(SessionButton::cmdDownload) || !records_.msgExist(number)) return;
  to_read_ = number;
  close();
}

void DownloadWindow::TakeNote(const SettledRows& settled) {
  stored_.insert(stored_.end(), settled.stored.begin(), settled.stored.end());
  lost_.insert(lost_.end(), settled.lost.begin(), settled.lost.end());
  for (const LostRow& row : settled.lost) {
    pane_->MarkNotStored(row.number);
    TellNotStored(*pane_, clock_, row.number, row.reason);
  }
}
