#include "ui/dialogs.h"

#include <algorithm>

#include <QFileDialog>
#include <QFontMetrics>
#include <QGridLayout>
#include <QInputDialog>
#include <QMessageBox>
#include <QPushButton>

#include "ui/text.h"

namespace {

const char* const kOk = "OK";
const char* const kCancel = "Отмена";

QMessageBox::Icon QtIcon(BoxIcon icon) {
  switch (icon) {
    case BoxIcon::kNone: return QMessageBox::NoIcon;
    case BoxIcon::kQuestion: return QMessageBox::Question;
    case BoxIcon::kWarning: return QMessageBox::Warning;
    case BoxIcon::kError: return QMessageBox::Critical;
  }
  return QMessageBox::NoIcon;
}

/// For windows with a short text.
int LeastWidth(const QWidget* window) {
  constexpr int kFrameCharacters = 16, kLeastCharacters = 44;
  const QFontMetrics metrics = window->fontMetrics();
  return std::max(metrics.horizontalAdvance(window->windowTitle()) + kFrameCharacters * metrics.averageCharWidth(),
                  kLeastCharacters * metrics.averageCharWidth());
}

const QString kBases = QStringLiteral("Базы сообщений (*.mdb *.MDB *.Mdb);;Все файлы (*)");

std::optional<std::string> ChosenPath(const QString& path) {
  if (path.isEmpty()) return std::nullopt;
  return PathFromQString(path);
}

/// A box but for its buttons.
class Box : public QMessageBox {
 public:
  Box(QWidget* parent, QString text, BoxIcon icon, const QString& title) : QMessageBox(parent) {
    setTextFormat(Qt::PlainText);  // or "<" in a subject would vanish
    setText(text.replace(QLatin1String("\r\n"), QLatin1String("\n")));
    setIcon(QtIcon(icon));
    setWindowTitle(title);
    setTextInteractionFlags(Qt::TextSelectableByMouse);
    KeepWide();
  }

 private:
  /// Wide enough for the title, which a window manager would cut, beside its buttons. The box takes the size of what
  /// it holds and no minimum of its own.
  void KeepWide() {
    auto* grid = static_cast<QGridLayout*>(layout());
    grid->addItem(new QSpacerItem(LeastWidth(this), 0), grid->rowCount(), 0, 1, grid->columnCount());
  }
};

}  // namespace

void QtDialogs::Tell(QWidget* parent, const QString& text, BoxIcon icon, const QString& title) {
  Box box(parent, text, icon, title);
  box.setDefaultButton(box.addButton(kOk, QMessageBox::AcceptRole));
  box.exec();
}

bool QtDialogs::AskOkCancel(QWidget* parent, const QString& text, BoxIcon icon, const QString& title) {
  Box box(parent, text, icon, title);
  QPushButton* ok = box.addButton(kOk, QMessageBox::AcceptRole);
  box.setDefaultButton(ok);
  box.setEscapeButton(box.addButton(kCancel, QMessageBox::RejectRole));
  box.exec();
  return box.clickedButton() == ok;
}

QString QtDialogs::AskLine(QWidget* parent, const QString& prompt, const QString& title) {
  QInputDialog box(parent);
  box.setWindowTitle(title);
  box.setLabelText(prompt);
  box.setOkButtonText(kOk);
  box.setCancelButtonText(kCancel);
  const QSize size = box.sizeHint();
  box.resize(std::max(size.width(), LeastWidth(&box)), size.height());
  return box.exec() == QDialog::Accepted ? box.textValue() : QString();
}

std::optional<std::string> QtDialogs::ChooseBase(QWidget* parent, const std::string& start) {
  return ChosenPath(
      QFileDialog::getOpenFileName(parent, QStringLiteral("Выберите базу сообщений"), QStringFromPath(start), kBases));
}

std::optional<std::string> QtDialogs::ChooseNewBase(QWidget* parent, const std::string& start) {
  return ChosenPath(QFileDialog::getSaveFileName(parent, QStringLiteral("Новая база сообщений"), QStringFromPath(start),
                                                 kBases, nullptr, QFileDialog::DontConfirmOverwrite));
}

std::optional<std::string> QtDialogs::ChooseFolder(QWidget* parent, const QString& title, const std::string& start) {
  return ChosenPath(QFileDialog::getExistingDirectory(parent, title, QStringFromPath(start)));
}

std::vector<std::string> QtDialogs::ChoosePages(QWidget* parent, const std::string& start) {
  const QStringList chosen =
      QFileDialog::getOpenFileNames(parent, QStringLiteral("Страницы форума"), QStringFromPath(start),
                                    QStringLiteral("Страницы (*.html *.htm *.shtml *.asp* *.cgi*);;Все файлы (*)"));
  std::vector<std::string> paths;
  for (const QString& path : chosen) paths.push_back(PathFromQString(path));
  return paths;
}
