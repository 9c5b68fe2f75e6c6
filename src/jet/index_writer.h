#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "jet/index_node.h"
#include "jet/index_page.h"
#include "jet/index_page_writer.h"
#include "jet/table_def.h"
#include "jet/transaction.h"

namespace jet {

/// Changes the entries of one index. Keys are what KeyOfRow gives; whether a key may stand twice, and
/// the count of distinct keys, are the caller's business. When anything is thrown the transaction must
/// not be committed.
class IndexWriter {
 public:
  /// @param table, index  outlive the writer
  IndexWriter(Transaction& transaction, const TableDef& table, const RealIndex& index)
      : transaction_(&transaction), table_(table.page), index_(&index) {}

  /// Does any row have this key?
  bool HasKey(std::string_view key) const;

  /// @throws Error 3163 when the key is longer than a page of the index can take
  /// @throws FormatError when the entry is there already, or the index is damaged
  void Insert(std::string_view key, RowId row);

  /// When the key does not lead to the row's entry (of text it may be unknown) all entries are looked
  /// through for the row's address.
  /// @throws FormatError when the index has no entry for the row, or is damaged
  void Delete(std::string_view key, RowId row);

 private:
  /// The nodes from the root down to a leaf; empty when the root is a leaf.
  using Path = std::vector<std::uint32_t>;
  struct Place {
    Path path;
    IndexEntries leaf;  // stands before the first entry that is not less than the one looked for
  };

  const PageFile& pages() const { return transaction_->pages(); }
  const Layout& layout() const { return pages().layout(); }
  IndexPageContent Content(std::uint32_t page) const { return ReadIndexPage(pages(), page, table_); }
  Place Find(Bytes entry) const;
  std::string FindByRow(RowId row) const;
  std::string GreatestBelow(std::uint32_t page) const;

  void InsertInto(Place& place, const std::string& entry, std::size_t at, bool at_end);
  void SplitLeaf(const Path& parents, std::uint32_t page, IndexPageContent left, bool at_end);
  void SplitNode(const Path& parents, IndexNode left);
  void PutBeside(const Path& parents, std::uint32_t page, IndexPageContent left, std::string greatest_left,
                 IndexPageContent right);
  void AddChild(Path path, std::uint32_t left, std::string greatest_left, std::uint32_t right);
  void Store(Path path, const IndexNode& node);
  bool CorrectGreatest(Path path, std::uint32_t child, const std::string& greatest);

  void EraseFrom(Place& place);
  void RemovePage(Path parents, std::uint32_t page);
  void RemoveChild(Path path, std::uint32_t child);
  void CollapseRoot(std::uint32_t only);

  void Write(std::uint32_t page, const IndexPageContent& content);
  std::uint32_t NewPage();
  void FreePage(std::uint32_t page);
  void SetPrevious(std::uint32_t page, std::uint32_t previous);
  void SetNext(std::uint32_t page, std::uint32_t next);

  Transaction* transaction_;
  std::uint32_t table_;
  const RealIndex* index_;
};

}  // namespace jet
