#include "jet/system_tables.h"

#include <cstdint>
#include <utility>

#include "jet/column_codec.h"
#include "jet/new_file.h"
#include "jet/page_allocation.h"
#include "jet/table_builder.h"
#include "jet/table_design.h"
#include "jet/table_writer.h"

namespace jet {
namespace {

constexpr std::uint16_t kLongestText = 255;

constexpr NewColumn Long(std::string_view name) { return {.name = name, .type = ColumnType::kLong}; }
constexpr NewColumn Text(std::string_view name) {
  return {.name = name, .type = ColumnType::kText, .length = kLongestText};
}
constexpr NewColumn Other(std::string_view name, ColumnType type) { return {.name = name, .type = type}; }

constexpr NewColumn kObjectColumns[] = {Long("Id"),
                                        Long("ParentId"),
                                        Text("Name"),
                                        Other("Type", ColumnType::kInteger),
                                        Other("DateCreate", ColumnType::kDateTime),
                                        Other("DateUpdate", ColumnType::kDateTime),
                                        Other("Owner", ColumnType::kBinary),
                                        Long("Flags"),
                                        Other("Database", ColumnType::kMemo),
                                        Other("Connect", ColumnType::kMemo),
                                        Text("ForeignName"),
                                        Other("RmtInfoShort", ColumnType::kBinary),
                                        Other("RmtInfoLong", ColumnType::kOle),
                                        Other("Lv", ColumnType::kOle),
                                        Other("LvProp", ColumnType::kOle),
                                        Other("LvModule", ColumnType::kOle),
                                        Other("LvExtra", ColumnType::kOle)};
constexpr NewColumn kPermissionColumns[] = {Long("ObjectId"), Other("SID", ColumnType::kBinary), Long("ACM"),
                                            Other("FInheritable", ColumnType::kBoolean)};
// The last one is of Jet 4 only.
constexpr NewColumn kQueryColumns[] = {
    Long("ObjectId"), Other("Attribute", ColumnType::kByte),  Other("Order", ColumnType::kBinary), Text("Name1"),
    Text("Name2"),    Other("Expression", ColumnType::kMemo), Other("Flag", ColumnType::kInteger), Long("LvExtra")};
constexpr NewColumn kRelationshipColumns[] = {Text("szRelationship"),
                                              Long("grbit"),
                                              Long("ccolumn"),
                                              Long("icolumn"),
                                              Text("szObject"),
                                              Text("szColumn"),
                                              Text("szReferencedObject"),
                                              Text("szReferencedColumn")};

// What tells the columns of system tables from those of others.
TableDef SystemTable(const Header& header, std::uint32_t page, std::span<const NewColumn> columns,
                     std::span<const NewIndex> indexes) {
  TableDef table = DesignTable(header, columns, indexes);
  table.page = page;
  table.system = true;
  for (Column& column : table.columns) {
    const bool user = column.name == "Owner" || column.name == "SID";
    column.other_flags =
        static_cast<std::uint8_t>(column_flag::kUpdatable | column_flag::kSystem | (user ? column_flag::kOwner : 0));
    column.ordinal = 0;
    column.compress = false;
    if (column.type == ColumnType::kBinary)
      column.length = static_cast<std::uint16_t>(header.version == Version::kJet4 ? 2 * kLongestText : kLongestText);
  }
  return table;
}

std::vector<TableDef> DesignSystemTables(const Header& header) {
  const std::span<const NewColumn> all_of_queries(kQueryColumns);
  const auto queries =
      header.version == Version::kJet4 ? all_of_queries : all_of_queries.first(std::size(kQueryColumns) - 1);
  const NewIndex objects[] = {{.name = "ParentIdName", .columns = {"ParentId", "Name"}, .unique = true},
                              {.name = "Id", .columns = {"Id"}, .kind = IndexKind::kPrimary, .unique = true}};
  const NewIndex permissions[] = {{.name = "ObjectId", .columns = {"ObjectId"}, .required = true}};
  const NewIndex pieces[] = {{.name = "ObjectIdAttribute",
                              .columns = {"ObjectId", "Attribute", "Order"},
                              .kind = IndexKind::kPrimary,
                              .unique = true}};
  const NewIndex relationships[] = {
      {.name = "szRelationship", .columns = {"szRelationship"}, .ignore_nulls = true},
      {.name = "szObject", .columns = {"szObject"}, .ignore_nulls = true},
      {.name = "szReferencedObject", .columns = {"szReferencedObject"}, .ignore_nulls = true}};
  return {SystemTable(header, kCatalogPage, kObjectColumns, objects),
          SystemTable(header, kPermissionsPage, kPermissionColumns, permissions),
          SystemTable(header, kQueriesPage, queries, pieces),
          SystemTable(header, kRelationshipsPage, kRelationshipColumns, relationships)};
}

/// Adds rows to one of the system tables.
class SystemRows {
 public:
  SystemRows(Transaction& transaction, Table table) : table_(table), writer_(transaction, table_, TableProperties()) {}
  void Add(const CatalogEntry& entry, OleDate now) { writer_.Insert(ValuesOf(table_, entry, now)); }
  void Add(const Permission& permission) { writer_.Insert(ValuesOf(table_, permission)); }

