#pragma once

#include <functional>
#include <memory>
#include <string>

#include "base/file.h"
#include "base/ole_date.h"
#include "jet/catalog_writer.h"
#include "jet/database.h"
#include "jet/header.h"
#include "jet/new_file.h"

namespace jet {

/// A base in the making, under the temporary name `path`.new. What is not published goes, its journal too.
class UnfinishedBase {
 public:
  /// A base with its system tables, which have no rows yet.
  /// @param files  outlives this
  /// @throws FileError, 3045 when another program is making the same base
  UnfinishedBase(FileSystem& files, std::string path, const Header& header);
  ~UnfinishedBase();
  UnfinishedBase(const UnfinishedBase&) = delete;
  UnfinishedBase& operator=(const UnfinishedBase&) = delete;

  /// Until it is published.
  Database& base() { return *base_; }

  /// Gives the base its name, in the place of what has that name. What was committed is on the medium
  /// before; a journal that an older base has left goes aside, for it must never meet this one.
  /// @throws FileError; the name then belongs to what had it, but when only its durability failed
  void Publish();
  /// The same, but nothing may have that name. @throws FileError 75
  void PublishNew();

 private:
  FileSystem& files_;
  std::string path_, temporary_;
  std::unique_ptr<Database> base_;
};

/// What a new base is to be.
struct NewBase {
  Version version = Version::kJet3;
  SortOrder order = SortOrder::kGeneral;
};

using BaseDesign = std::function<void(CatalogWriter& catalog, const Header& header)>;

/// Makes a base that is still to get its rows, or its name.
/// @param now   the date of creation that its objects get
/// @param fill  adds tables and queries
/// @throws FileError 75 when there is a file of that name
std::unique_ptr<UnfinishedBase> BeginBase(FileSystem& files, const std::string& path, const NewBase& kind, OleDate now,
                                          const BaseDesign& fill);
/// Makes a base: all of it, or nothing.
void CreateBase(FileSystem& files, const std::string& path, const NewBase& kind, OleDate now, const BaseDesign& fill);

}  // namespace jet
