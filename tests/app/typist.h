#pragma once

#include <deque>
#include <functional>
#include <string>

#include <QApplication>
#include <QKeySequence>
#include <QObject>
#include <QWidget>

/// A user who has a keyboard and no mouse: types when what he waits for has come, in whatever window is on top. Steps
/// run in their order, inside the event loops of the windows that they open.
class Typist : public QObject {
 public:
  using Condition = std::function<bool()>;
  using Action = std::function<void()>;

  void When(std::string waiting_for, Condition condition, Action action) {
    steps_.push_back({std::move(waiting_for), std::move(condition), std::move(action)});
  }
  /// To be called before the program's event loop. A step that nothing brings about ends the program.
  void Begin() { Wait(); }
  /// What was waited for in vain; empty when all steps were taken.
  const std::string& stuck() const { return stuck_; }
  bool IsDone() const { return steps_.empty(); }

  /// Presses a key in the window on top.
  static void Press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
  static void Type(const QString& text);
  /// Presses Tab until the control of this name has the focus.
  static void TabTo(const char* control);
  /// The window that takes the keys; null when there is none.
  static QWidget* Top();
  static bool IsTop(const char* window);

 private:
  struct Step {
    std::string waiting_for;
    Condition condition;
    Action action;
  };
  void Wait();
  void Look();

  std::deque<Step> steps_;
  int looks_ = 0;
  std::string stuck_;
};

/// The controls of a window that can get the focus and that a screen reader has no name for: their object names.
std::vector<std::string> NamelessControls(const QWidget& window);
