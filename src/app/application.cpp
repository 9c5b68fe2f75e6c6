#include "app/application.h"

#include <QApplication>
#include <QDesktopServices>

#include "config/program_folder.h"
#include "config/ui/frmOpen.h"

Application::Application(const CommandLine& command_line)
    : ini_(files_, program_folder::Find(program_folder::OfThisProcess(command_line.data_dir))),
      log_(ini_, files_, clock_),
      explorer_({files_, clock_, ini_, settings_, dialogs_, *this}) {
  if (!command_line.base.empty()) explorer_.LoadInsteadOfDialog(command_line.base);
}

int Application::Run() {
  explorer_.show();
  return QApplication::exec();
}

void Application::OpenBaseDialog(KDVExplorer& explorer, bool days_in_focus) {
  frmOpen dialog(ini_, log_, settings_, dialogs_, &explorer);
  if (days_in_focus) dialog.StartWithDays(explorer.Base().path());
  if (dialog.exec() == QDialog::Accepted) explorer.LoadLater(dialog.ChosenBase());
}

void Application::OpenLink(const QUrl& target) {
  if (!QDesktopServices::openUrl(target))
    dialogs_.Tell(&explorer_, QStringLiteral("Не удалось открыть адрес\r\n%1").arg(target.toDisplayString()),
                  BoxIcon::kWarning, ProgramName());
}
