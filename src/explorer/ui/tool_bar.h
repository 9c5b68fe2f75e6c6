#pragma once

#include <QToolBar>

/// The tool bar `tBar`. Its buttons are counted from 1, separators included; each has a tag that says
/// what it does, and so has each entry of a button's drop-down menu.
class ToolBar : public QToolBar {
  Q_OBJECT
 public:
  explicit ToolBar(QWidget* parent);

  /// Buttons that need a base are disabled until there is one.
  void SetBaseOpen(bool open);

 signals:
  /// @param archive  the button АРХИВ, which has the tag of the button Открыть
  void ButtonClick(const QString& tag, bool archive);
  void ButtonMenuClick(const QString& tag);
  void ExportMSG_Click();

 protected:
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void AddButtons();
  void AddMenu(QAction* button);
  void MeasureTexts();
  void FitTexts();

  int width_with_texts_ = 0;
};
