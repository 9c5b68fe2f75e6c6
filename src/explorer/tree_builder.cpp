#include "explorer/tree_builder.h"

#include <cmath>
#include <vector>

#include "base/cat.h"
#include "base/error.h"
#include "base/ru_literal.h"
#include "explorer/search_results.h"
#include "text/dates.h"
#include "text/strings.h"

namespace {

using user_settings::OpenThreads;
using user_settings::TreeSettings;

constexpr std::string_view kNoAuthor = "(...пусто...)"_ru;
constexpr std::string_view kSeparator = " - ";

struct TopNode {
  NodeKind kind;
  std::string_view text;
};

constexpr TopNode kTopNodes[] = {
    {NodeKind::kThreads, "По цепочке"_ru},
    {NodeKind::kBroken, "Оборванные цепочки"_ru},
    {NodeKind::kDates, "По дате"_ru},
    {NodeKind::kAuthors, "По автору"_ru},
};

std::int32_t YearNumber(const CivilTime& time) { return time.year; }
std::int32_t MonthNumber(const CivilTime& time) { return YearNumber(time) * 100 + time.month; }
std::int32_t DayNumber(const CivilTime& time) { return MonthNumber(time) * 100 + time.day; }

/// One pass over the rows. Each step of a row fails by itself: the trouble is told and the next step
/// goes on, so that no row ends the pass.
class TreeBuilder {
 public:
  TreeBuilder(const TreeSettings& settings, OleDate now, TreeTrouble& trouble)
      : settings_(settings), now_(now), trouble_(trouble) {}

  BuiltTree Build(TreeRows& rows, Progress& progress);

 private:
  // The date of a row, worked out once for all that needs it.
  struct Moment {
    OleDate date;
    std::int32_t day = 0;  // as in a day's key
    CivilTime time;
  };

  template <typename Step>
  void Try(Step step);
  void Reserve(std::size_t messages);
  void AddTopNodes();
  void AddRow(const TreeRow& row);
  std::optional<Moment> MomentOf(const TreeRow& row);
  NodeLabel ComposeLabel(const TreeRow& row, const std::optional<Moment>& moment);
  void AddToThreads(const TreeRow& row, NodeLabel label, const std::optional<Moment>& moment);
  NodeId AddThreadStart(NodeLabel label);
  NodeId AddReply(std::int32_t parent_number, NodeLabel label);
  bool IsNew(const Moment& moment) const;
  void Highlight(NodeId thread_start);
  void AddToDates(NodeLabel label, const Moment& moment);
  NodeId DayNode(const Moment& moment);
  NodeId Group(NodeId parent, NodeKind kind, std::int32_t number, std::string_view text);
  void AddToAuthors(const TreeRow& row, NodeLabel label);
  NodeId AuthorNode(std::string_view author);
  NodeId ThreadStartOf(NodeId message) const { return message < starts_.size() ? starts_[message] : kNoNode; }
  void SetThreadStart(NodeId message, NodeId start);

