// The windows that work on a base: check, compaction, import of saved pages.

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>

#include <QApplication>
#include <QClipboard>
#include <QTest>
#include <QTimer>

#include "base/cat.h"
#include "demo_forum/demo_pages.h"
#include "store/base_edits.h"
#include "store/message_rows.h"
#include "store/new_base.h"
#include "ui/text.h"
#include "upkeep/ui/frmCheckBase.h"
#include "upkeep/ui/frmCompactBase.h"
#include "upkeep/ui/frmImportPages.h"
#include "upkeep/ui/upkeep_stage.h"

namespace {

using testing::HasSubstr;
using testing::StartsWith;

class UpkeepWindows : public UpkeepStage {
 protected:
  UpkeepWindows() {
    CreateMessageBase(files_, path_, {}, clock_);
    base_.OpenBase(path_);
  }

  void PutPages(int first, int last) {
    MessageRecord message;
    message.Тема = "О курсе"_ru;
    message.Автор = "Ваня"_ru;
    message.Дата = OleDate{37'330};
    message.Текст = std::string(1500, 'x');
    for (int number = first; number <= last; ++number)
      folder_.Put(Cat("pages/", number, ".html"), demo_pages::KdvPage(message));
  }
  /// Imports these pages and forgets them.
  void Fill(int first, int last) {
    PutPages(first, last);
    dialogs_.folder = folder_ / "pages";
    frmImportPages window(needs_, base_);
    Click(window, "cmdFolder");
    Click(window, "cmdImport");
    EXPECT_EQ(window.Imported(), static_cast<std::size_t>(last - first + 1)) << Status(window);
    std::filesystem::remove_all(folder_ / "pages");
  }
  /// Shows a window that works at once, and lets it.
  static void Show(QWidget& window) {
    window.show();
    QCoreApplication::processEvents();
  }
  static std::string Status(const QWidget& window) { return Find<QLabel>(window, "lblStatus")->text().toStdString(); }
  static std::string Details(const QWidget& window) {
    const auto* list = Find<QPlainTextEdit>(window, "txtDetails");
    return list->isHidden() ? "(hidden)" : list->toPlainText().toStdString();
  }
  /// A user who presses Esc as soon as the work lets him.
  static void PressEscapeIn(QWidget& window) {
    QTimer::singleShot(0, &window, [&window] { QTest::keyClick(&window, Qt::Key_Escape); });
  }
  std::string path_ = folder_ / "kdv_2024.mdb";
  MessageBase base_{files_, clock_, ini_};
};

TEST_F(UpkeepWindows, AnImportTellsWhatItReadAndCanBeRepeated) {
  PutPages(1, 3);
  folder_.Put("pages/index.html", "x");
  folder_.Put("pages/7.html", "");
  frmImportPages window(needs_, base_);
  Show(window);
  Click(window, "cmdFolder");  // cancelled
  EXPECT_FALSE(Find<QPushButton>(window, "cmdImport")->isEnabled());
  dialogs_.folder = folder_ / "pages";
  Click(window, "cmdFolder");
  Click(window, "cmdImport");
  EXPECT_EQ(Status(window), "Записано сообщений: 3, уже были в базе: 0, не записано страниц: 2");
  EXPECT_EQ(Details(window), folder_ / "pages/index.html: в имени файла нет номера сообщения\n" + folder_.path() +
                                 "/pages/7.html: страница пуста");
  Click(window, "cmdCopy");
  EXPECT_THAT(QApplication::clipboard()->text().toStdString(), HasSubstr("не записано страниц: 2\n" + folder_.path()));
  EXPECT_EQ(window.Imported(), 3u);
  EXPECT_TRUE(ReadMessage(base_.connection(), 3).has_value());
  QTest::keyClick(&window, Qt::Key_Escape);
  EXPECT_FALSE(window.isVisible());
}

TEST_F(UpkeepWindows, EscapeStopsAnImportAndTheWindowStays) {
  PutPages(1, 120);
  dialogs_.folder = folder_ / "pages";
  frmImportPages window(needs_, base_);
  Show(window);
  Click(window, "cmdFolder");
  PressEscapeIn(window);
  Click(window, "cmdImport");
  EXPECT_THAT(Status(window), HasSubstr("Остановлено, осталось страниц: "));
  EXPECT_TRUE(window.isVisible());
  EXPECT_LT(window.Imported(), 120u);
  const std::size_t before = window.Imported();
  Click(window, "cmdImport");
  EXPECT_THAT(Status(window), StartsWith(Cat("Записано сообщений: ", 120 - before, ", уже были в базе: ", before)));
}

TEST_F(UpkeepWindows, ACompactedBaseIsOpenedAnewAndTheOldOneKept) {
  Fill(1, 60);
  for (std::int32_t number = 1; number < 60; ++number) BaseEdits(base_).Delete({&number, 1});
  const auto before = std::filesystem::file_size(path_);
  frmCompactBase window(needs_, base_);
  Show(window);
  EXPECT_TRUE(window.IsCompacted());
  EXPECT_THAT(Status(window), StartsWith("База сжата: было "));
  EXPECT_THAT(Status(window), HasSubstr(path_ + ".bak"));
  EXPECT_LT(std::filesystem::file_size(path_), before);
  EXPECT_EQ(std::filesystem::file_size(path_ + ".bak"), before);
  EXPECT_EQ(base_.path(), path_);
  const std::int32_t last = 60;
  BaseEdits(base_).Delete({&last, 1});  // in the file that has the name, not in the old one
  EXPECT_FALSE(ReadMessage(base_.connection(), 60).has_value());
}

TEST_F(UpkeepWindows, ACompactionThatIsNotWantedOrStoppedChangesNothing) {
  Fill(1, 30);
  const std::string before = folder_.Get("kdv_2024.mdb");
  dialogs_.ok = false;
  EXPECT_FALSE(CompactBase(needs_, base_));
  frmCompactBase window(needs_, base_);
  PressEscapeIn(window);
  Show(window);
  EXPECT_EQ(Status(window), "Сжатие остановлено. База осталась прежней.");
  EXPECT_FALSE(window.IsCompacted());
  EXPECT_TRUE(folder_.Get("kdv_2024.mdb") == before);
  EXPECT_TRUE(ReadMessage(base_.connection(), 30).has_value());
}

TEST_F(UpkeepWindows, ACheckSaysThatAllIsWellOrWhatIsWrong) {
  Fill(1, 40);
  {
    frmCheckBase window(needs_, path_);
    Show(window);
    EXPECT_EQ(Status(window), "База в порядке: ошибок нет.");
    EXPECT_EQ(Details(window), "(hidden)");
    EXPECT_TRUE(Find<QPushButton>(window, "cmdRescue")->isHidden());
  }
  std::string bytes = folder_.Get("kdv_2024.mdb");
  bytes.replace(bytes.size() - 3 * 2048, 2 * 2048, 2 * 2048, '\xEE');
  folder_.Put("kdv_2024.mdb", bytes);
  frmCheckBase window(needs_, path_);
  Show(window);
  EXPECT_THAT(Status(window), StartsWith("База повреждена. Ошибок: "));
  EXPECT_THAT(Details(window), StartsWith("Ошибка: "));

  const std::string whole = folder_ / "kdv_2024_rescued.mdb";
  dialogs_.base = folder_ / "whole.mdb";
  Click(window, "cmdRescue");
  EXPECT_THAT(dialogs_.told.back().toStdString(), HasSubstr("должно начинаться с «kdv»"));
  EXPECT_FALSE(std::filesystem::exists(folder_ / "whole.mdb"));
  dialogs_.base = folder_ / "kdv_2024_rescued";
  Click(window, "cmdRescue");
  EXPECT_EQ(dialogs_.base_start, whole);
  EXPECT_THAT(Status(window), testing::AllOf(StartsWith("Спасено сообщений: "), HasSubstr(whole)));
  EXPECT_THAT(Details(window), HasSubstr("Повреждённые страницы файла: "));
  EXPECT_TRUE(folder_.Get("kdv_2024.mdb") == bytes);
  base_.OpenBase(whole);
  EXPECT_EQ(base_.forum_kind(), "kdv");
}

TEST_F(UpkeepWindows, AFileThatCannotBeCheckedCanStillBeRescued) {
  Fill(1, 40);
  frmCheckBase missing(needs_, folder_ / "kdv_2023.mdb");
  Show(missing);
  EXPECT_TRUE(Find<QPushButton>(missing, "cmdRescue")->isHidden()) << Status(missing);
  const std::string bytes = folder_.Get("kdv_2024.mdb");
  folder_.Put("kdv_2024.mdb", bytes.substr(0, bytes.size() - 100));
  frmCheckBase window(needs_, path_);
  Show(window);
  EXPECT_FALSE(Find<QPushButton>(window, "cmdRescue")->isHidden()) << Status(window);
  dialogs_.base = folder_ / "kdv_new.mdb";
  Click(window, "cmdRescue");
  EXPECT_THAT(Status(window), StartsWith("Спасен"));
}

}  // namespace
