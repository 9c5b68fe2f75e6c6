#include "upkeep/ui/frmCheckBase.h"

#include <string_view>
#include <vector>

#include "base/error.h"
#include "config/forum_list.h"
#include "config/paths.h"
#include "jet/check.h"
#include "jet/database.h"
#include "store/rescue_messages.h"
#include "store/rescue_report.h"
#include "ui/controls.h"
#include "ui/text.h"
#include "upkeep/ui/new_base_name.h"

namespace {

QString Counts(const jet::CheckResult& result) {
  return QStringLiteral("Ошибок: %1, замечаний: %2.").arg(result.errors).arg(result.warnings);
}

QString Summary(const jet::CheckResult& result) {
  if (!result.complete) return QStringLiteral("Проверка остановлена. Пока найдено: ") + Counts(result).toLower();
  if (result.errors > 0)
    return QStringLiteral(
               "База повреждена. %1 Сделайте копию её файла, прежде чем что-нибудь в неё записывать. Всё, "
               "что ещё читается, можно спасти в новую базу: кнопка внизу.")
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
    : WorkDialog(QStringLiteral("Проверка базы"), parent), needs_(needs), base_(paths::Resolve(base)) {
  setObjectName(QStringLiteral("frmCheckBase"));
  cmdRescue_ = Named<QPushButton>("cmdRescue", QStringLiteral("&Спасти сообщения в новую базу…"));
  cmdRescue_->setToolTip(QStringLiteral("Переписать в новый файл все сообщения, которые ещё читаются"));
  cmdRescue_->hide();
  AddButton(cmdRescue_);
  cmdRescue_->setAutoDefault(false);
  cmdRescue_->setDefault(false);
  connect(cmdRescue_, &QPushButton::clicked, this, &frmCheckBase::cmdRescue_Click);
  RunWhenShown(QStringLiteral("Проверяю %1…").arg(QStringFromPath(base)),
               [this](Progress& progress) { return Check(progress); });
}

// What contradicts the format, or is no base at all, is damage too; a file that is locked or missing is not.
WorkReport frmCheckBase::Check(Progress& progress) try {
  jet::Database database = jet::Database::Open(needs_.files, base_, jet::Access::kRead);
  const jet::CheckResult result = jet::Check(database, progress);
  cmdRescue_->setVisible(result.errors > 0);
  return ReportOf(result);
} catch (const Error& error) {
  cmdRescue_->setVisible(error.number() == error_number::kNotABase);
  throw;
}

void frmCheckBase::cmdRescue_Click() {
  const auto chosen = needs_.dialogs.ChooseNewBase(this, ProposedRescuePath(needs_.files, base_));
  if (!chosen) return;
  const std::string to = WithBaseExtension(*chosen);
  if (const QString obstacle = Obstacle(to); !obstacle.isEmpty())
    return needs_.dialogs.Tell(this, obstacle, BoxIcon::kWarning, windowTitle());
  Run(QStringLiteral("Спасаю сообщения в %1…").arg(QStringFromPath(to)),
      [&](Progress& progress) { return Rescue(to, progress); });
}

/// The new base must be of the damaged one's forum, if that has any.
QString frmCheckBase::Obstacle(const std::string& to) const try {
  const std::vector<std::string> forums = forum_list::ReadForumList(needs_.ini);
  const std::size_t place = forum_list::ForumOfFile(forums, base_);
  return ObstacleToNewBase(needs_.files, forums, place == forum_list::kUnknown ? std::string_view() : forums[place],
                           to);
} catch (const Error& error) {
  return FromCp1251(error.what());
}

WorkReport frmCheckBase::Rescue(const std::string& to, Progress& progress) {
  const RescueResult result = RescueMessages(needs_.files, base_, to, needs_.clock, progress);
  WorkReport report{FromCp1251(RescueSummary(result)), {}};
  if (result.complete)
    report.summary +=
        QStringLiteral("\n\nНовая база: %1. Откройте её командой «Открыть». Повреждённый файл остался прежним.")
            .arg(QStringFromPath(to));
  for (const std::string& line : RescueDetails(result)) report.lines.append(FromCp1251(line));
  return report;
}