  const TreeSettings& settings_;
  const OleDate now_;
  TreeTrouble& trouble_;
  BuiltTree built_;
  NodeTree& tree_ = built_.tree;
  NodeId threads_ = kNoNode, broken_ = kNoNode, dates_ = kNoNode, authors_ = kNoNode;
  std::vector<NodeId> starts_;  // of the thread that each message node stands in; kNoNode in broken ones
  std::string text_;            // of the row's nodes
  // Neighbouring rows mostly share their day.
  std::int32_t last_text_day_ = 0, last_node_day_ = 0;
  std::string day_text_;
  NodeId day_node_ = kNoNode;
};

template <typename Step>
void TreeBuilder::Try(Step step) {
  try {
    step();
  } catch (const Error& error) {
    trouble_.Tell(Cat(error.number(), "\r\n", error.what()));
  }
}

BuiltTree TreeBuilder::Build(TreeRows& rows, Progress& progress) {
  constexpr std::int32_t kRowsPerAdvance = 20;
  const std::int32_t count = rows.Count();
  Reserve(static_cast<std::size_t>(count));
  AddTopNodes();
  std::int32_t done = 0;
  bool go_on = true;
  while (go_on && rows.Next()) {
    if (++done % kRowsPerAdvance == 0) go_on = progress.Advance(static_cast<int>(std::int64_t{100} * done / count));
    Try([&] { AddRow(rows.Current()); });
  }
  built_.messages = go_on ? count : done;
  if (authors_ != kNoNode) tree_.SortChildren(authors_);
  tree_.ShrinkToFit();
  built_.status = Cat("Загрузил "_ru, built_.messages, " сообщений, из них несогласованных -"_ru, built_.inconsistent);
  return std::move(built_);
}

void TreeBuilder::Reserve(std::size_t messages) {
  constexpr std::size_t kCharacters = 64;  // of a node's text, rather too many
  const bool groups = settings_.BuildTreeByDate || settings_.BuildTreeByAuthor;
  const std::size_t others = groups ? messages / 16 + 64 : 8;  // top nodes, days, authors
  tree_.Reserve(messages + others, messages * kCharacters);
  if (settings_.BuildTreeByThread) starts_.reserve(messages + others);
}

void TreeBuilder::AddTopNodes() {
  for (const auto& top : kTopNodes) tree_.Add(kRootNode, Placement::kLastChild, top.kind, 0, top.text);
  AddResultsNode(tree_);
  threads_ = tree_.Find(NodeKind::kThreads);
  broken_ = tree_.Find(NodeKind::kBroken);
  dates_ = tree_.Find(NodeKind::kDates);
  authors_ = tree_.Find(NodeKind::kAuthors);
}

void TreeBuilder::AddRow(const TreeRow& row) {
  const std::optional<Moment> moment = MomentOf(row);
  const NodeLabel label = ComposeLabel(row, moment);
  if (settings_.BuildTreeByThread) Try([&] { AddToThreads(row, label, moment); });
  if (settings_.BuildTreeByDate && moment) Try([&] { AddToDates(label, *moment); });
  if (settings_.BuildTreeByAuthor) Try([&] { AddToAuthors(row, label); });
}

std::optional<TreeBuilder::Moment> TreeBuilder::MomentOf(const TreeRow& row) {
  std::optional<Moment> moment;
  if (row.Дата)
    Try([&] {
      const CivilTime time = ole_date::ToCivil(*row.Дата);
      moment = {*row.Дата, DayNumber(time), time};
    });
  return moment;
}

NodeLabel TreeBuilder::ComposeLabel(const TreeRow& row, const std::optional<Moment>& moment) {
  text_ = row.Тема;
  if (settings_.show_author) {
    text_ += kSeparator;
    text_ += text::Trim(row.Автор).empty() ? kNoAuthor : row.Автор;
  }
  if (settings_.show_date) {
    text_ += kSeparator;
    if (moment && moment->day != last_text_day_) {
      day_text_ = text::FormatDate(moment->date, "dd.mm.yy");
      last_text_day_ = moment->day;
    }
    if (moment) text_ += day_text_;
  }
  return tree_.AddLabel(row.Код, text_);
}

void TreeBuilder::AddToThreads(const TreeRow& row, NodeLabel label, const std::optional<Moment>& moment) {
  const NodeId node = row.Вответ == 0 ? AddThreadStart(label) : AddReply(row.Вответ, label);
  if (!moment || !IsNew(*moment)) return;
  tree_.MarkNewMessage(node);
  Highlight(ThreadStartOf(node));
}

NodeId TreeBuilder::AddThreadStart(NodeLabel label) {
  const NodeId node = tree_.Add(threads_, Placement::kFirstChild, NodeKind::kThreadMessage, label);
  SetThreadStart(node, node);
  tree_.SetExpanded(node, settings_.open_threads == OpenThreads::kAll);
  return node;
}

NodeId TreeBuilder::AddReply(std::int32_t parent_number, NodeLabel label) {
  const NodeId parent = tree_.Find(NodeKind::kThreadMessage, parent_number);
  const bool is_broken = parent == kNoNode;
  const NodeId node = tree_.Add(is_broken ? broken_ : parent, Placement::kLastChild, NodeKind::kThreadMessage, label);
  if (is_broken)
    ++built_.inconsistent;
  else
    SetThreadStart(node, ThreadStartOf(parent));
  tree_.SetExpanded(node, true);
  return node;
}

void TreeBuilder::SetThreadStart(NodeId message, NodeId start) {
  if (starts_.size() <= message) starts_.resize(std::size_t{message} + 1, kNoNode);
  starts_[message] = start;
}

// The age is compared in whole seconds: the difference of two fractions of a day is not exact, and a
// message of exactly 48 hours is not new on the second day.
bool TreeBuilder::IsNew(const Moment& moment) const {
  constexpr double kSecondsPerDay = 86'400;
  return std::round((now_.days - moment.date.days) * kSecondsPerDay) <
         settings_.HighlightMessagesByDays * kSecondsPerDay;
}

void TreeBuilder::Highlight(NodeId thread_start) {
  if (thread_start == kNoNode) return;  // broken threads have no start to mark
  tree_.MarkNew(thread_start);
  if (settings_.open_threads == OpenThreads::kNew) tree_.SetExpanded(thread_start, true);
}

void TreeBuilder::AddToDates(NodeLabel label, const Moment& moment) {
  if (moment.day != last_node_day_) {
    day_node_ = DayNode(moment);
    last_node_day_ = moment.day;
  }
  tree_.Add(day_node_, Placement::kLastChild, NodeKind::kDateMessage, label);
}

NodeId TreeBuilder::DayNode(const Moment& moment) {
  const CivilTime& time = moment.time;
  const NodeId year = Group(dates_, NodeKind::kYear, YearNumber(time), Cat(time.year, " год"_ru));
  const NodeId month = Group(year, NodeKind::kMonth, MonthNumber(time), text::FormatDate(moment.date, "mmmm"));
  return Group(month, NodeKind::kDay, DayNumber(time), Cat(time.day));
}

NodeId TreeBuilder::Group(NodeId parent, NodeKind kind, std::int32_t number, std::string_view text) {
  const NodeId present = tree_.Find(kind, number);
  return present != kNoNode ? present : tree_.Add(parent, Placement::kLastChild, kind, number, text);
}

void TreeBuilder::AddToAuthors(const TreeRow& row, NodeLabel label) {
  const std::string_view author = text::Trim(row.Автор);
  tree_.Add(AuthorNode(author.empty() ? kNoAuthor : author), Placement::kLastChild, NodeKind::kAuthorMessage, label);
}

NodeId TreeBuilder::AuthorNode(std::string_view author) {
  const NodeId present = tree_.Find({.kind = NodeKind::kAuthor, .number = 0, .author = author});
  if (present != kNoNode) return present;
  return tree_.Add(authors_, Placement::kLastChild, NodeKind::kAuthor, 0, author);
}

}  // namespace

std::string TreeStatement(const user_settings::TreeSettings& settings) {
  std::string statement(settings.BuildTreeByAuthor || settings.show_author ? "SELECT Код, Вответ, Тема, Дата, Автор"_ru
                                                                           : "SELECT Код, Вответ, Тема, Дата"_ru);
  statement += " from БазаИндекс"_ru;
  if (settings.LoadDays != user_settings::kWholeArchive) statement += Cat(" where Дата>now()-"_ru, settings.LoadDays);
  statement += " order by Код"_ru;
  return statement;
}

BuiltTree BuildTree(TreeRows& rows, const user_settings::TreeSettings& settings, const Clock& clock, Progress& progress,
                    TreeTrouble& trouble) {
  if (rows.Count() == 0) {
    BuiltTree empty;
    empty.status =
        "В заданном промежутке дат не найдено ни одного сообщения. Пожалуйста, нажмите кнопку АРХИВ и выберите большее количество дней"_ru;
    return empty;
  }
  return TreeBuilder(settings, clock.Now(), trouble).Build(rows, progress);
}
