#pragma once

#include <QProgressBar>

#include "ui/busy.h"

/// Shows the hourglass and a progress bar as long as it lives.
class LongWork {
 public:
  explicit LongWork(QProgressBar* bar) : bar_(bar) {
    bar_->setValue(0);
    bar_->show();
  }
  ~LongWork() { bar_->hide(); }
  LongWork(const LongWork&) = delete;
  LongWork& operator=(const LongWork&) = delete;

 private:
  const Hourglass hourglass_;
  QProgressBar* bar_;
};
