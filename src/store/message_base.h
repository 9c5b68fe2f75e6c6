#pragma once

#include <cstddef>
#include <memory>
#include <string>

#include "base/clock.h"
#include "base/file.h"
#include "config/mdl_AZ.h"
#include "jet/database.h"
#include "sql/connection.h"

/// The message base that is open, and the forum that it belongs to.
class MessageBase {
 public:
  /// All three outlive this object.
  MessageBase(FileSystem& files, const Clock& clock, const mdl_AZ::ForumIni& ini)
      : files_(files), clock_(clock), ini_(ini) {}

  /// Makes a file the open base and finds its forum by its name. A file that cannot be opened leaves
  /// the base before it open. One that opens but lacks a table or query of a base has taken its place
  /// already; the forum stays that of the base before it. Kept so: a user who sees the failure chooses
  /// again, and old installations behaved the same.
  /// @param path  the file system's own bytes
  /// @throws Error, 3045 also while this base is being written to
  void OpenBase(const std::string& path);
  /// Reads the file that has the base's name now: another program may have put a compacted one in its place. Does
  /// nothing without a base and while it is written to. @throws Error; the base then stays as it was
  void Reopen();

  /// While it lives the base is open for writing, which only one program can do at a time; else it is
  /// open for reading, so that several programs can show it. May be nested.
  class Writing {
   public:
    /// The base stays open for reading when this throws.
    /// @throws Error 91 when none is open, Error 3027 when the file must not be changed, FileError 3045
    ///         when another program writes
    explicit Writing(MessageBase& base) : base_(base) { base_.BeginWriting(); }
    ~Writing() { base_.EndWriting(); }
    Writing(const Writing&) = delete;
    Writing& operator=(const Writing&) = delete;

   private:
    MessageBase& base_;
  };

  bool IsOpen() const { return open_ != nullptr; }
  /// For statements on the base; ask for it each time. The one for reading lives as long as the base
  /// is open, whatever is written meanwhile; what is asked for while Writing, as long as that.
  /// @throws Error 91 when none is open
  sql::Connection& connection() { return Current().connection; }
  jet::Database& database() { return Current().database; }

  /// As given to OpenBase; empty when none is open.
  const std::string& path() const { return path_; }
  /// The place in the forum list, forum_list::kUnknown when the file's name tells no forum.
  std::size_t forum() const { return forum_; }
  /// The forum's code, its ForumKind; empty when unknown.
  const std::string& forum_kind() const { return forum_kind_; }
  const std::string& forum_name() const { return forum_name_; }
  /// The forum's host.
  const std::string& host() const { return host_; }
  /// " - " and the forum's name; empty when unknown.
  const std::string& title_suffix() const { return title_suffix_; }
  /// What the main window is called now; empty when the last file opened is of no known forum: the
  /// window then keeps what it was called.
  std::string Caption() const;

 private:
  struct OpenFile {
    OpenFile(jet::Database opened, const Clock& clock) : database(std::move(opened)), connection(database, clock) {}
    jet::Database database;
    sql::Connection connection;
  };

  OpenFile& Current();
  std::unique_ptr<OpenFile> Open(const std::string& path, jet::Access access);
  void BeginWriting();
  void EndWriting() noexcept;
  void RequireBaseObjects();
  void FindForum();

  FileSystem& files_;
  const Clock& clock_;
  const mdl_AZ::ForumIni& ini_;
  std::unique_ptr<OpenFile> open_;     // for reading
  std::unique_ptr<OpenFile> written_;  // the same file for writing, as long as writings_ says
  int writings_ = 0;
  std::string path_;
  std::size_t forum_ = 0;
  std::string forum_kind_, forum_name_, host_, title_suffix_;
};

/// The text of the box that tells that a base could not be opened.
std::string OpenFailureText(const std::string& path);
