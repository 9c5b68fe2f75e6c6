#include "jet/check_context.h"

#include <algorithm>
#include <utility>

#include "jet/data_page.h"

namespace jet {

CheckContext::CheckContext(const PageFile& file, Progress& progress, CheckResult& result)
    : file_(file), progress_(progress), result_(result), owners_(1), owner_of_(file.page_count(), kNobody) {}

void CheckContext::Add(Severity severity, std::string text) {
  std::uint64_t& count = severity == Severity::kError ? result_.errors : result_.warnings;
  if (++count <= CheckResult::kMostFindings) result_.findings.push_back({severity, std::move(text)});
}

CheckContext::Owner CheckContext::NewOwner(std::string_view name) {
  owners_.emplace_back(name);
  return static_cast<Owner>(owners_.size() - 1);
}

bool CheckContext::Claim(std::uint32_t page, Owner owner) {
  if (page >= owner_of_.size()) {
    Error(Cat("Страницы "_ru, page, " в файле нет, а к ней относят: "_ru, NameOf(owner)));
    return false;
  }
  if (owner_of_[page] != kNobody) {
    Error(Cat("Страница "_ru, page, " занята дважды: "_ru, NameOf(owner_of_[page]), " и "_ru, NameOf(owner)));
    return false;
  }
  owner_of_[page] = owner;
  return true;
}

void CheckContext::Advance() {
  const int percent = static_cast<int>(std::uint64_t{100} * ++pages_seen_ / (file_.page_count() + 1));
  if (stopped() || percent == percent_ || percent > 100) return;
  percent_ = percent;
  if (!progress_.Advance(percent)) result_.complete = false;
}

std::string PlaceOf(std::string_view table, RowId row) {
  return Cat(table, ", страница "_ru, row.page, ", строка "_ru, row.slot);
}

bool CheckRowPage(CheckContext& context, std::uint32_t page, std::uint32_t owner, std::string_view where) {
  return context.Try(where, [&] {
    const Page handle = context.file().Read(page);
    const DataPage rows(context.layout(), handle, owner);
    for (std::size_t slot = 0; slot < rows.slot_count(); ++slot)
      if (!context.Try(where, [&] { rows.Row(slot); })) return;
    if (handle.U16(kFreeSpaceAt) != rows.free())
      context.Error(Cat(where, ", страница "_ru, page, ": свободное место посчитано неверно: записано "_ru,
                        handle.U16(kFreeSpaceAt), ", на деле "_ru, rows.free()));
  });
}

}  // namespace jet
