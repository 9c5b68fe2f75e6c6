#include "sql/saved_query.h"

#include <gtest/gtest.h>

#include "base/error.h"
#include "test_base.h"

namespace sql {
namespace {

jet::QueryRow Piece(int attribute, int flag, std::string_view name1, std::string_view expression,
                    std::string_view name2 = {}) {
  return {attribute, 1, flag, Ru(name1), Ru(name2), Ru(expression)};
}

TEST(SavedQuery, IsPutTogetherFromItsPieces) {
  const struct {
    std::vector<jet::QueryRow> rows;
    std::string_view text;
  } cases[] = {
      {{Piece(0, 0, "", ""), Piece(1, 1, "", ""), Piece(3, 0, "", ""), Piece(5, 0, "База", ""),
        Piece(6, 0, "", "[Код]"), Piece(6, 0, "Кто", "[Автор]"), Piece(255, 0, "", "")},
       "SELECT [Код], [Автор] AS Кто FROM База;"},
      {{Piece(3, 1, "", ""), Piece(5, 0, "База", ""), Piece(11, 0, "", "[Код]"), Piece(11, 0, "D", "Дата")},
       "SELECT * FROM База ORDER BY [Код], Дата DESC;"},
      {{Piece(3, 0x10 | 0x02, "5", ""), Piece(5, 0, "Моя таблица", "", "т"), Piece(6, 0, "", "a"),
        Piece(8, 0, "", "a>1"), Piece(9, 0, "", "a"), Piece(9, 0, "", "b"), Piece(10, 0, "", "count(*)>2")},
       "SELECT DISTINCT TOP 5 a FROM [Моя таблица] AS т WHERE a>1 GROUP BY a, b HAVING count(*)>2;"},
      {{Piece(2, 4, "Сколько", ""), Piece(5, 0, "t", ""), Piece(6, 0, "", "a")},
       "PARAMETERS Сколько Long; SELECT a FROM t;"},
      {{Piece(5, 0, "a", ""), Piece(5, 0, "b", ""), Piece(5, 0, "c", ""), Piece(6, 0, "", "a.x"),
        Piece(7, 1, "a", "a.x = b.x", "b"), Piece(7, 2, "b", "b.y = c.y", "c")},
       "SELECT a.x FROM (a INNER JOIN b ON a.x = b.x) LEFT JOIN c ON b.y = c.y;"},
      {{Piece(1, 5, "", ""), Piece(3, 1, "", ""), Piece(5, 0, "t", ""), Piece(8, 0, "", "a=1")},
       "DELETE * FROM t WHERE a=1;"},
      {{Piece(1, 4, "", ""), Piece(5, 0, "t", ""), Piece(6, 0, "", "1", "a")}, "UPDATE t SET a = 1;"},
  };
  for (const auto& c : cases) EXPECT_EQ(cp1251::ToUtf8(QueryText(c.rows)), c.text);
}

TEST(SavedQuery, RefusesWhatItDoesNotKnow) {
  EXPECT_THROW(QueryText({Piece(1, 77, "", "")}), SqlError);
  EXPECT_THROW(QueryText({Piece(5, 0, "a", ""), Piece(7, 9, "a", "x", "a")}), SqlError);
}

}  // namespace
}  // namespace sql
