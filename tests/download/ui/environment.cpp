#include <gtest/gtest.h>

#include "support/offscreen_app.h"

namespace {

/// Windows without a screen, and a network without this machine's proxies.
class DownloadApp : public OffscreenApp {
 public:
  void SetUp() override {
    for (const char* name : {"http_proxy", "https_proxy", "all_proxy", "HTTP_PROXY", "HTTPS_PROXY", "ALL_PROXY"})
      qunsetenv(name);
    OffscreenApp::SetUp();
  }
};

[[maybe_unused]] const auto* const kApp = testing::AddGlobalTestEnvironment(new DownloadApp);

}  // namespace
