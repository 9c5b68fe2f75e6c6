#include "typist.h"

#include <QAccessible>
#include <QKeyEvent>
#include <QLabel>
#include <QTest>
#include <QTimer>

namespace {
constexpr int kMilliseconds = 5;  // between two looks
constexpr int kMostLooks = 12'000;

// Without a screen there is no window manager, which gives the keys to the window below one that closes.
void ActivateSomeWindow() {
  if (QApplication::activeWindow() != nullptr || QApplication::activeModalWidget() != nullptr) return;
  for (QWidget* window : QApplication::topLevelWidgets())
    if (window->inherits("QMainWindow") && window->isVisible()) window->activateWindow();
}

}  // namespace

QWidget* Typist::Top() {
  if (QWidget* popup = QApplication::activePopupWidget()) return popup;
  if (QWidget* modal = QApplication::activeModalWidget()) return modal;
  return QApplication::activeWindow();
}

bool Typist::IsTop(const char* window) {
  return Top() != nullptr && Top()->isActiveWindow() && Top()->objectName() == QLatin1String(window);
}

void Typist::Press(Qt::Key key, Qt::KeyboardModifiers modifiers) {
  QWidget* focus = QApplication::focusWidget();
  QTest::keyClick(focus != nullptr && focus->window() == Top() ? focus : Top(), key, modifiers);
}

// QTest knows the keys of Latin letters alone.
void Typist::Type(const QString& text) {
  for (const QChar letter : text) {
    QKeyEvent press(QEvent::KeyPress, Qt::Key_unknown, Qt::NoModifier, letter);
    QCoreApplication::sendEvent(QApplication::focusWidget(), &press);
  }
}

void Typist::TabTo(const char* control) {
  for (int i = 0; i < 50; ++i) {
    const QWidget* focus = QApplication::focusWidget();
    if (focus != nullptr && focus->objectName() == QLatin1String(control)) return;
    Press(Qt::Key_Tab);
  }
  throw std::runtime_error(std::string("Tab never comes to ") + control);
}

void Typist::Wait() { QTimer::singleShot(kMilliseconds, this, &Typist::Look); }

void Typist::Look() {
  if (steps_.empty()) return;
  ActivateSomeWindow();
  if (Top() == nullptr || !Top()->isActiveWindow() || !steps_.front().condition()) {
    if (++looks_ < kMostLooks) return Wait();
    stuck_ = steps_.front().waiting_for + ", but on top is " + (Top() ? Top()->objectName().toStdString() : "nothing");
    for (const QLabel* label : Top() ? Top()->findChildren<QLabel*>() : QList<QLabel*>())
      stuck_ += "; " + label->text().toStdString();
    return QCoreApplication::exit(1);
  }
  const Step step = std::move(steps_.front());
  steps_.pop_front();
  looks_ = 0;
  Wait();  // the action may hold a window open until later steps close it
  try {
    step.action();
  } catch (const std::exception& error) {  // Qt lets none through
    stuck_ = step.waiting_for + ": " + error.what();
    steps_.clear();
    QCoreApplication::exit(1);
  }
}

std::vector<std::string> NamelessControls(const QWidget& window) {
  std::vector<std::string> nameless;
  for (QWidget* control : window.findChildren<QWidget*>()) {
    if (!control->isVisible() || control->focusPolicy() == Qt::NoFocus) continue;
    QAccessibleInterface* seen = QAccessible::queryAccessibleInterface(control);
    if (seen != nullptr && seen->text(QAccessible::Name).isEmpty())
      nameless.push_back(
          (control->objectName() + QLatin1Char(' ') + QLatin1String(control->metaObject()->className())).toStdString());
  }
  return nameless;
}
