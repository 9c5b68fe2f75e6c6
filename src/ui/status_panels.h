#pragma once

#include <vector>

#include <QLabel>
#include <QStatusBar>

/// One line that never asks for the width of its text: what does not fit ends in "…" and stands
/// whole in the tool tip. text() is always the whole text; line breaks show as blanks.
class StatusPanel : public QLabel {
  Q_OBJECT
 public:
  explicit StatusPanel(QWidget* parent = nullptr);
  void SetText(const QString& text);

  QSize minimumSizeHint() const override;
  QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
};

/// A status bar divided into panels that share its width equally.
class StatusPanels : public QStatusBar {
  Q_OBJECT
 public:
  StatusPanels(const QString& name, int panels, QWidget* parent = nullptr);
  /// @param number  from 1
  void SetPanel(int number, const QString& text);
  QString Panel(int number) const;

 private:
  std::vector<StatusPanel*> panels_;
};
