#include "ui/status_panels.h"

#include <QPaintEvent>
#include <QPainter>
#include <QStyle>

#include "ui/tool_tip.h"

namespace {
constexpr int kSideMargin = 4;  // pixels
}

StatusPanel::StatusPanel(QWidget* parent) : QLabel(parent) {
  setTextFormat(Qt::PlainText);
  setContentsMargins(kSideMargin, 0, kSideMargin, 0);
}

void StatusPanel::SetText(const QString& text) {
  setText(text);
  setToolTip(PlainToolTip(text));
}

QSize StatusPanel::minimumSizeHint() const {
  return {fontMetrics().averageCharWidth() * 8, fontMetrics().height() + 2};
}

QSize StatusPanel::sizeHint() const { return minimumSizeHint(); }

void StatusPanel::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  const QRect room = contentsRect();
  const QString shown = fontMetrics().elidedText(text().simplified(), Qt::ElideRight, room.width());
  style()->drawItemText(&painter, room, Qt::AlignLeft | Qt::AlignVCenter, palette(), isEnabled(), shown,
                        foregroundRole());
}

StatusPanels::StatusPanels(const QString& name, int panels, QWidget* parent) : QStatusBar(parent) {
  setObjectName(name);
  setSizeGripEnabled(false);
  for (int number = 1; number <= panels; ++number) {
    auto* panel = new StatusPanel(this);
    panel->setObjectName(QStringLiteral("%1_panel%2").arg(name).arg(number));
    addWidget(panel, 1);
    panels_.push_back(panel);
  }
}

void StatusPanels::SetPanel(int number, const QString& text) {
  panels_.at(static_cast<std::size_t>(number - 1))->SetText(text);
}

QString StatusPanels::Panel(int number) const { return panels_.at(static_cast<std::size_t>(number - 1))->text(); }
