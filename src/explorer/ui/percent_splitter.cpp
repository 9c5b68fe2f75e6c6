#include "explorer/ui/percent_splitter.h"

#include <cmath>

PercentSplitter::PercentSplitter(QWidget* parent) : QSplitter(Qt::Vertical, parent) {
  setChildrenCollapsible(false);
  connect(this, &QSplitter::splitterMoved, this, &PercentSplitter::RememberPercent);  // only the user moves it so
}

void PercentSplitter::SetPanes(QWidget* upper, QWidget* lower) {
  for (QWidget* pane : {upper, lower}) {
    pane->setMinimumHeight(kLowestPane);
    addWidget(pane);
  }
  handle(1)->setObjectName(QStringLiteral("picSplitter"));
}

void PercentSplitter::SetPercent(double percent) {
  percent_ = percent;
  PlaceBorder();
}

void PercentSplitter::resizeEvent(QResizeEvent* event) {
  QSplitter::resizeEvent(event);
  PlaceBorder();
}

void PercentSplitter::PlaceBorder() {
  const int room = height() - handleWidth();
  const int upper = static_cast<int>(std::lround(room * percent_ / 100));
  setSizes({upper, room - upper});
}

void PercentSplitter::RememberPercent() {
  const int room = height() - handleWidth();
  if (room > 0) percent_ = 100.0 * sizes().front() / room;
}
