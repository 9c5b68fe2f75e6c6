#include "download_configured/ui/frmDownload2.h"

#include "ui/text.h"

namespace {
constexpr int kPanels = 1;
}

frmDownload2::frmDownload2(const DownloadNeeds& needs, QWidget* parent)
    : DownloadWindow("frmDownload2", kPanels, needs, parent),
      with_{needs.base.forum_kind(), Records(), needs.inet, *pane_, needs.ini, needs.log, needs.clock},
      session_(with_) {
  Form_Load(needs.base);
  connect(pane_->cmdDownload, &QPushButton::clicked, this, [this] { session_.cmdDownload_Click(pane_->Choice()); });
  connect(pane_->cmdCancelDL, &QPushButton::clicked, this, [this] { session_.cmdCancelDL_Click(); });
  connect(pane_->cmdGetFirst, &QPushButton::clicked, this, [this] { session_.cmdGetFirst_Click(); });
  connect(pane_->cmdGetLast, &QPushButton::clicked, this, [this] { session_.cmdGetLast_Click(); });
}

void frmDownload2::Form_Load(const MessageBase& base) {
  if (with_.kind.empty()) return pane_->ShowUnknownForum();
  setWindowTitle(windowTitle() + FromCp1251(base.title_suffix()));
  pane_->ProposeRange(with_.GetFirst());
}
