#pragma once

#include <gtest/gtest.h>

#include <memory>

#include <QApplication>

/// The application that widgets need, without a screen. A test program of windows registers it once:
///   const auto* const app = testing::AddGlobalTestEnvironment(new OffscreenApp);
class OffscreenApp : public testing::Environment {
 public:
  void SetUp() override {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    app_ = std::make_unique<QApplication>(argc_, argv_);
  }
  void TearDown() override { app_.reset(); }

 private:
  char name_[5] = "test";
  char* argv_[2] = {name_, nullptr};
  int argc_ = 1;
  std::unique_ptr<QApplication> app_;
};
