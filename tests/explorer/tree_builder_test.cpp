#include "explorer/tree_builder.h"

#include <gtest/gtest.h>

#include <cmath>

#include "base/ru_literal.h"
#include "row_list.h"
#include "support/fixed_clock.h"
#include "tree_text.h"

namespace {

using cp1251::ToUtf8;
using user_settings::OpenThreads;
using user_settings::TreeSettings;

constexpr OleDate kNow{37330.5};  // 2002-03-15 12:00
constexpr double kHour = 1.0 / 24;

constexpr OleDate Ago(double hours) { return {kNow.days - hours * kHour}; }

struct Told : TreeTrouble {
  void Tell(std::string_view text) override { all += ToUtf8(text) + "\n"; }
  std::string all;
};

struct Heard : Progress {
  bool Advance(int percent) override {
    percents.push_back(percent);
    return percent < stop_at;
  }
  int stop_at = 101;
  std::vector<int> percents;
};

/// A tree, and what was told of it: each trouble, then the status.
struct Result {
  NodeTree tree;
  std::string told;
};

Result Build(std::vector<ListRow> list, const TreeSettings& settings) {
  RowList rows(std::move(list));
  Told told;
  NoProgress progress;
  BuiltTree built = BuildTree(rows, settings, FixedClock(kNow), progress, told);
  return {std::move(built.tree), told.all + ToUtf8(built.status)};
}

TEST(TreeStatement, AsksForWhatTheTreeNeeds) {
  const struct {
    TreeSettings settings;
    std::string want;
  } cases[] = {
      {{}, "SELECT Код, Вответ, Тема, Дата from БазаИндекс where Дата>now()-30 order by Код"},
      {{.LoadDays = 3000}, "SELECT Код, Вответ, Тема, Дата from БазаИндекс order by Код"},
      {{.LoadDays = 0, .BuildTreeByAuthor = true},
       "SELECT Код, Вответ, Тема, Дата, Автор from БазаИндекс where Дата>now()-0 order by Код"},
      {{.LoadDays = 3000, .show_author = true}, "SELECT Код, Вответ, Тема, Дата, Автор from БазаИндекс order by Код"},
      {{.LoadDays = 3000, .BuildTreeByDate = true, .show_date = true},
       "SELECT Код, Вответ, Тема, Дата from БазаИндекс order by Код"},
  };
  for (const auto& c : cases) EXPECT_EQ(ToUtf8(TreeStatement(c.settings)), c.want);
}

TEST(TreeBuilder, PutsEveryRowWhereItBelongsAndTellsWhatIsWrong) {
  constexpr std::string_view ivan_in_blanks = " Иван "_ru, ivan_loud = "ИВАН"_ru, yana = "Яна"_ru;
  const ListRow old_1{1, 0, "t", "a", Ago(1000)}, old_2{2, 0, "t", "a", Ago(1000)}, new_3{3, 2, "t", "a", Ago(1)};
  const struct {
    const char* what;
    std::vector<ListRow> rows;
    TreeSettings settings;
    const char *tree, *told;
  } cases[] = {
      {"no row",
       {},
       {},
       "",
       "В заданном промежутке дат не найдено ни одного сообщения. Пожалуйста, нажмите кнопку АРХИВ и выберите большее "
       "количество дней"},
      {"the newest thread on top, replies in order",
       {{1, 0}, {2, 1}, {3, 0}, {4, 1}, {5, 2}, {6, 3}},
       {},
       "Цепочка\n  C0000003\n    C0000006 +\n"
       "  C0000001\n    C0000002 +\n      C0000005 +\n    C0000004 +\nХлам\nДата\nАвтор\nРезультаты\n",
       "Загрузил 6 сообщений, из них несогласованных -0"},
      {"parents absent, to 10, itself, later, no number at all; more digits than a key was made for",
       {{10, 3}, {11, 10}, {12, 12}, {13, 14}, {14, 0}, {15, -5}, {12'345'678, 14}},
       {},
       "Цепочка\n  C0000014\n    C12345678 +\n"
       "Хлам\n  C0000010 + !\n    C0000011 +\n  C0000012 + !\n  C0000013 + !\n  C0000015 + !\n"
       "Дата\nАвтор\nРезультаты\n",
       "Загрузил 7 сообщений, из них несогласованных -4"},
      {"all threads open",
       {old_1, old_2, new_3},
       {.open_threads = OpenThreads::kAll},
       "Цепочка\n  C0000002 + *\n    C0000003 +\n  C0000001 +\nХлам\nДата\nАвтор\nРезультаты\n",
       "Загрузил 3 сообщений, из них несогласованных -0"},
      {"new ones open",
       {old_1, old_2, new_3},
       {.open_threads = OpenThreads::kNew},
       "Цепочка\n  C0000002 + *\n    C0000003 +\n  C0000001\nХлам\nДата\nАвтор\nРезультаты\n",
       "Загрузил 3 сообщений, из них несогласованных -0"},
      {"a new message marks nothing outside its thread",
       {new_3},
       {.BuildTreeByDate = true, .BuildTreeByAuthor = true, .open_threads = OpenThreads::kNew},
       "Цепочка\nХлам\n  C0000003 + !\nДата\n  Y2002\n    Y2002M3\n      Y2002M3Z15\n        D0000003\n"
       "Автор\n  Wa\n    A0000003\nРезультаты\n",
       "Загрузил 1 сообщений, из них несогласованных -1"},
      {"by date and author; the last half second belongs to the next day",
       {{1, 0, "t", yana, OleDate{37330.25}},
        {2, 0, "t", ivan_in_blanks, OleDate{37330.75}},
        {3, 0, "t", ivan_loud, OleDate{36995.5}},
        {4, 0, "t", "", OleDate{37310}},
        {5, 0, "t", "   ", std::nullopt},
        {6, 9, "t", yana, OleDate{37330.9999999}}},
       {.BuildTreeByThread = false, .BuildTreeByDate = true, .BuildTreeByAuthor = true},
       "Цепочка\nХлам\nДата\n"
       "  Y2002\n    Y2002M3\n      Y2002M3Z15\n        D0000001\n        D0000002\n"
       "      Y2002M3Z16\n        D0000006\n    Y2002M2\n      Y2002M2Z23\n        D0000004\n"
       "  Y2001\n    Y2001M4\n      Y2001M4Z14\n        D0000003\n"
       "Автор\n  W(...пусто...)\n    A0000004\n    A0000005\n  WИВАН\n    A0000003\n  WИван\n    A0000002\n"
       "  WЯна\n    A0000001\n    A0000006\nРезультаты\n",
       "Загрузил 6 сообщений, из них несогласованных -0"},
      {"no grouping",
       {{1}},
       {.BuildTreeByThread = false},
       "Цепочка\nХлам\nДата\nАвтор\nРезультаты\n",
       "Загрузил 1 сообщений, из них несогласованных -0"},
      {"a number twice, an unreadable row, a date that is none",
       {{1}, {1}, {RowList::kUnreadable}, {2, 1, "t", "a", OleDate{1e300}}, {3, 2, "t", "a", OleDate{37330}}},
       {.BuildTreeByDate = true, .show_date = true},
       "Цепочка\n  C0000001 *\n    C0000002 +\n      C0000003 +\nХлам\n"
       "Дата\n  Y2002\n    Y2002M3\n      Y2002M3Z15\n        D0000003\nАвтор\nРезультаты\n",
       "35602\r\nТакой узел уже есть\n3421\r\nunreadable\n13\r\nТакой даты не бывает\n"
       "Загрузил 5 сообщений, из них несогласованных -0"},
  };
  for (const auto& c : cases) {
    const Result built = Build(c.rows, c.settings);
    EXPECT_EQ(TreeText(built.tree), c.tree) << c.what;
    EXPECT_EQ(built.told, c.told) << c.what;
  }
}

TEST(TreeBuilder, MarksAThreadAtItsStartWhenItHoldsAMessageOfLessThanTwoDays) {
  const double two_days_ago = kNow.days - 2;
  const struct {
    const char* what;
    std::optional<OleDate> date;
    bool is_new;
  } cases[] = {
      {"47 hours", Ago(47), true},
      {"a second short of 48 hours", Ago(48 - kHour / 150), true},
      {"48 hours", Ago(48), false},
      {"48 hours, rounded down", OleDate{std::nextafter(two_days_ago, 0)}, false},
      {"48 hours, rounded up", OleDate{std::nextafter(two_days_ago, kNow.days)}, false},
      {"a year", Ago(24 * 365), false},
      {"in the future", Ago(-24), true},
      {"no date", std::nullopt, false},
  };
  for (const auto& c : cases)
    EXPECT_EQ(TreeText(Build({{1, 0, "t", "a", Ago(1000)}, {2, 1, "t", "a", c.date}}, {}).tree),
              std::string("Цепочка\n  C0000001") + (c.is_new ? " *" : "") +
                  "\n    C0000002 +\nХлам\nДата\nАвтор\nРезультаты\n")
        << c.what;
}

TEST(TreeBuilder, ComposesNodeTexts) {
  const struct {
    ListRow row;
    bool author, date;
    std::string want;
  } cases[] = {
      {{1, 0, "Курс"_ru, "Иван"_ru, kNow}, false, false, "Курс"},
      {{1, 0, "Курс"_ru, "Иван"_ru, kNow}, true, false, "Курс - Иван"},
      {{1, 0, "Курс"_ru, "Иван"_ru, kNow}, true, true, "Курс - Иван - 15.03.02"},
      {{1, 0, "Курс"_ru, "Иван"_ru, kNow}, false, true, "Курс - 15.03.02"},
      {{1, 0, "", "  ", std::nullopt}, true, true, " - (...пусто...) - "},
      {{1, 0, "", "", OleDate{0}}, false, true, " - 30.12.99"},
  };
  for (const auto& c : cases) {
    const Result built = Build({c.row}, {.show_author = c.author, .show_date = c.date});
    EXPECT_EQ(ToUtf8(built.tree.Text(built.tree.Find(NodeKind::kThreadMessage, 1))), c.want);
  }
}

TEST(TreeBuilder, ReportsEveryTwentiethRowAndStopsWhenAsked) {
  std::vector<ListRow> list;
  for (int i = 1; i <= 90; ++i) list.push_back({.Код = i});
  const struct {
    int stop_at;
    std::vector<int> percents;
    std::string status;
  } cases[] = {{101, {22, 44, 66, 88}, "Загрузил 90 сообщений, из них несогласованных -0"},
               {40, {22, 44}, "Загрузил 40 сообщений, из них несогласованных -0"}};
  for (const auto& c : cases) {
    RowList rows(list);
    Heard heard;
    heard.stop_at = c.stop_at;
    Told told;
    const BuiltTree built = BuildTree(rows, {}, FixedClock(kNow), heard, told);
    EXPECT_EQ(heard.percents, c.percents);
    EXPECT_EQ(ToUtf8(built.status), c.status);
    EXPECT_EQ(built.tree.ChildCount(built.tree.Find(NodeKind::kThreads)), static_cast<std::size_t>(built.messages));
  }
}

}  // namespace
