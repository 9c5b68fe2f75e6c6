#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <utility>

#include <QLineEdit>
#include <QPushButton>
#include <QTreeView>

#include "app/application.h"
#include "demo_forum/demo_folder.h"
#include "demo_forum/web_server.h"
#include "explorer/ui/message_body.h"
#include "support/offscreen_app.h"
#include "support/temp_folder.h"
#include "typist.h"
#include "ui/status_panels.h"

namespace {

[[maybe_unused]] const auto* const kApp = testing::AddGlobalTestEnvironment(new OffscreenApp);

/// The whole program, with a program folder whose forums lie on a server in this process.
class WholeProgram : public testing::Test {
 protected:
  WholeProgram() {
    for (const char* name : {"http_proxy", "https_proxy", "all_proxy", "HTTP_PROXY", "HTTPS_PROXY", "ALL_PROXY"})
      qunsetenv(name);
    qputenv("QUORVEX_SETTINGS", QByteArray::fromStdString(folder_ / "settings.ini"));
    demo_folder::Make(files_, folder_.path(), server_.Address(), site_, 40, clock_);
    std::string ini = folder_.Get("forum.ini");
    const std::string opens = "NeedOpenIE=1";
    const std::size_t at = ini.find(opens + "\r\n");
    if (at == std::string::npos) throw std::runtime_error("forum.ini has no " + opens);
    ini[at + opens.size() - 1] = '0';  // no browser here
    folder_.Put("forum.ini", ini);
  }
  ~WholeProgram() override { qunsetenv("QUORVEX_SETTINGS"); }

  template <typename Control>
  static Control* Find(const char* name) {
    for (QWidget* window : QApplication::topLevelWidgets())
      if (window->isVisible())
        if (auto* control = window->findChild<Control*>(QLatin1String(name))) return control;
    throw std::runtime_error(name);
  }
  static std::string Status() { return Find<StatusPanels>("StatBar")->Panel(1).toStdString(); }
  static bool StatusHas(const char* text) { return Status().find(text) != std::string::npos; }

  /// The window must have a name for everything that the keyboard reaches.
  static void CheckNames() {
    EXPECT_THAT(NamelessControls(*Typist::Top()), testing::IsEmpty()) << Typist::Top()->objectName().toStdString();
  }

  /// What the user does when a window has come up.
  void At(const char* window, Typist::Action action) {
    user_.When(
        window, [window] { return Typist::IsTop(window); },
        [action] {
          CheckNames();
          action();
        });
  }
  /// What the user does in the main window when its status says so.
  void InMainWindow(const char* status, Typist::Action action) {
    const auto is_there = [status] { return Typist::IsTop("KDVExplorer") && StatusHas(status); };
    user_.When(std::string("the main window with ") + status, is_there, [action] {
      CheckNames();
      action();
    });
  }

  Typist user_;
  TempFolder folder_;
  DiskFileSystem files_;
  SystemClock clock_;
  DemoSite site_{60, 0, clock_};
  WebServer server_{0, [this](std::string_view target) { return site_.Get(target); },
                    [](std::string_view) { return Mischief{}; }};
};

TEST_F(WholeProgram, DoesItsWholeJobByKeyboardAlone) {
  std::size_t downloaded = 0;
  At("frmOpen", [] {
    Typist::TabTo("cmbBase");
    const auto* file = Find<QLineEdit>("txtBase");
    for (int i = 0; i < 6 && !file->text().contains(QLatin1String("/kdv_")); ++i) Typist::Press(Qt::Key_Down);
    Typist::Press(Qt::Key_Return);
  });
  InMainWindow("Загрузил ", [] {
    Typist::Press(Qt::Key_Down, Qt::AltModifier);
    EXPECT_FALSE(Find<MessageBody>("body")->toPlainText().isEmpty());
    Typist::Press(Qt::Key_Space);
    Typist::Press(Qt::Key_F, Qt::ControlModifier);
  });
  user_.When(
      "the question for a text", [] { return Typist::Top()->inherits("QInputDialog"); },
      [] {
        CheckNames();
        Typist::Type(QStringLiteral("е"));
        Typist::Press(Qt::Key_Return);
      });
  InMainWindow("Найдено ", [] { Typist::Press(Qt::Key_F9); });
  At("frmDownload", [] {
    Typist::TabTo("cmdDownload");
    Typist::Press(Qt::Key_Space);
  });
  user_.When(
      "the end of the session", [] { return Find<QPushButton>("cmdDownload")->isEnabled(); },
      [&] {
        downloaded = static_cast<std::size_t>(Find<QTreeView>("lvDownload")->model()->rowCount());
        Typist::Press(Qt::Key_Escape);
      });
  InMainWindow("Код сообщения: ", [] {  // the first new one is on show
    Typist::Press(Qt::Key_E, Qt::ControlModifier);
    EXPECT_TRUE(StatusHas(".xml")) << Status();
    Typist::TabTo("tree");
    Typist::Press(Qt::Key_Delete);
  });
  user_.When(
      "the question before a deletion", [] { return Typist::Top()->inherits("QMessageBox"); },
      [] {
        CheckNames();
        Typist::Press(Qt::Key_Return);
      });
  InMainWindow("Сообщение удалено.", [] { Typist::Press(Qt::Key_N, Qt::ControlModifier); });
  const std::pair<const char*, Qt::Key> visits[] = {
      {"frmNewBase", Qt::Key_I}, {"frmImportPages", Qt::Key_P}, {"frmProperties", Qt::Key_O}};
  for (const auto& [window, next] : visits) {
    At(window, [] { Typist::Press(Qt::Key_Escape); });
    InMainWindow("", [next = next] { Typist::Press(next, Qt::ControlModifier); });
  }
  At("frmOpen", [] { Typist::Press(Qt::Key_Escape); });
  InMainWindow("", [] { Typist::Press(Qt::Key_F1); });
  At("frmAbout", [] { Typist::Press(Qt::Key_Escape); });
  InMainWindow("", [] { Typist::Press(Qt::Key_Q, Qt::ControlModifier); });

  user_.Begin();
  EXPECT_EQ(Application({.data_dir = folder_.path(), .base = {}, .help = false, .version = false}).Run(), 0);
  EXPECT_EQ(user_.stuck(), "");
  EXPECT_TRUE(user_.IsDone());
  EXPECT_GE(downloaded, 20U);
  const auto is_export = [](const auto& file) { return file.path().extension() == ".xml"; };
  EXPECT_EQ(std::count_if(std::filesystem::recursive_directory_iterator(folder_.path()), {}, is_export), 1);
}

}  // namespace