 private:
  Table table_;
  TableWriter writer_;
};

void ListObjects(SystemRows& objects, const UserIds& users, OleDate now) {
  using namespace object_id;
  const auto container = [&](std::string_view name, std::uint32_t id) {
    objects.Add({name, id, kRoot, object_type::kContainer, users.engine, kSystemObject, {}}, now);
  };
  const auto table = [&](std::string_view name, std::uint32_t page) {
    objects.Add({name, page, kTables, object_type::kTable, users.engine, kSystemObject, {}}, now);
  };
  container("Tables", kTables);
  container("Databases", kDatabases);
  container("Relationships", kRelationships);
  objects.Add({"MSysDb", kDatabase, kDatabases, object_type::kDatabase, users.admin, kSystemObject, {}}, now);
  table("MSysObjects", kCatalogPage);
  table("MSysACEs", kPermissionsPage);
  table("MSysQueries", kQueriesPage);
  table("MSysRelationships", kRelationshipsPage);
}

void ListPermissions(SystemRows& permissions, const UserIds& users, Version version) {
  using namespace object_id;
  const std::uint32_t all = version == Version::kJet4 ? 0xFFEFF : 0xFFFFF;
  const Permission rows[] = {{kCatalogPage, users.admin, 0x60000},
                             {kPermissionsPage, users.admin, 0x60000},
                             {kQueriesPage, users.admin, 0x60000},
                             {kRelationshipsPage, users.admin, 0xE0000},
                             {kTables, users.creator, 0xF00FE, true},
                             {kTables, users.admin, 0x60001},
                             {kRelationships, users.creator, 0xF00FE, true},
                             {kRelationships, users.admin, 0x60001},
                             {kDatabases, users.admin, 0x60000},
                             {kDatabase, users.admin, 0x6000E},
                             {kDatabase, users.users, 0xE},
                             {kQueriesPage, users.users, 0x14},
                             {kRelationshipsPage, users.users, 0x14},
                             {kCatalogPage, users.users, 0x14},
                             {kTables, users.users, all, true},
                             {kRelationships, users.users, 0xFFFFF, true}};
  for (const Permission& permission : rows) permissions.Add(permission);
}

std::int32_t Signed(std::uint32_t number) { return static_cast<std::int32_t>(number); }

}  // namespace

// Maps and roots lie as the original engine puts them: in Jet 4 all maps together, in Jet 3 those of the
// catalog's indexes each on a page of its own.
void BuildSystemTables(Transaction& transaction, const Header& header) {
  std::vector<TableDef> tables = DesignSystemTables(header);
  for (std::size_t i = 0; i < tables.size(); ++i) PageAllocator(transaction).Allocate();
  MapRows maps(transaction);
  for (TableDef& table : tables) {
    const bool catalog_of_jet3 = header.version == Version::kJet3 && table.page == kCatalogPage;
    PlaceTableMaps(maps, table);
    for (RealIndex& index : table.real_indexes) {
      if (catalog_of_jet3) maps.StartPage();
      PlaceIndex(transaction, maps, table, index);
    }
    if (catalog_of_jet3) maps.StartPage();
    StoreTableDef(transaction, table);
  }
}

void ListSystemObjects(Transaction& transaction, Database& base, OleDate now) {
  const UserIds users = NewUserIds(base.version());
  SystemRows objects(transaction, base.OpenTableAt(kCatalogPage));
  ListObjects(objects, users, now);
  SystemRows permissions(transaction, base.OpenTableAt(kPermissionsPage));
  ListPermissions(permissions, users, base.version());
  base.ForgetCatalog();
}

std::vector<Assignment> ValuesOf(const Table& objects, const CatalogEntry& entry, OleDate now) {
  const auto column = [&](std::string_view name) { return &RequireColumn(objects.def(), name); };
  std::vector<Assignment> values = {{column("Id"), Signed(entry.id)},
                                    {column("ParentId"), Signed(entry.parent)},
                                    {column("Name"), std::string(entry.name)},
                                    {column("Type"), std::int32_t{entry.type}},
                                    {column("DateCreate"), now},
                                    {column("DateUpdate"), now},
                                    {column("Owner"), Binary{entry.owner}},
                                    {column("Flags"), Signed(entry.flags)}};
  if (!entry.properties.empty()) values.push_back({column("LvProp"), Binary{entry.properties}});
  return values;
}

std::vector<Assignment> ValuesOf(const Table& permissions, const Permission& permission) {
  const auto column = [&](std::string_view name) { return &RequireColumn(permissions.def(), name); };
  return {{column("ObjectId"), Signed(permission.object)},
          {column("SID"), Binary{permission.user}},
          {column("ACM"), Signed(permission.mask)},
          {column("FInheritable"), permission.inheritable}};
}

}  // namespace jet
