#pragma once

#include <utility>

#include "download/alarm.h"

/// An alarm that rings when a test says so.
class HandAlarm : public Alarm {
 public:
  void Set(std::chrono::milliseconds, std::function<void()> ring) override { ring_ = std::move(ring); }
  void Clear() override { ring_ = {}; }
  void Ring() {
    if (const auto ring = std::exchange(ring_, {})) ring();
  }

 private:
  std::function<void()> ring_;
};
