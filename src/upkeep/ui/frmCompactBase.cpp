#include "upkeep/ui/frmCompactBase.h"

#include <QFileInfo>
#include <QLocale>

#include "base/cat.h"
#include "base/error.h"
#include "base/ru_literal.h"
#include "config/paths.h"
#include "ui/text.h"

namespace {

const QString kTitle = QStringLiteral("Сжатие базы");

QString SizeText(std::uint64_t bytes) {
  return QLocale(QLocale::Russian, QLocale::Russia)
      .formattedDataSize(static_cast<qint64>(bytes), 1, QLocale::DataSizeTraditionalFormat);
}

QString BackupName(const std::string& path) { return QStringFromPath(jet::BackupPath(path)); }

QString Question(const std::string& path) {
  const auto size = static_cast<std::uint64_t>(QFileInfo(QStringFromPath(path)).size());
  QString question =
      QStringLiteral(
          "Сжать базу %1 ?\r\n\r\nПрежний файл останется рядом под именем %2.\r\n"
          "На диске нужно до %3 свободного места.")
          .arg(QFileInfo(QStringFromPath(path)).fileName(), QFileInfo(BackupName(path)).fileName(), SizeText(2 * size));
  if (QFileInfo::exists(BackupName(path)))
    question += QStringLiteral("\r\nСохранённый при прошлом сжатии файл с этим именем будет заменён.");
  return question;
}

WorkReport ReportOf(const jet::CompactResult& result, const std::string& path) {
  if (!result.complete) return {QStringLiteral("Сжатие остановлено. База осталась прежней."), {}};
  const QString sizes = result.size_after < result.size_before
                            ? QStringLiteral("База сжата: было %1, стало %2.")
                            : QStringLiteral("Лишнего места в базе не было: было %1, стало %2.");
  WorkReport report{sizes.arg(SizeText(result.size_before), SizeText(result.size_after)), {}};
  report.summary +=
      QStringLiteral("\n\nПрежний файл: %1. Удалите его, когда убедитесь, что в сжатой базе всё на месте.")
          .arg(BackupName(path));
  for (const std::string& note : result.notes) report.lines.append(FromCp1251(note));
  return report;
}

}  // namespace

frmCompactBase::frmCompactBase(const UpkeepNeeds& needs, MessageBase& base, QWidget* parent)
    : WorkDialog(kTitle, parent) {
  setObjectName(QStringLiteral("frmCompactBase"));
  RunWhenShown(QStringLiteral("Сжимаю %1…").arg(QStringFromPath(base.path())),
               [this, &files = needs.files, &base](Progress& progress) { return Compact(files, base, progress); });
}

// What was open is the old file, whose name the compacted one has now, perhaps also when an error came last.
WorkReport frmCompactBase::Compact(FileSystem& files, MessageBase& base, Progress& progress) {
  const std::string path = base.path(), file = files.RealPath(paths::Resolve(path));
  jet::CompactResult result;
  try {
    result = jet::Compact(files, file, {.leave_unknown_indexes_out = true}, progress);
  } catch (const Error& error) {
    base.OpenBase(path);
    throw Error(error.number(),
                Cat("Сжать базу не удалось, сообщения остались на своих местах. "_ru, error.what(),
                    "\nЕсли файл повреждён, команда «Проверить базу» перечислит, что в нём не так, и предложит "
                    "спасти сообщения в новую базу."_ru));
  }
  base.OpenBase(path);
  compacted_ = result.complete;
  return ReportOf(result, file);
}

bool CompactBase(const UpkeepNeeds& needs, MessageBase& base, QWidget* parent) {
  if (!base.IsOpen()) return false;
  const std::string file = needs.files.RealPath(paths::Resolve(base.path()));
  if (!needs.dialogs.AskOkCancel(parent, Question(file), BoxIcon::kQuestion, kTitle)) return false;
  frmCompactBase window(needs, base, parent);
  window.exec();
  return window.IsCompacted();
}
