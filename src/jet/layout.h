#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

/// Where everything stands in the file. Offsets and sizes are in bytes, numbers little-endian
/// unless their comment says otherwise; what the two versions share stands once, below them.
namespace jet {

enum class Version : std::uint8_t { kJet3 = 0, kJet4 = 1 };

/// Page 0. Its fields from kMaskBegin on are hidden under a fixed mask.
struct HeaderLayout {
  std::size_t mask_size;
  std::size_t collation;          // u16
  std::size_t collation_version;  // u8; 0 = the version has none
  std::size_t password;
  std::size_t password_size;
  std::size_t build;    // u16
  std::size_t created;  // f64; 0 = the version has none. Masks the password once more
  std::size_t engine;   // u32 kEngineMark, then kEngineVersion; 0 = the version has none
};

/// Pages of rows: a table's data, long values, usage maps.
struct DataPageLayout {
  std::size_t row_count;  // u16
  std::size_t row_table;  // u16 each: flags and start; rows fill the page from its end
  // With less free than this a page takes no more rows of a table, or no more long values.
  std::size_t least_free, least_free_long_values;
  std::size_t largest_row;  // of a table; a long value may fill the page
};

/// Where the data of a Memo or OLE value go, by their size.
struct LongValueLayout {
  std::size_t largest_inline;  // in the row
  std::size_t largest_single;  // as one row on a page of such rows
  std::size_t chain_part;      // greater ones: so many bytes a page, behind a row pointer to the next part
};

/// From the start of an assembled definition.
struct TableDefLayout {
  std::size_t mark;              // u32 kDefinitionMark; 0 = the version has none
  std::size_t one;               // u32, always 1; 0 = the version has none
  std::size_t rows;              // u32
  std::size_t autonumber;        // u32
  std::size_t kind;              // u8
  std::size_t max_columns;       // u16
  std::size_t variable_columns;  // u16
  std::size_t columns;           // u16
  std::size_t logical_indexes;   // u32
  std::size_t real_indexes;      // u32
  std::size_t owned_map;         // row pointer
  std::size_t free_map;          // row pointer
  std::size_t size;              // what follows: index counters, column entries, names ...
  std::size_t index_counter_size;
  std::size_t name_length_size;  // 1 or 2 bytes before every name
};

struct ColumnEntryLayout {
  std::size_t type;               // u8
  std::size_t mark;               // u32 kDefinitionMark; 0 = the version has none
  std::size_t number;             // u16
  std::size_t variable_index;     // u16
  std::size_t ordinal;            // u16
  std::size_t collation;          // u16
  std::size_t code_page;          // u16; 0 = the version has none
  std::size_t collation_version;  // u8; 0 = the version has none
  std::size_t precision, scale;   // u8, Numeric only; 0 = the version has none
  std::size_t flags;              // u8
  std::size_t more_flags;         // u8; 0 = the version has none
  std::size_t fixed_offset;       // u16
  std::size_t length;             // u16
  std::size_t size;
};

struct RealIndexLayout {
  std::size_t mark_size;  // u32 kRealIndexMark at the beginning; 0 = the version has none
  std::size_t columns;    // ten times: u16 column number, u8 order
  std::size_t usage_map;  // row pointer
  std::size_t root;       // u32
  std::size_t flags;      // u8
  std::size_t size;
};

struct LogicalIndexLayout {
  std::size_t mark_size;        // u32 kDefinitionMark at the beginning; 0 = the version has none
  std::size_t number;           // u32
  std::size_t real;             // u32
  std::size_t relation;         // u8
  std::size_t other_index;      // u32
  std::size_t other_table;      // u32
  std::size_t cascade_updates;  // u8
  std::size_t cascade_deletes;  // u8
  std::size_t kind;             // u8
  std::size_t size;
};

struct IndexPageLayout {
  std::size_t previous;     // u32
  std::size_t next;         // u32
  std::size_t tail;         // u32, nodes only: the rightmost child
  std::size_t prefix;       // bytes that all entries but the first leave away
  std::size_t prefix_size;  // width of that number
  std::size_t level;        // u8, 0 = leaf
  std::size_t mask;         // a set bit k: an entry ends k bytes behind `entries`
  std::size_t entries;      // to the end of the page
};

struct Layout {
  Version version;
  std::size_t page_size;
  std::size_t new_map_size;  // bytes of a usage map's row when it is made
  HeaderLayout header;
  DataPageLayout data_page;
  LongValueLayout long_value;
  std::size_t row_number_size;  // width of a row's column count, variable count and offsets
  TableDefLayout table_def;
  ColumnEntryLayout column;
  RealIndexLayout real_index;
  LogicalIndexLayout logical_index;
  IndexPageLayout index_page;
};

inline constexpr Layout kJet3 = {
    .version = Version::kJet3,
    .page_size = 2048,
    .new_map_size = 133,
    .header = {.mask_size = 126,
               .collation = 0x3A,
               .collation_version = 0,
               .password = 0x42,
               .password_size = 20,
               .build = 0x56,
               .created = 0,
               .engine = 0},
    .data_page =
        {.row_count = 8, .row_table = 10, .least_free = 150, .least_free_long_values = 300, .largest_row = 2012},
    .long_value = {.largest_inline = 32, .largest_single = 1731, .chain_part = 2032},
    .row_number_size = 1,
    .table_def = {.mark = 0,
                  .one = 0,
                  .rows = 12,
                  .autonumber = 16,
                  .kind = 20,
                  .max_columns = 21,
                  .variable_columns = 23,
                  .columns = 25,
                  .logical_indexes = 27,
                  .real_indexes = 31,
                  .owned_map = 35,
                  .free_map = 39,
                  .size = 43,
                  .index_counter_size = 8,
                  .name_length_size = 1},
    .column = {.type = 0,
               .mark = 0,
               .number = 1,
               .variable_index = 3,
               .ordinal = 5,
               .collation = 9,
               .code_page = 11,
               .collation_version = 0,
               .precision = 0,
               .scale = 0,
               .flags = 13,
               .more_flags = 0,
               .fixed_offset = 14,
               .length = 16,
               .size = 18},
    .real_index = {.mark_size = 0, .columns = 0, .usage_map = 30, .root = 34, .flags = 38, .size = 39},
    .logical_index = {.mark_size = 0,
                      .number = 0,
                      .real = 4,
                      .relation = 8,
                      .other_index = 9,
                      .other_table = 13,
                      .cascade_updates = 17,
                      .cascade_deletes = 18,
                      .kind = 19,
                      .size = 20},
    .index_page = {.previous = 8,
                   .next = 12,
                   .tail = 16,
                   .prefix = 20,
                   .prefix_size = 1,
                   .level = 21,
                   .mask = 0x16,
                   .entries = 0xF8},
};

inline constexpr Layout kJet4 = {
    .version = Version::kJet4,
    .page_size = 4096,
    .new_map_size = 69,
    .header = {.mask_size = 128,
               .collation = 0x6E,
               .collation_version = 0x71,
               .password = 0x42,
               .password_size = 40,
               .build = 0x6A,
               .created = 0x72,
               .engine = 0x98},
    .data_page =
        {.row_count = 12, .row_table = 14, .least_free = 300, .least_free_long_values = 500, .largest_row = 4060},
    .long_value = {.largest_inline = 64, .largest_single = 3630, .chain_part = 4072},
    .row_number_size = 2,
    .table_def = {.mark = 12,
                  .one = 24,
                  .rows = 16,
                  .autonumber = 20,
                  .kind = 40,
                  .max_columns = 41,
                  .variable_columns = 43,
                  .columns = 45,
                  .logical_indexes = 47,
                  .real_indexes = 51,
                  .owned_map = 55,
                  .free_map = 59,
                  .size = 63,
                  .index_counter_size = 12,
                  .name_length_size = 2},
    .column = {.type = 0,
               .mark = 1,
               .number = 5,
               .variable_index = 7,
               .ordinal = 9,
               .collation = 11,
               .code_page = 0,
               .collation_version = 14,
               .precision = 11,
               .scale = 12,
               .flags = 15,
               .more_flags = 16,
               .fixed_offset = 21,
               .length = 23,
               .size = 25},
    .real_index = {.mark_size = 4, .columns = 4, .usage_map = 34, .root = 38, .flags = 46, .size = 52},
    .logical_index = {.mark_size = 4,
                      .number = 4,
                      .real = 8,
                      .relation = 12,
                      .other_index = 13,
                      .other_table = 17,
                      .cascade_updates = 21,
                      .cascade_deletes = 22,
                      .kind = 23,
                      .size = 28},
    .index_page = {.previous = 12,
                   .next = 16,
                   .tail = 20,
                   .prefix = 24,
                   .prefix_size = 2,
                   .level = 26,
                   .mask = 0x1B,
                   .entries = 0x1E0},
};

constexpr const Layout& LayoutOf(Version version) { return version == Version::kJet3 ? kJet3 : kJet4; }

inline constexpr std::size_t kLargestPage = 4096;
inline constexpr std::uint32_t kLargestBase = 1u << 19;  // pages: 1 GB in Jet 3, 2 GB in Jet 4

// Page 0 before its version is known.
inline constexpr std::string_view kFileMagic{"\x00\x01\x00\x00", 4};
inline constexpr std::size_t kProductAt = 4;
inline constexpr std::string_view kProduct{"Standard Jet DB\0", 16};
inline constexpr std::string_view kOtherProduct{"MSISAM Database\0", 16};
inline constexpr std::size_t kVersionAt = 0x14;  // u8: a Version; from 2 on later formats
inline constexpr std::size_t kMaskBegin = 0x18;
// Row pointers of the two maps on page 1, then four definition pages. The last two stay 4 and 5 even
// in files whose system tables changed places: those are found through the catalog.
inline constexpr std::size_t kHeaderMapsAt = 0x18, kHeaderTablesAt = 0x20;
inline constexpr std::uint32_t kEngineMark = 0x654;
inline constexpr std::string_view kEngineVersion = "4.0";
inline constexpr std::size_t kCodePageAt = 0x3C;     // u16
inline constexpr std::size_t kEncodingKeyAt = 0x3E;  // u32, 0 = pages are not encoded
// The last bytes of page 0: u16 each. The first one is the exclusive user's; none is ever less than
// kFirstCommit.
inline constexpr std::size_t kCommitCountersSize = 512;
inline constexpr unsigned kFirstCommit = 0x0100;
inline constexpr unsigned kFirstExclusiveCommit = 0x0101;  // the exclusive user's in a new file
inline constexpr std::size_t kHeaderSize = 0x98;           // all that a reader needs of page 0

// The first byte of a page.
namespace page_kind {
inline constexpr unsigned kData = 0x01, kTableDef = 0x02, kIndexNode = 0x03, kIndexLeaf = 0x04, kUsageMap = 0x05;
}

// Fields that all pages share.
inline constexpr std::size_t kPageKindAt = 0;   // u8
inline constexpr std::size_t kFreeSpaceAt = 2;  // u16; not on usage-map pages
inline constexpr std::size_t kOwnerAt = 4;      // u32 on data and index pages: definition page of the table
inline constexpr std::uint32_t kLongValueOwner = 0x4C41564C;  // the letters LVAL in the place of an owner

// Entries of a row table.
inline constexpr unsigned kRowStart = 0x1FFF;
inline constexpr unsigned kRowFlags = 0xC000;
inline constexpr unsigned kRowIsPointer = 0x4000;  // the row moved; its first bytes are a row pointer
inline constexpr unsigned kRowIsHidden = 0x8000;   // the target of such a pointer
inline constexpr unsigned kRowIsDeleted = 0xC000;
inline constexpr std::size_t kRowPointerSize = 4;  // u8 slot, u24 page
inline constexpr std::size_t kRowSlotSize = 2;
inline constexpr std::size_t kMostSlots = 255;    // of a page
inline constexpr std::size_t kMostColumns = 255;  // of a table, deleted ones included
inline constexpr std::size_t kMostIndexes = 32;   // of a table
inline constexpr std::size_t kLongestName = 64;   // characters of a table's or query's name
inline constexpr unsigned kLargestScale = 28;     // of a Numeric column

// Page 1: two rows of bits. In the first a set bit is a free page; the second is empty in all files.
inline constexpr std::uint32_t kGlobalMapPage = 1;
inline constexpr std::uint32_t kGlobalMapOwner = 1;
inline constexpr std::uint32_t kMapPageOwner = 0;  // of all other pages of usage maps

// Definitions.
inline constexpr unsigned kDefinitionLetters = 0x4356;  // Jet 3, in the place of the free bytes
inline constexpr std::uint32_t kDefinitionMark = 0x659, kRealIndexMark = 0x783;
inline constexpr unsigned kUserTable = 0x4E;
inline constexpr std::size_t kNextDefinitionAt = 4;    // u32 page, 0 = last
inline constexpr std::size_t kDefinitionLengthAt = 8;  // u32
inline constexpr std::size_t kContinuationHead = 8;    // bytes of a further page that are not definition
inline constexpr unsigned kSystemTable = 0x53;
inline constexpr std::size_t kDistinctKeysAt = 4;  // u32 in an index counter
inline constexpr std::size_t kIndexColumnSlots = 10, kIndexColumnSlotSize = 3;
inline constexpr unsigned kNoIndexColumn = 0xFFFF;
inline constexpr std::size_t kLongValueEntrySize = 10;  // u16 column, two row pointers
inline constexpr unsigned kDefinitionEnd = 0xFFFF;      // in the place of a column number

namespace column_flag {
inline constexpr unsigned kFixed = 0x01, kUpdatable = 0x02, kAutonumber = 0x04, kHyperlink = 0x80;
inline constexpr unsigned kAutonumberGuid = 0x40;  // of a GUID column; without meaning on others
inline constexpr unsigned kSystem = 0x10, kOwner = 0x20;
inline constexpr unsigned kCompress = 0x01;  // of the second flags
}  // namespace column_flag

namespace index_flag {
inline constexpr unsigned kUnique = 0x01, kIgnoreNulls = 0x02, kRequired = 0x08;
inline constexpr unsigned kJet4 = 0x80;  // on all indexes of that version
}  // namespace index_flag

// Entries of index pages; their numbers are big-endian.
inline constexpr std::size_t kEntryRowSize = 4;    // u24 page, u8 slot behind the key
inline constexpr std::size_t kEntryChildSize = 4;  // u32 page, nodes only, behind the row

// Usage maps.
inline constexpr unsigned kInlineMap = 0, kReferenceMap = 1;  // u8, first byte of the map's row
inline constexpr std::size_t kInlineMapStartAt = 1;           // u32, the first page covered
inline constexpr std::size_t kInlineMapBitsAt = 5;
inline constexpr std::size_t kReferencesAt = 1;  // u32 each: a bitmap page
inline constexpr std::size_t kBitmapAt = 4;      // on a bitmap page, to its end

// The head of a long value.
inline constexpr std::size_t kLongValueHead = 12;
inline constexpr std::size_t kLongValueRowAt = 4;              // row pointer
inline constexpr std::uint32_t kLongValueLength = 0x3FFFFFFF;  // of the first u32
inline constexpr std::uint32_t kLongValueInline = 0x80000000, kLongValueSingle = 0x40000000;

// The catalog.
// The definitions of the system tables. Only that of MSysObjects has its place in all files.
inline constexpr std::uint32_t kCatalogPage = 2, kPermissionsPage = 3, kQueriesPage = 4, kRelationshipsPage = 5;
namespace object_type {
inline constexpr int kTable = 1, kDatabase = 2, kContainer = 3, kQuery = 5, kRelationship = 8;
}
namespace object_id {
inline constexpr std::uint32_t kRoot = 0x0F000000, kTables = 0x0F000001, kDatabases = 0x0F000002,
                               kRelationships = 0x0F000003, kDatabase = 0x10000000;
inline constexpr std::uint32_t kFirstFree = 0x80000000;  // of objects that have no page; given out upwards
}  // namespace object_id
inline constexpr std::uint32_t kSystemObject = 0x80000000, kHiddenSystemObject = 0x00000002;

}  // namespace jet
