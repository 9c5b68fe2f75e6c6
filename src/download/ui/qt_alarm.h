#pragma once

#include <utility>

#include <QTimer>

#include "download/alarm.h"

/// An alarm of the thread's event loop.
class QtAlarm : public Alarm {
 public:
  QtAlarm() { timer_.setSingleShot(true); }

  void Set(std::chrono::milliseconds after, std::function<void()> ring) override {
    timer_.disconnect();
    QObject::connect(&timer_, &QTimer::timeout, std::move(ring));
    timer_.start(after);
  }
  void Clear() override { timer_.stop(); }

 private:
  QTimer timer_;
};
