#include "upkeep/ui/frmCheckBase.h"

#include "config/paths.h"
#include "jet/check.h"
#include "jet/database.h"
#include "ui/text.h"

namespace {

QString Counts(const jet::CheckResult& result) {
  return QStringLiteral("Ошибок: %1, замечаний: %2.").arg(result.errors).arg(result.warnings);
}

QString Summary(const jet::CheckResult& result) {
  if (!result.complete) return QStringLiteral("Проверка остановлена. Пока найдено: ") + Counts(result).toLower();
  if (result.errors > 0)
    return QStringLiteral("База повреждена. %1 Сделайте копию её файла, прежде чем что-нибудь в неё записывать.")
        .arg(Counts(result));
  if (result.warnings > 0)
    return QStringLiteral(
               "Сообщения целы. %1 Замечания — это лишнее место и неточные счётчики: их убирает команда "
               "«Сжать базу».")
        .arg(Counts(result));
  return QStringLiteral("База в порядке: ошибок нет.");
}

WorkReport ReportOf(const jet::CheckResult& result) {
  WorkReport report{Summary(result), {}};
  for (const jet::Finding& finding : result.findings)
    report.lines.append(
        (finding.severity == jet::Severity::kError ? QStringLiteral("Ошибка: ") : QStringLiteral("Замечание: ")) +
        FromCp1251(finding.text));
  if (const std::uint64_t all = result.errors + result.warnings; all > result.findings.size())
    report.lines.append(QStringLiteral("… и ещё %1").arg(all - result.findings.size()));
  return report;
}

}  // namespace

frmCheckBase::frmCheckBase(const UpkeepNeeds& needs, const std::string& base, QWidget* parent)
    : WorkDialog(QStringLiteral("Проверка базы"), parent) {
  setObjectName(QStringLiteral("frmCheckBase"));
  RunWhenShown(QStringLiteral("Проверяю %1…").arg(QStringFromPath(base)),
               [&files = needs.files, path = paths::Resolve(base)](Progress& progress) {
                 jet::Database database = jet::Database::Open(files, path, jet::Access::kRead);
                 return ReportOf(jet::Check(database, progress));
               });
}
