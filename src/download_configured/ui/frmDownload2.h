#pragma once

#include "download/ui/download_window.h"
#include "download_configured/configured_session.h"

/// The download window of the forums whose addresses stand in forum.ini.
class frmDownload2 : public DownloadWindow {
  Q_OBJECT
 public:
  /// @throws Error when the base cannot be read or written to
  explicit frmDownload2(const DownloadNeeds& needs, QWidget* parent = nullptr);

 private:
  bool MayClose() override { return session_.MayClose(); }
  void Form_Load(const MessageBase& base);

  const ConfiguredDownload with_;
  ConfiguredSession session_;
};
