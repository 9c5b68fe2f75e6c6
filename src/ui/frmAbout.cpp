#include "ui/frmAbout.h"

#include <QDialogButtonBox>
#include <QFontDatabase>
#include <QHBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "base/error.h"
#include "base/version.h"
#include "ui/controls.h"
#include "ui/icons.h"
#include "ui/text.h"

namespace {

#if defined(__clang__)
const char* const kCompiler = "Clang " __clang_version__;
#elif defined(__GNUC__)
const char* const kCompiler = "GCC " __VERSION__;
#else
const char* const kCompiler = "C++";
#endif

QString ReadmeText(FileSystem& files, const std::string& readme) {
  constexpr std::uint64_t kLargest = 1 << 20;
  if (readme.empty()) return QStringLiteral("Файл readme.txt не найден ни в папке программы, ни рядом с ней.");
  try {
    return FromCp1251(ReadWholeFile(files, readme, kLargest));
  } catch (const Error& error) {
    return FromCp1251(error.what());
  }
}

QString BuiltWith() {
  return QStringLiteral("Собрана: Qt %1, %2. Работает с Qt %3.")
      .arg(QStringLiteral(QT_VERSION_STR), QString::fromLatin1(kCompiler).trimmed(), QString::fromLatin1(qVersion()));
}

QLabel* Line(const char* name, const QString& text) {
  auto* line = Named<QLabel>(name, text);
  line->setTextFormat(Qt::PlainText);
  line->setTextInteractionFlags(Qt::TextSelectableByMouse);
  return line;
}

}  // namespace

frmAbout::frmAbout(FileSystem& files, const std::string& readme, QWidget* parent) : QDialog(parent) {
  setObjectName(QStringLiteral("frmAbout"));
  setWindowTitle(QStringLiteral("О программе"));

  auto* text = Named<QPlainTextEdit>("txtReadme", ReadmeText(files, readme));
  text->setReadOnly(true);
  text->setAccessibleName(QStringLiteral("Описание программы"));
  text->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  text->setTabChangesFocus(true);
  text->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));  // its columns stand under each other

  auto* ok = Named<QPushButton>("cmdOK", QStringLiteral("OK"));
  connect(ok, &QPushButton::clicked, this, &frmAbout::accept);
  auto* buttons = new QDialogButtonBox;
  buttons->addButton(ok, QDialogButtonBox::AcceptRole);

  auto* column = new QVBoxLayout(this);
  column->addWidget(Head());
  column->addWidget(text, 1);
  column->addWidget(buttons);
  ok->setDefault(true);
  ok->setFocus();
  const QFontMetrics metrics(text->font());
  constexpr int kColumns = 82, kLines = 40, kAround = 60;  // of the readme; pixels
  resize(metrics.horizontalAdvance(QLatin1Char('0')) * kColumns + kAround, metrics.lineSpacing() * kLines);
}

QWidget* frmAbout::Head() {
  constexpr int kPicture = 64;
  auto* head = new QWidget;
  auto* picture = new QLabel;
  picture->setPixmap(ProgramIcon().pixmap(QSize(kPicture, kPicture), devicePixelRatioF()));
  QLabel* name = Line("lblVersion", ProgramName() + u' ' + QLatin1String(kProductVersion));
  QFont large = name->font();
  large.setPointSizeF(large.pointSizeF() * 1.6);
  large.setBold(true);
  name->setFont(large);

  auto* lines = new QVBoxLayout;
  lines->addWidget(name);
  lines->addWidget(Line("lblPurpose", QStringLiteral("Чтение и архив русскоязычных форумов")));
  lines->addWidget(Line("lblBuiltWith", BuiltWith()));
  lines->addWidget(Line("lblLicense", QStringLiteral("Лицензия MIT")));
  lines->setSpacing(2);
  lines->addStretch(1);
  auto* row = new QHBoxLayout(head);
  row->setContentsMargins(0, 0, 0, 0);
  row->setSpacing(16);
  row->addWidget(picture, 0, Qt::AlignTop);
  row->addLayout(lines, 1);
  return head;
}
