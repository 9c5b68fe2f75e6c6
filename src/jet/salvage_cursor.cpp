#include "jet/salvage_cursor.h"

#include "base/error.h"

namespace jet {

SalvageCursor::SalvageCursor(const PageFile& file, const TableDef& def) : file_(file), def_(def) {
  try {
    claimed_.emplace(file, def.owned_map);
  } catch (const Error&) {
    // Pages tell themselves whose they are; the map would only tell which are missing.
  }
}

bool SalvageCursor::NextPage() {
  rows_.reset();
  slot_ = 0;
  if (next_ == file_.page_count()) return false;
  try {
    LookAtPage(next_++);
  } catch (const Error&) {
    AddBadPage();
  }
  return true;
}

void SalvageCursor::LookAtPage(std::uint32_t number) {
  page_ = file_.Read(number);
  if (page_.kind() == page_kind::kData && page_.U32(kOwnerAt) == def_.page)
    rows_ = DataPage::Salvage(file_.layout(), page_);
  else if (IsClaimed(number))
    AddBadPage();
}

bool SalvageCursor::IsClaimed(std::uint32_t number) try {
  return claimed_ && claimed_->Contains(number);
} catch (const Error&) {
  claimed_.reset();
  return false;
}

bool SalvageCursor::NextRow() {
  while (rows_ && slot_ < rows_->slot_count()) {
    const std::size_t slot = slot_++;
    const unsigned flags = rows_->Flags(slot);
    if (flags == kRowIsDeleted || flags == kRowIsPointer) continue;
    if (LookAtRow(slot)) return true;
    ++bad_rows_;
    AddBadPage();
  }
  return false;
}

// A row never stores more columns than its table gave out.
bool SalvageCursor::LookAtRow(std::size_t slot) try {
  row_.Assign(file_, def_, {page(), static_cast<std::uint8_t>(slot)}, page_, rows_->Row(slot));
  return row_.stored_columns_ <= def_.max_columns;
} catch (const FormatError&) {
  return false;
}

void SalvageCursor::AddBadPage() {
  if (bad_pages_.empty() || bad_pages_.back() != page()) bad_pages_.push_back(page());
}

}  // namespace jet
