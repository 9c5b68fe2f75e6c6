// What a user does in the two download windows, and what then stands in their controls.

#include <gmock/gmock.h>

#include <QHeaderView>
#include <QTest>

#include "download/ui/download_room.h"
#include "support/scripted_fetcher.h"

namespace {

using testing::ElementsAre;
using testing::StartsWith;
using Numbers = std::vector<std::int32_t>;

constexpr const char* kIdle =
    "Hint : для определения последнего сообщения в базе или последнего сообщения на форуме нажмите на кнопки \"?\"";
constexpr const char* kWait = "Дождитесь завершения скачивания текущего файла....";

TEST(DownloadWindows, OpenWithTheirTextsAndARange) {
  for (const Sort sort : kBothSorts) {
    const DownloadRoom room(sort, {7});
    EXPECT_EQ(room.window->windowTitle().toStdString(),
              room.is_fixed ? "Загрузка новых сообщений с форума Velmora" : "Загрузка новых сообщений - Беседка");
    const struct {
      const char *button, *text;
    } texts[] = {{"chkManual", "Скачать сообщения с"},
                 {"chkAuto", "Нифига не понял... Хочу просто скачать все новые сообщения"},
                 {"cmdGetFirst", "?"},
                 {"cmdGetLast", "?"},
                 {"cmdDownload", "Загрузить"}};
    for (const auto& t : texts)
      EXPECT_EQ(room.Find<QAbstractButton>(t.button)->text().remove('&').toStdString(), t.text);
    EXPECT_EQ(room.Find<QLabel>("lblEnd")->text().toStdString(), "по");
    std::vector<std::string> headers;
    for (int column = 0; column < room.Rows()->columnCount(); ++column)
      headers.push_back(room.Rows()->headerData(column, Qt::Horizontal, Qt::DisplayRole).toString().toStdString());
    EXPECT_THAT(headers, ElementsAre("N", "Код", "Автор", "Тема", "Дата", "Статус"));
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
  DownloadRoom fixed(Sort::kFixed, {5}), configured(Sort::kConfigured, {5});
  fixed.last_on_forum = 8;
  fixed.Click("cmdDownload");
  EXPECT_THAT(fixed.Column(0), ElementsAre("00001", "00002", "00003"));
  EXPECT_THAT(fixed.Column(1), ElementsAre("00006", "00007", "00008"));
  EXPECT_EQ(fixed.Panel(2), "Загружено 3, не найдено 0, пропущено 0. Всего к загрузке - 2");
  EXPECT_EQ(fixed.InBase(), (Numbers{5, 6, 7, 8}));
  fixed.Click("cmdDownload");
  EXPECT_EQ(fixed.Text("txtHint"), "На форуме нет новых сообщений");
  configured.Click("cmdDownload");
  EXPECT_EQ(configured.Text("txtEnd"), "106");
  EXPECT_EQ(configured.InBase().size(), 102U);
  EXPECT_EQ(configured.Panel(1), "Загружено 101, не найдено 0, пропущено 0. Всего к загрузке - 101");
  EXPECT_EQ(configured.Text("txtHint"), kIdle);
}

TEST(DownloadWindows, AWrongRangeIsToldInTheHint) {
  constexpr const char* kBad = "Ошибка в номере первого или последнего сообщения. Исправьте...";
  constexpr const char* kOrder = "Ошибка : номер первого должен быть меньше последнего...";
  const struct {
    const char *begin, *end, *fixed, *configured;
  } cases[] = {{"0", "5", kBad, kBad},
               {"5", "100001", kBad, kBad},
               {"", "5", kBad, kBad},
               {"6", "5", "Ошибка : номер первого сообщения равен или больше последнего...", kOrder},
               {"5", "5", kIdle, kOrder}};
  for (const Sort sort : kBothSorts)
    for (const auto& c : cases) {
      const DownloadRoom room(sort);
      room.Manual(c.begin, c.end);
      EXPECT_EQ(room.Text("txtHint"), room.is_fixed ? c.fixed : c.configured) << c.begin << " to " << c.end;
    }
}

TEST(DownloadWindows, TheSmallButtonsFillTheBoxes) {
  DownloadRoom fixed(Sort::kFixed, {5}), configured(Sort::kConfigured, {5});
  fixed.last_on_forum = 44;
  for (const DownloadRoom* room : {&fixed, &configured}) {
    for (const char* box : {"txtBegin", "txtEnd"}) room->Find<QLineEdit>(box)->clear();
    room->Click("cmdGetFirst");
    room->Click("cmdGetLast");
    EXPECT_EQ(room->Text("txtBegin"), "5");
    EXPECT_TRUE(room->IsIdle());
  }
  EXPECT_EQ(fixed.Text("txtEnd"), "44");
  EXPECT_EQ(configured.Text("txtEnd"), "105");
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

TEST(DownloadWindows, TheConfiguredOneTellsEachStateOfATransfer) {
  DownloadRoom room(Sort::kConfigured);
  const struct {
    int state;
    const char* text;
  } states[] = {{0, "Ничего не происходит ..."}, {1, "Поиск сервера ..."},          {2, "Сервер найден ..."},
                {3, "Установка соединения ..."}, {4, "Соединение установлено ..."}, {5, "Отсылка запроса ..."},
                {6, "Запрос отправлен ..."},     {7, "Получение ответа ..."},       {8, "Ответ получен ..."},
                {9, "Разрыв соединения ..."},    {10, "Соединение разорвано ..."},  {11, "Ошибка соединения ..."},
                {12, "Ответ обработан ..."}};
  Script script;
  ScriptedFetcher ie(script);
  const frmDownload2 window({room.base, room.ini, room.log, room.clock, room.dialogs, ie, room.alarm});
  for (const auto& s : states) {
    ie.TellState(s.state);
    EXPECT_EQ(window.findChild<StatusPanels*>("dlBar")->Panel(1).toStdString(), s.text);
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
