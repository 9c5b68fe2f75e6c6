#include "export/ui/export_command.h"

#include "base/error.h"
#include "base/ru_literal.h"
#include "config/user_settings.h"
#include "export/export_names.h"
#include "export/thread_choice.h"
#include "ui/busy.h"
#include "ui/text.h"

namespace {

const QString kNothingChosen =
    QStringLiteral("Выберите в дереве сообщение: в файл XML записывается вся цепочка, в которой оно стоит.");

}  // namespace

QString ExportCommand::ExportMSG_Click(QWidget* window, MessageBase& base, const NodeTree& tree, NodeId selected) {
  if (!base.IsOpen()) return {};
  if (selected == kNoNode || !IsMessage(tree.Kind(selected))) {
    needs_.dialogs.Tell(window, kNothingChosen);
    return {};
  }
  try {
    const ExportOutcome outcome = Export(base, tree, tree.Number(selected));
    const QString summary = FromCp1251(ExportSummary(outcome));
    if (!outcome.trouble.empty()) needs_.dialogs.Tell(window, summary, BoxIcon::kWarning);
    return outcome.whole ? summary : QString();
  } catch (const Error& error) {
    needs_.dialogs.Tell(window, FromCp1251(error.what()), BoxIcon::kWarning);
    return {};
  }
}

ExportOutcome ExportCommand::Export(MessageBase& base, const NodeTree& tree, std::int32_t number) {
  const Hourglass hourglass;
  const std::string folder = mdl_AZ::ExportFolder(needs_.ini.ProgramFolder(), mdl_AZ::ExportFolderName(base.path()));
  const ExportNeeds needs{needs_.files, base.connection(), needs_.ini, needs_.log, &needs_.shell};
  if (const NodeId thread = ThreadOf(tree, number); thread != kNoNode)
    return ExportMessages(needs, tree, thread, folder);
  const auto settings = user_settings::ToTreeSettings(user_settings::SettingsForOpening(needs_.settings));
  const NodeTree archive = WholeArchive(base.connection(), settings, needs_.clock);
  const NodeId thread = ThreadOf(archive, number);
  if (thread == kNoNode) throw Error(error_number::kNoSuchNode, "Этого сообщения в базе уже нет."_ru);
  return ExportMessages(needs, archive, thread, folder);
}
