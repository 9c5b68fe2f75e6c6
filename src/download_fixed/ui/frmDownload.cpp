#include "download_fixed/ui/frmDownload.h"

#include "ui/text.h"

namespace {
constexpr int kPanels = 2;
constexpr int kClockTick = 100;  // milliseconds
}  // namespace

frmDownload::frmDownload(const DownloadNeeds& needs, PageSocket& Winsock, QWidget* parent)
    : DownloadWindow("frmDownload", kPanels, needs, parent),
      kind_(needs.base.forum_kind()),
      with_{Records(), needs.inet, *pane_, needs.ini, needs.log, needs.clock, needs.base.host()},
      session_(with_),
      socket_fetch_(Winsock, with_) {
  Form_Load(needs.base);
  Clck_.setInterval(kClockTick);
  connect(&Clck_, &QTimer::timeout, this, [this] { socket_fetch_.Clck_Timer(); });
  connect(pane_->cmdDownload, &QPushButton::clicked, this,
          [this] { session_.cmdDownload_Click(kind_, pane_->Choice()); });
  connect(pane_->cmdCancelDL, &QPushButton::clicked, this, [this] { session_.cmdCancelDL_Click(); });
  connect(pane_->cmdGetFirst, &QPushButton::clicked, this, [this] { session_.cmdGetFirst_Click(); });
  connect(pane_->cmdGetLast, &QPushButton::clicked, this, [this] { session_.cmdGetLast_Click(kind_); });
}

void frmDownload::Form_Load(const MessageBase& base) {
  if (kind_.empty()) return pane_->ShowUnknownForum();
  setWindowTitle(kind_ == "kdv" ? QStringLiteral("Загрузка новых сообщений с форума Velmora")
                                : windowTitle() + FromCp1251(base.title_suffix()));
  pane_->ProposeRange(with_.GetFirst());
}

// The clock ticks while there is something to tell.
std::string frmDownload::FetchPageBySocket(std::string_view host, std::string_view path) {
  Clck_.start();
  std::string page = socket_fetch_.FetchPageBySocket(host, path);
  Clck_.stop();
  return page;
}
