#include "export/ui/desktop_shell.h"

#include <QDesktopServices>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>
#include <QUrl>

#include "base/error.h"
#include "base/ru_literal.h"
#include "ui/text.h"

namespace {

QString Quoted(const QString& word) {
  return word.contains(QLatin1Char(' ')) ? QLatin1Char('"') + word + QLatin1Char('"') : word;
}

QString NamedByVariable() {
  const QString first = qEnvironmentVariable("BROWSER").section(QLatin1Char(':'), 0, 0);
  return first.isEmpty() ? QString() : Quoted(QStandardPaths::findExecutable(first));
}

/// The desktop file of the program for web pages; empty when the desktop does not say.
QString BrowserEntry() {
  constexpr int kPatience = 5000;  // milliseconds
  QProcess query;
  query.start(QStringLiteral("xdg-mime"),
              {QStringLiteral("query"), QStringLiteral("default"), QStringLiteral("text/html")});
  if (!query.waitForFinished(kPatience)) return {};
  const QString name = QString::fromUtf8(query.readAllStandardOutput()).trimmed();
  return name.isEmpty() ? QString() : QStandardPaths::locate(QStandardPaths::ApplicationsLocation, name);
}

/// The value of Exec in the first group; groups behind it are other actions of the program.
QString ExecOf(const QString& entry) {
  QFile file(entry);
  if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) return {};
  for (int groups = 0; !file.atEnd();) {
    const QString line = QString::fromUtf8(file.readLine()).trimmed();
    if (line.startsWith(QLatin1Char('[')) && ++groups > 1) return {};
    if (line.startsWith(QLatin1String("Exec="))) return line.mid(5);
  }
  return {};
}

/// The command without the places for what it is to open.
QString WithoutFieldCodes(const QString& exec) {
  QStringList words;
  for (const QString& word : QProcess::splitCommand(exec))
    if (!word.startsWith(QLatin1Char('%')) && !word.startsWith(QLatin1String("@@"))) words << Quoted(word);
  return words.join(QLatin1Char(' '));
}

}  // namespace

std::string DesktopShell::FindExecutable(const std::string& path) {
  if (!QFileInfo(QStringFromPath(path)).isFile()) return {};
  const QString named = NamedByVariable();
  return PathFromQString(named.isEmpty() ? WithoutFieldCodes(ExecOf(BrowserEntry())) : named);
}

void DesktopShell::Start(const std::string& command, const std::string& path) {
  QStringList words = QProcess::splitCommand(QStringFromPath(command));
  words << QStringFromPath(path);
  const QString program = words.takeFirst();
  if (words.isEmpty() || !QProcess::startDetached(program, words))
    throw Error(error_number::kFileNotFound, "браузер не найден или не запускается"_ru);
}

bool DesktopShell::Open(const std::string& path) {
  return QDesktopServices::openUrl(QUrl::fromLocalFile(QStringFromPath(path)));
}
