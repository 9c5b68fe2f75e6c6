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
#include "text/strings.h"
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
    folder_.Put("forum.ini", text::ReplaceAll(folder_.Get("forum.ini"), "NeedOpenIE=1", "NeedOpenIE=0"));  // no browser
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

  /// What the user does when it is time. Every window on top has a name for all that the keyboard reaches.
  void When(std::string what, Typist::Condition is_there, Typist::Action action) {
    user_.When(std::move(what), std::move(is_there), [action] {
      EXPECT_THAT(NamelessControls(*Typist::Top()), testing::IsEmpty()) << Typist::Top()->objectName().toStdString();
      action();
    });
  }
  void At(const char* window, Typist::Action action) {
    const auto is_top = [window] { return Typist::IsTop(window); };
    When(window, is_top, action);
  }
  void AtQuestion(const char* kind, Typist::Action action) {
    const auto is_asked = [kind] { return Typist::Top()->inherits(kind); };
    When(kind, is_asked, action);
  }
  void InMainWindow(const char* status, Typist::Action action) {
    const auto is_there = [status] { return Typist::IsTop("KDVExplorer") && StatusHas(status); };
    When(std::string("the main window with ") + status, is_there, action);
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
  AtQuestion("QInputDialog", [] {
    Typist::Type(QStringLiteral("е"));
    Typist::Press(Qt::Key_Return);
  });
  InMainWindow("Найдено ", [] { Typist::Press(Qt::Key_F9); });
  At("frmDownload", [] {
    Typist::TabTo("cmdDownload");
    Typist::Press(Qt::Key_Space);
  });
  When(
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
  AtQuestion("QMessageBox", [] { Typist::Press(Qt::Key_Return); });
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
