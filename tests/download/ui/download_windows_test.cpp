// What a user does in the two download windows, and what then stands in their controls.

#include <gmock/gmock.h>

#include <QTest>

#include "download/ui/download_room.h"

namespace {

using testing::ElementsAre;
using Numbers = std::vector<std::int32_t>;

constexpr const char* kIdle =
    "Hint : для определения последнего сообщения в базе или последнего сообщения на форуме нажмите на кнопки \"?\"";
constexpr const char* kWait = "Дождитесь завершения скачивания текущего файла....";

TEST(DownloadWindows, OpenWithTheirTextsAndARange) {
  for (const Sort sort : kBothSorts) {
    const DownloadRoom room(sort, {7});
    EXPECT_EQ(room.window->windowTitle().toStdString(),
              room.is_fixed ? "Загрузка новых сообщений с форума Velmora" : "Загрузка новых сообщений - Беседка");
    const std::pair<const char*, const char*> texts[] = {
        {"chkManual", "Скачать сообщения с"},
        {"chkAuto", "Нифига не понял... Хочу просто скачать все новые сообщения"},
        {"cmdGetFirst", "?"},
        {"cmdGetLast", "?"},
        {"cmdDownload", "Загрузить"}};
    for (const auto& [button, text] : texts)
      EXPECT_EQ(room.Find<QAbstractButton>(button)->text().remove('&').toStdString(), text);
    EXPECT_EQ(room.Find<QLabel>("lblEnd")->text().toStdString(), "по");
    std::string headers;
    for (int column = 0; column < room.Rows()->columnCount(); ++column)
      headers += room.Rows()->headerData(column, Qt::Horizontal, Qt::DisplayRole).toString().toStdString() + " ";
    EXPECT_EQ(headers, "N Код Автор Тема Дата Статус ");
    EXPECT_EQ(room.Text("txtBegin") + " " + room.Text("txtEnd"), "7 107");
    EXPECT_TRUE(room.Find<QRadioButton>("chkAuto")->isChecked());
    EXPECT_FALSE(room.Find<QPushButton>("cmdCancelDL")->isEnabled());
    EXPECT_TRUE(room.Find<QPushButton>("cmdDownload")->isDefault());
  }
}

TEST(DownloadWindows, TheBoxesOpenForAManualRange) {
  const DownloadRoom room(Sort::kFixed);
  const auto* box = room.Find<QLineEdit>("txtBegin");
  const QPalette palette = room.window->palette();
  for (const bool manual : {true, false}) {
    room.Find<QRadioButton>(manual ? "chkManual" : "chkAuto")->setChecked(true);
    EXPECT_EQ(box->isEnabled(), manual);
    EXPECT_EQ(box->palette().color(QPalette::Base), palette.color(manual ? QPalette::Base : QPalette::Button));
  }
}

TEST(DownloadWindows, ABaseOfNoKnownForumLeavesNothingToChoose) {
  for (const Sort sort : kBothSorts) {
    DownloadRoom room(sort, {}, "/unknown.mdb");
    EXPECT_EQ(room.Text("txtHint"),
              "Из имени файла базы сообщений непонятно, что это за база. Поэтому откуда качать, я тоже не знаю...");
    for (const char* name : {"cmdGetFirst", "cmdGetLast", "chkManual", "chkAuto", "txtBegin", "txtEnd", "cmdCancelDL"})
      EXPECT_FALSE(room.Find<QWidget>(name)->isEnabled()) << name;
    room.Click("cmdDownload");
    ASSERT_EQ(room.dialogs.told.size(), 1U);
    EXPECT_EQ(room.dialogs.told[0].toStdString(),
              "Я не знаю откуда качать ! Из названия файла непонятно, что это за база");
  }
}

TEST(DownloadWindows, AnAutomaticSessionFetchesWhatIsNew) {
  for (const Sort sort : kBothSorts) {
    DownloadRoom room(sort, {5});
    room.last_on_forum = 8;
    room.Click("cmdDownload");
    EXPECT_EQ(room.InBase().size(), room.is_fixed ? 4U : 102U);
    EXPECT_EQ(room.Text("txtEnd"), room.is_fixed ? "105" : "106");
    EXPECT_EQ(room.Text("txtHint"), kIdle);
    EXPECT_EQ(room.Column(0).at(2), "00003");
    EXPECT_EQ(room.Column(1).at(2), room.is_fixed ? "00008" : "000008");
    EXPECT_THAT(room.Panel(room.is_fixed ? 2 : 1),
                testing::StartsWith(room.is_fixed ? "Загружено 3," : "Загружено 101,"));
  }
}

TEST(DownloadWindows, TheSmallButtonsFillTheBoxes) {
  for (const Sort sort : kBothSorts) {
    DownloadRoom room(sort, {5});
    room.last_on_forum = 44;
    for (const char* box : {"txtBegin", "txtEnd"}) room.Find<QLineEdit>(box)->clear();
    room.Click("cmdGetFirst");
    room.Click("cmdGetLast");
    EXPECT_EQ(room.Text("txtBegin") + " " + room.Text("txtEnd"), room.is_fixed ? "5 44" : "5 105");
    EXPECT_TRUE(room.IsIdle());
  }
}

TEST(DownloadWindows, StopIsHeardWhileAPageComes) {
  for (const Sort sort : kBothSorts) {
    DownloadRoom room(sort);
    room.server.on_request = [&] {
      if (room.server.requests().size() == 2) room.Click("cmdCancelDL");
    };
    room.Manual("1", "5");
    EXPECT_TRUE(room.IsIdle());
    EXPECT_EQ(room.Panel(1), "Остановлено пользователем");
    EXPECT_THAT(room.Column(5),
                room.is_fixed ? ElementsAre("Импортирован", "Not Loaded") : ElementsAre("Ок", "Остановлено..."));
    EXPECT_EQ(room.InBase(), Numbers{1});
    room.server.on_request = nullptr;
    room.Manual("1", "5");
    EXPECT_EQ(room.InBase().size(), 5U);
  }
}

TEST(DownloadWindows, ClosingDuringASessionStopsOneAndIsRefusedByTheOther) {
  for (const Sort sort : kBothSorts) {
    DownloadRoom room(sort);
    room.server.on_request = [&] {
      if (room.server.requests().size() != 2) return;
      QTest::keyClick(room.window.get(), Qt::Key_Escape);
      EXPECT_TRUE(room.window->isVisible());
      EXPECT_EQ(room.Text("txtHint"), kWait);
    };
    room.Manual("1", "3");
    EXPECT_EQ(room.window->isVisible(), !room.is_fixed);
    EXPECT_EQ(room.InBase(), room.is_fixed ? (Numbers{1}) : (Numbers{1, 2, 3}));
    QTest::keyClick(room.window.get(), Qt::Key_Escape);
    EXPECT_FALSE(room.window->isVisible());
  }
}

TEST(DownloadWindows, AnOpenedRowClosesTheWindowToBeRead) {
  for (const Sort sort : kBothSorts) {
    DownloadRoom room(sort);
    room.answer = [](int n) { return DownloadRoom::Whole(n == 1 ? "404 Not Found</TITLE>" : DownloadRoom::Page()); };
    room.Manual("1", "2");
    auto* list = room.Find<QAbstractItemView>("lvDownload");
    const auto open = [&](int added) {
      const QModelIndex row = room.Rows()->index(room.is_fixed ? 1 - added : added, 0);
      const QPoint place = list->visualRect(row).center();
      QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, place);
      QTest::mouseDClick(list->viewport(), Qt::LeftButton, {}, place);
    };
    open(0);  // there is no such message
    EXPECT_TRUE(room.window->isVisible());
    open(1);
    EXPECT_FALSE(room.window->isVisible());
    EXPECT_EQ(room.window->MessageToRead(), 2);
  }
}

