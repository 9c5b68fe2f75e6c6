#include "download/stored_fields.h"

namespace {

struct Setter {
  QueryRecordset& records;
  std::string_view name;

  void operator()(NotSet) const {}
  void operator()(std::string_view text) const { records.SetText(name, text); }
  void operator()(std::int32_t number) const { records.SetNumber(name, number); }
  void operator()(OleDate date) const { records.SetDate(name, date); }
};

}  // namespace

StoredField TextUnlessEmpty(std::string_view name, std::string_view text) {
  if (text.empty()) return {name, NotSet{}};
  return {name, text};
}

StoredField DateIfAny(std::string_view name, std::optional<OleDate> date) {
  if (!date) return {name, NotSet{}};
  return {name, *date};
}

void SetField(QueryRecordset& records, const StoredField& field) {
  std::visit(Setter{records, field.name}, field.value);
}

void StoreRow(QueryRecordset& records, const StoredFields& fields) {
  records.AddNew();
  for (const StoredField& field : fields) SetField(records, field);
  records.Update();
}
