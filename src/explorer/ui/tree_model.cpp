#include "explorer/ui/tree_model.h"

#include <algorithm>
#include <utility>

#include <QFont>

#include "ui/icons.h"
#include "ui/text.h"

namespace {

IconName IconOf(NodeImage image) {
  switch (image) {
    case NodeImage::kThreads: return IconName::kThreads;
    case NodeImage::kBroken: return IconName::kBrokenThreads;
    case NodeImage::kDates: return IconName::kDates;
    case NodeImage::kAuthors: return IconName::kAuthors;
    case NodeImage::kResults: return IconName::kResults;
    case NodeImage::kThreadStart: return IconName::kThreadStart;
    case NodeImage::kReply: return IconName::kReply;
    case NodeImage::kBrokenReply: return IconName::kBrokenReply;
    case NodeImage::kNewMessage: return IconName::kNewThread;
    case NodeImage::kMessage: return IconName::kMessage;
    case NodeImage::kFoundMessage: return IconName::kFoundMessage;
    case NodeImage::kYear: return IconName::kYear;
    case NodeImage::kMonth: return IconName::kMonth;
    case NodeImage::kDay: return IconName::kDay;
    case NodeImage::kAuthor: return IconName::kAuthor;
  }
  return IconName::kMessage;
}

// Says nothing but that it is bold; the view's own font gives the rest.
QVariant BoldFont() {
  QFont font;
  font.setBold(true);
  return font;
}

}  // namespace

NodeId TreeModel::NodeOf(const QModelIndex& index) const {
  return index.isValid() ? static_cast<NodeId>(index.internalId()) : kRootNode;
}

QModelIndex TreeModel::IndexOf(NodeId node) const {
  if (node == kRootNode || node == kNoNode) return {};
  return createIndex(static_cast<int>(tree_.Row(node)), 0, quintptr{node});
}

void TreeModel::SetTree(NodeTree tree) {
  beginResetModel();
  tree_ = std::move(tree);
  endResetModel();
}

void TreeModel::RemoveNode(NodeId node) {
  const int row = static_cast<int>(tree_.Row(node));
  beginRemoveRows(IndexOf(tree_.Parent(node)), row, row);
  tree_.Remove(node);
  endRemoveRows();
}

void TreeModel::ClearResults() {
  const NodeId old = tree_.Find(NodeKind::kResults);
  if (old != kNoNode) RemoveNode(old);
  const int row = rowCount();
  beginInsertRows({}, row, row);
  AddResultsNode(tree_);
  endInsertRows();
}

void TreeModel::ShowResults(std::span<const FoundMessage> found) {
  const NodeId old = tree_.Find(NodeKind::kResults);
  if (old != kNoNode) RemoveNode(old);
  const int row = rowCount();
  beginInsertRows({}, row, row);  // the node is announced together with all that is under it
  AddResultsNode(tree_, found);
  endInsertRows();
}

QModelIndex TreeModel::index(int row, int column, const QModelIndex& parent) const {
  if (row < 0 || row >= rowCount(parent) || column != 0) return {};
  return createIndex(row, 0, quintptr{tree_.Child(NodeOf(parent), static_cast<std::size_t>(row))});
}

QModelIndex TreeModel::parent(const QModelIndex& child) const {
  return child.isValid() ? IndexOf(tree_.Parent(NodeOf(child))) : QModelIndex();
}

int TreeModel::rowCount(const QModelIndex& parent) const { return static_cast<int>(tree_.ChildCount(NodeOf(parent))); }

int TreeModel::columnCount(const QModelIndex&) const { return 1; }

bool TreeModel::hasChildren(const QModelIndex& parent) const { return rowCount(parent) > 0; }

QVariant TreeModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) return {};
  const NodeId node = NodeOf(index);
  switch (role) {
    case Qt::DisplayRole: return TextOf(node);
    case Qt::DecorationRole: return Icon(IconOf(tree_.Image(node)));
    case Qt::FontRole: return tree_.IsNewMessage(node) ? BoldFont() : QVariant();
    case Qt::AccessibleTextRole: return AccessibleTextOf(node);
    default: return {};
  }
}

// A node is one line: line ends and tabs of a subject show as blanks.
QString TreeModel::TextOf(NodeId node) const {
  std::string text(tree_.Text(node));
  std::replace_if(
      text.begin(), text.end(), [](char c) { return c >= '\0' && c < ' '; }, ' ');
  return FromCp1251(text);
}

QString TreeModel::AccessibleTextOf(NodeId node) const {
  const QString text = TextOf(node);
  return tree_.Image(node) == NodeImage::kNewMessage ? text + QStringLiteral(", есть новые сообщения") : text;
}