TEST(DownloadWindows, MessagesThatWaitAreStoredWhileAPageIsAwaited) {
  for (const Sort sort : kBothSorts) {
    DownloadRoom room(sort);
    room.answer = [&](int number) {
      if (number == 4) {
        EXPECT_EQ(room.window->StoredMessages(), Numbers{1});
        room.alarm.Ring();
        EXPECT_EQ(room.window->StoredMessages(), (Numbers{1, 2, 3}));
      }
      return DownloadRoom::Whole(DownloadRoom::Page());
    };
    room.Manual("1", "5");
    EXPECT_EQ(room.window->StoredMessages(), (Numbers{1, 2, 3, 4, 5})) << "a session ends with all of them stored";
  }
}

TEST(DownloadWindows, ARowThatTheBaseRefusesInTheEndSaysSo) {
  for (const Sort sort : kBothSorts) {
    DownloadRoom room(sort);
    room.answer = [&](int number) {
      if (number == 3) room.files.FailAt(1, FaultyFileSystem::Fault::kFail, FaultyFileSystem::Lasting::kFromThenOn);
      return DownloadRoom::Whole(DownloadRoom::Page());
    };
    room.Manual("1", "3");
    EXPECT_THAT(room.Column(5), ElementsAre(room.is_fixed ? "Импортирован" : "Ок", "Не записано", "Не записано"));
    EXPECT_THAT(room.Find<QPlainTextEdit>("txtLog")->toPlainText().toStdString(),
                testing::ContainsRegex("Сообщение 2 не записано: Изменения не записаны.*\n.*Сообщение 3 не записано"));
    EXPECT_EQ(room.window->StoredMessages(), Numbers{1});
  }
}

}  // namespace
