#include "ui/text.h"

#include <QByteArray>
#include <QFile>

#include "base/code_page.h"
#include "base/cp1251.h"

QString FromCp1251(std::string_view text) {
  QString result(static_cast<qsizetype>(text.size()), Qt::Uninitialized);
  QChar* to = result.data();
  for (const char c : text) *to++ = QChar(cp1251::ToUnicode(static_cast<std::uint8_t>(c)));
  return result;
}

std::string ToCp1251(const QString& text) { return cp1251::FromUtf8(text.toStdString()); }

bool FitsCp1251(const QString& text) { return FromCp1251(ToCp1251(text)) == text; }

QString QStringFromPath(std::string_view path) {
  return QFile::decodeName(QByteArray(path.data(), static_cast<qsizetype>(path.size())));
}

std::string PathFromQString(const QString& path) { return QFile::encodeName(path).toStdString(); }
