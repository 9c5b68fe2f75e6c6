#include <gtest/gtest.h>

#include <QCoreApplication>
#include <memory>

namespace {

/// The event loop, and a network without this machine's proxies.
class CoreApp : public testing::Environment {
 public:
  void SetUp() override {
    for (const char* name : {"http_proxy", "https_proxy", "all_proxy", "HTTP_PROXY", "HTTPS_PROXY", "ALL_PROXY"})
      qunsetenv(name);
    app_ = std::make_unique<QCoreApplication>(argc_, argv_);
  }
  void TearDown() override { app_.reset(); }

 private:
  char name_[5] = "test";
  char* argv_[2] = {name_, nullptr};
  int argc_ = 1;
  std::unique_ptr<QCoreApplication> app_;
};

[[maybe_unused]] const auto* const kApp = testing::AddGlobalTestEnvironment(new CoreApp);

}  // namespace
