// Real windows against a server that does all that a server should not do.

#include <gmock/gmock.h>

#include "download/ui/download_room.h"

namespace {

using Answer = ScriptedServer::Answer;
using Numbers = std::vector<std::int32_t>;

struct Fault {
  const char* name;
  Answer answer;
  const char *fixed, *configured;  // the status of its row
  bool stored = false;             // is it in the base?
};

std::vector<Fault> Faults() {
  const QByteArray ok = "HTTP/1.1 200 OK\r\n";
  const QByteArray gzip = ok + "Content-Encoding: gzip\r\nContent-Length: ";
  const QByteArray squeezed = QByteArray::fromHex(  // the page of the room
      "1f8b0800000000000203b329c92cc949b50bb1d187306c4a522b4a128b5213159cfd7d826d4d4d1582fcc3836"
      "dcdec9c802aa052763649767e36fa497636997686a6fa06c6fa064636fa99760a83120000fb8cc2f4e2000000");
  const Answer slow = {.bytes = DownloadRoom::Whole(DownloadRoom::Page()).bytes, .pace = Pace::kByteByByte};
  const char *failed = "TimeOut", *no_page = " Нет коннекта", *imported = "Импортирован";
  return {
      {"closed at once", {.bytes = ""}, failed, no_page},
      {"reset", {.bytes = ok, .then = Then::kReset}, failed, no_page},
      {"wrong length", {.bytes = ok + "Content-Length: 9999\r\n\r\nshort"}, failed, no_page},
      {"endless body", {.bytes = ok + "\r\n", .for_ever = QByteArray(5000, 'x')}, failed, no_page},
      {"headers without end", {.bytes = ok, .for_ever = QByteArray("X: more\r\n").repeated(500)}, failed, no_page},
      {"endless redirection", {.bytes = "HTTP/1.1 302 Found\r\nLocation: /messages/2.html\r\n\r\n"}, failed, no_page},
      {"broken gzip", {.bytes = gzip + "3\r\n\r\nxyz"}, failed, no_page},
      {"404", DownloadRoom::Whole("<TITLE>404 Not Found</TITLE>", "404 Not Found"), "Not Found (404)", " Не найден"},
      {"500", DownloadRoom::Whole("", "500 Internal Server Error"), "Not Loaded", no_page},
      {"slow", slow, imported, "Ок", true},
      {"gzip", {.bytes = gzip + QByteArray::number(squeezed.size()) + "\r\n\r\n" + squeezed}, imported, "Ок", true},
  };
}

TEST(DownloadWindows, AFaultyPageIsLeftOutAndFetchedTheNextTime) {
  for (const Sort sort : kBothSorts)
    for (const Fault& fault : Faults()) {
      SCOPED_TRACE(Cat(fault.name, sort == Sort::kFixed ? ", fixed" : ", configured"));
      DownloadRoom room(sort);
      const auto faulty = [&](int n) { return n == 2 ? fault.answer : DownloadRoom::Whole(DownloadRoom::Page()); };
      room.answer = faulty;
      room.Manual("1", "3");
      EXPECT_TRUE(room.IsIdle());
      EXPECT_EQ(room.Column(5).at(1), room.is_fixed ? fault.fixed : fault.configured);
      EXPECT_EQ(room.InBase(), fault.stored ? (Numbers{1, 2, 3}) : (Numbers{1, 3}));
      room.answer = nullptr;
      room.Manual("1", "3");
      EXPECT_EQ(room.InBase(), (Numbers{1, 2, 3}));
      EXPECT_TRUE(room.dialogs.told.empty());
    }
}

TEST(DownloadWindows, OnlyWholePagesAreStoredWhereverTheConnectionBreaks) {
  constexpr int kPlaces = 200;
  for (const Sort sort : kBothSorts) {
    DownloadRoom room(sort);
    const Answer whole = DownloadRoom::Whole(DownloadRoom::Page());
    room.answer = [&](int number) {
      const auto cut = whole.bytes.size() * (number - 1) / kPlaces;
      return number > kPlaces ? whole : Answer{.bytes = whole.bytes.left(cut), .then = Then::kReset};
    };
    room.Manual("1", "201");
    EXPECT_EQ(room.InBase(), Numbers{201});
    room.answer = nullptr;
    room.Manual("1", "201");
    EXPECT_EQ(room.InBase().size(), 201U);
    EXPECT_EQ(room.window->StoredMessages().size(), 201U);
    EXPECT_TRUE(room.dialogs.told.empty());
  }
}

TEST(DownloadWindows, AForumThatIsNotThereIsTold) {
  for (const Sort sort : kBothSorts) {
    DownloadRoom room(sort);
    room.server.Close();
    room.WriteForumIni();
    room.Manual("1", "2");
    EXPECT_TRUE(room.IsIdle());
    EXPECT_EQ(room.Column(5), std::vector<std::string>(2, room.is_fixed ? "TimeOut" : " Нет коннекта"));
    EXPECT_TRUE(room.InBase().empty());
  }
}

TEST(DownloadWindows, ASilentForumIsGivenUpAfterTheTimeOfForumIni) {
  DownloadRoom room(Sort::kConfigured, {2});
  room.WriteForumIni(1);
  room.answer = [](int) { return Answer{.bytes = "HTTP/1.1 200 OK\r\n", .then = Then::kKeepOpen}; };
  room.Manual("1", "2");
  EXPECT_THAT(room.Column(5), testing::ElementsAre(" Нет коннекта", "Пропущен : уже есть"));
  EXPECT_EQ(room.InBase(), Numbers{2});
}

}  // namespace
