#pragma once

#include <string>
#include <string_view>

#include <QTimer>

#include "download/page_socket.h"
#include "download/ui/download_window.h"
#include "download_fixed/fixed_session.h"
#include "download_fixed/socket_fetch.h"

/// The download window of the forums whose addresses the program builds itself.
class frmDownload : public DownloadWindow {
  Q_OBJECT
 public:
  /// @param Winsock  the other way to a page; outlives the window
  /// @throws Error when the base cannot be read or written to
  frmDownload(const DownloadNeeds& needs, PageSocket& Winsock, QWidget* parent = nullptr);

  /// A page over a plain connection, its state in the status bar; no session asks for it.
  std::string FetchPageBySocket(std::string_view host, std::string_view path);

 private:
  bool MayClose() override { return session_.MayClose(); }
  void Form_Load(const MessageBase& base);

  const std::string kind_;
  const FixedDownload with_;
  FixedSession session_;
  SocketFetch socket_fetch_;
  QTimer Clck_;
};
