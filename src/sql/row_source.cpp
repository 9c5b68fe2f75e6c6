#include "sql/row_source.h"

#include <algorithm>

#include "base/cp1251.h"
#include "sql/row_editor.h"

namespace sql {

std::unique_ptr<RowEditor> RowSource::OpenEditor() const { return nullptr; }

std::optional<std::size_t> FindField(const std::vector<Field>& fields, std::string_view name) {
  const auto found = std::find_if(fields.begin(), fields.end(),
                                  [name](const Field& field) { return cp1251::EqualIgnoringCase(field.name, name); });
  if (found == fields.end()) return std::nullopt;
  return static_cast<std::size_t>(found - fields.begin());
}

}  // namespace sql
