#include "app/application.h"

#include <filesystem>

#include <QApplication>
#include <QDesktopServices>

#include "app/download_command.h"
#include "config/ui/frmOpen.h"
#include "config/ui/frmProperties.h"
#include "download/ui/http_fetcher.h"
#include "download/ui/qt_alarm.h"
#include "download/ui/tcp_socket.h"
#include "export/ui/export_command.h"
#include "ui/frmAbout.h"
#include "upkeep/ui/frmCheckBase.h"
#include "upkeep/ui/frmCompactBase.h"
#include "upkeep/ui/frmImportPages.h"
#include "upkeep/ui/frmNewBase.h"

Application::Application(const CommandLine& command_line)
    : places_(program_folder::OfThisProcess(command_line.data_dir)),
      ini_(files_, program_folder::Find(places_)),
      log_(ini_, files_, clock_),
      explorer_({files_, clock_, ini_, settings_, dialogs_, *this}) {
  // Absolute, because it is remembered for other runs.
  if (!command_line.base.empty()) explorer_.LoadInsteadOfDialog(std::filesystem::absolute(command_line.base).string());
}

int Application::Run() {
  explorer_.show();
  return QApplication::exec();
}

void Application::OpenBaseDialog(KDVExplorer& explorer, bool days_in_focus) {
  frmOpen dialog(ini_, log_, settings_, dialogs_, &explorer);
  dialog.OfferNewBase([this](const std::string& forum, QWidget* parent) { return MakeBase(forum, parent); });
  if (days_in_focus) dialog.StartWithDays(explorer.Base().path());
  if (dialog.exec() == QDialog::Accepted) explorer.LoadLater(dialog.ChosenBase());
}

void Application::Download(KDVExplorer& explorer) {
  HttpFetcher inet;
  TcpSocket Winsock;
  QtAlarm alarm;
  DownloadMessages(explorer, {ini_, log_, clock_, dialogs_, inet, Winsock, alarm});
}

void Application::Properties(KDVExplorer& explorer) {
  frmProperties dialog({settings_, dialogs_, ini_.ProgramFolder()}, &explorer);
  if (dialog.exec() == QDialog::Accepted && dialog.TextSize() > 0) explorer.SetTextSize(dialog.TextSize());
}

void Application::About(KDVExplorer& explorer) {
  const std::string shipped = program_folder::ShippedFolder(places_);
  frmAbout(files_, program_folder::ShippedFile(ini_.ProgramFolder(), shipped, "readme.txt"), &explorer).exec();
}

void Application::Export(KDVExplorer& explorer) {
  if (!explorer.Base().IsOpen()) return;
  ExportCommand command({files_, clock_, ini_, log_, settings_, dialogs_, shell_});
  const NodeId chosen = explorer.ChosenNode();
  const QString done =
      command.ExportMSG_Click(&explorer, explorer.Base(), explorer.Tree(), chosen == kRootNode ? kNoNode : chosen);
  if (!done.isEmpty()) explorer.SetStatus(done);
}

std::optional<std::string> Application::MakeBase(const std::string& forum, QWidget* parent) {
  frmNewBase dialog(ForUpkeep(), forum, parent);
  if (dialog.exec() != QDialog::Accepted) return std::nullopt;
  return dialog.NewBase();
}

void Application::NewBase(KDVExplorer& explorer) {
  if (const auto base = MakeBase(explorer.Base().forum_kind(), &explorer)) explorer.Load(*base);
}

void Application::ImportPages(KDVExplorer& explorer) {
  if (!explorer.Base().IsOpen()) return;
  frmImportPages dialog(ForUpkeep(), explorer.Base(), &explorer);
  dialog.exec();
  if (dialog.Imported() > 0) explorer.SR();
}

void Application::CompactBase(KDVExplorer& explorer) { ::CompactBase(ForUpkeep(), explorer.Base(), &explorer); }

void Application::CheckBase(KDVExplorer& explorer) {
  // One that does not open at all has to be named.
  const std::optional<std::string> path =
      explorer.Base().IsOpen() ? explorer.Base().path() : dialogs_.ChooseBase(&explorer, ini_.ProgramFolder());
  if (path) frmCheckBase(ForUpkeep(), *path, &explorer).exec();
}

void Application::OpenLink(const QUrl& target) {
  if (!QDesktopServices::openUrl(target))
    dialogs_.Tell(&explorer_, QStringLiteral("Не удалось открыть адрес\r\n%1").arg(target.toDisplayString()),
                  BoxIcon::kWarning, ProgramName());
}
