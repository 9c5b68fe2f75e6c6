#include <cstdio>
#include <cstdlib>
#include <exception>

#include <QApplication>
#include <QLibraryInfo>
#include <QTranslator>

#include "app/application.h"
#include "app/command_line.h"
#include "base/error.h"
#include "base/version.h"
#include "ui/dialogs.h"
#include "ui/text.h"

namespace {

// A command that fails in a way nobody foresaw is told about and leaves the program running.
class GuiApplication : public QApplication {
 public:
  using QApplication::QApplication;

  bool notify(QObject* receiver, QEvent* event) override {
    try {
      return QApplication::notify(receiver, event);
    } catch (const Error& error) {
      Report(FromCp1251(error.what()));
    } catch (const std::exception& error) {
      Report(QStringLiteral("Непредвиденная ошибка: %1").arg(QString::fromLocal8Bit(error.what())));
    }
    return false;
  }

 private:
  static void Report(const QString& text) { QtDialogs().Tell(activeWindow(), text, BoxIcon::kError, ProgramName()); }
};

// Qt ends the process when it finds no screen; this is what the user reads then.
void ExplainMissingScreen(QtMsgType type, const QMessageLogContext&, const QString& message) {
  if (type != QtFatalMsg) return;
  std::fprintf(stderr,
               "Нет графического экрана: окно программы негде показать.\n"
               "Запустите её в графическом сеансе (переменная DISPLAY или WAYLAND_DISPLAY).\n\n%s\n",
               message.toLocal8Bit().constData());
  std::_Exit(EXIT_FAILURE);
}

void TranslateStandardDialogs(QTranslator& translator) {
  if (translator.load(QStringLiteral("qtbase_ru"), QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
    QCoreApplication::installTranslator(&translator);
}

int RunWindows(const CommandLine& command_line) {
  QLocale::setDefault(QLocale(QLocale::Russian, QLocale::Russia));
  QTranslator russian;
  TranslateStandardDialogs(russian);
  QGuiApplication::setDesktopFileName(QStringLiteral("quorvex"));
  return Application(command_line).Run();
}

}  // namespace

int main(int argc, char** argv) {
  // Help and version need no screen.
  for (int i = 1; i < argc; ++i) {
    const std::string_view argument = argv[i];
    if (argument == "--help") return std::fputs(kUsage, stdout) < 0 ? EXIT_FAILURE : EXIT_SUCCESS;
    if (argument == "--version") return std::printf("Quorvex %s\n", kProductVersion) < 0 ? EXIT_FAILURE : EXIT_SUCCESS;
  }
  const QtMessageHandler usual = qInstallMessageHandler(ExplainMissingScreen);
  const GuiApplication application(argc, argv);  // takes out of argv what is Qt's own
  qInstallMessageHandler(usual);
  try {
    return RunWindows(ParseCommandLine({argv + 1, static_cast<std::size_t>(argc - 1)}));
  } catch (const UsageError& error) {
    std::fprintf(stderr, "%s\n\n%s", error.what(), kUsage);
    return 2;
  } catch (const Error& error) {
    std::fprintf(stderr, "%s\n", FromCp1251(error.what()).toLocal8Bit().constData());
    return EXIT_FAILURE;
  }
}
