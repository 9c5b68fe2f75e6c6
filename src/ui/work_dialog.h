#pragma once

#include <functional>

#include <QDialog>
#include <QElapsedTimer>
#include <QLabel>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QStringList>

#include "base/progress.h"

/// What long work has come to.
struct WorkReport {
  QString summary;
  QStringList lines;  // what is worth a line each; the user can copy them
};

/// A window over another that carries out long work, shows how far it is, and what came of it. The windows stay
/// alive meanwhile; Esc, the button "Остановить" and closing the window ask the work to stop.
class WorkDialog : public QDialog, protected Progress {
  Q_OBJECT
 public:
  /// Long work. @throws Error, which is shown in the place of a report
  using Work = std::function<WorkReport(Progress&)>;

  WorkDialog(const QString& title, QWidget* parent);

  /// Carries the work out and returns when its report is on show.
  /// @param doing  a sentence that stands there meanwhile
  void Run(const QString& doing, const Work& work);
  /// The same as soon as the window is on the screen.
  void RunWhenShown(const QString& doing, Work work);

 public slots:
  /// Asks the running work to stop; closes the window when there is none.
  void reject() override;

 protected:
  void showEvent(QShowEvent* event) override;
  /// Puts controls above what the work shows; they are disabled while it runs.
  void SetTop(QWidget* top);
  /// Puts a button in front of the others; it is disabled while work runs.
  void AddButton(QPushButton* button);
  /// Shows a sentence without having worked.
  void ShowStatus(const QString& text) { lblStatus_->setText(text); }

 private:
  bool Advance(int percent) override;
  void AddControls();
  void ShowRunning(bool running);
  void Show(const WorkReport& report);
  void FitHeight();
  void CopyAll() const;

  bool running_ = false, stopped_ = false;
  QElapsedTimer since_events_;
  QWidget* top_ = nullptr;
  QPushButton* button_ = nullptr;
  QLabel* lblStatus_;
  QProgressBar* bar_;
  QPlainTextEdit* txtDetails_;
  QPushButton *cmdCopy_, *cmdStop_, *cmdClose_;
};
