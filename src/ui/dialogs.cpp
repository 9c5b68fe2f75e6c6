#include "ui/dialogs.h"

#include <QFileDialog>
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

/// A box but for its buttons.
class Box : public QMessageBox {
 public:
  Box(QWidget* parent, QString text, BoxIcon icon, const QString& title) : QMessageBox(parent) {
    setTextFormat(Qt::PlainText);  // or "<" in a subject would vanish
    setText(text.replace(QLatin1String("\r\n"), QLatin1String("\n")));
    setIcon(QtIcon(icon));
    setWindowTitle(title);
    setTextInteractionFlags(Qt::TextSelectableByMouse);
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
  return box.exec() == QDialog::Accepted ? box.textValue() : QString();
}

std::optional<std::string> QtDialogs::ChooseBase(QWidget* parent, const std::string& start) {
  const QString path =
      QFileDialog::getOpenFileName(parent, QStringLiteral("Выберите базу сообщений"), QStringFromPath(start),
                                   QStringLiteral("Базы сообщений (*.mdb *.MDB *.Mdb);;Все файлы (*)"));
  if (path.isEmpty()) return std::nullopt;
  return PathFromQString(path);
}
