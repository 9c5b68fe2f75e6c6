#pragma once

#include <QCursor>
#include <QGuiApplication>

/// Sets a mark as long as it lives.
class BusyMark {
 public:
  explicit BusyMark(bool& mark) : mark_(mark) { mark_ = true; }
  ~BusyMark() { mark_ = false; }
  BusyMark(const BusyMark&) = delete;
  BusyMark& operator=(const BusyMark&) = delete;

 private:
  bool& mark_;
};

/// Shows the hourglass as long as it lives, also when an error ends the work.
class Hourglass {
 public:
  Hourglass() { QGuiApplication::setOverrideCursor(Qt::WaitCursor); }
  ~Hourglass() { QGuiApplication::restoreOverrideCursor(); }
  Hourglass(const Hourglass&) = delete;
  Hourglass& operator=(const Hourglass&) = delete;
};
