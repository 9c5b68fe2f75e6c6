#pragma once

#include <QSplitter>

/// Two panes, one above the other. The border between them is kept as a percentage of the height,
/// however the window is resized.
class PercentSplitter : public QSplitter {
  Q_OBJECT
 public:
  static constexpr int kLowestPane = 67;  // pixels; neither pane becomes lower

  explicit PercentSplitter(QWidget* parent = nullptr);
  /// Takes the panes; to be called once.
  void SetPanes(QWidget* upper, QWidget* lower);
  /// @param percent  share of the upper pane, 0 to 100
  void SetPercent(double percent);
  double Percent() const { return percent_; }

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  void PlaceBorder();
  void RememberPercent();

  double percent_ = 50;
};
