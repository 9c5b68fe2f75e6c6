#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>

/// The root of every failure that a user may be told about. what() is Russian,
/// in Windows-1251, fit to be shown; number() follows the old platform's tables.
class Error : public std::runtime_error {
 public:
  Error(int number, std::string_view what) : std::runtime_error(std::string(what)), number_(number) {}
  int number() const noexcept { return number_; }

 private:
  int number_;
};

/// Numbers of the errors that rules or callers tell apart.
namespace error_number {
inline constexpr int kBadArgument = 5;
inline constexpr int kOverflow = 6;
inline constexpr int kNoSuchItem = 9;
inline constexpr int kTypeMismatch = 13;
inline constexpr int kFileNotFound = 53;
inline constexpr int kNoAccess = 75;
inline constexpr int kFolderNotFound = 76;
inline constexpr int kBaseNotOpen = 91;
inline constexpr int kBadPattern = 93;
inline constexpr int kNullNotAllowed = 94;
inline constexpr int kNothingToStore = 3020;
inline constexpr int kNoCurrentRecord = 3021;
inline constexpr int kDuplicateKey = 3022;
inline constexpr int kBaseNotFound = 3024;
inline constexpr int kReadOnly = 3027;
inline constexpr int kLocked = 3045;
inline constexpr int kUnknownField = 3061;
inline constexpr int kBadStatement = 3075;
inline constexpr int kUnknownTable = 3078;
inline constexpr int kTextTooLong = 3163;
inline constexpr int kNoSuchObject = 3265;
inline constexpr int kRequired = 3314;
inline constexpr int kZeroLength = 3315;
inline constexpr int kNotABase = 3343;
inline constexpr int kConversion = 3421;
inline constexpr int kNoSuchNode = 35601;
inline constexpr int kNodeExists = 35602;
inline constexpr int kNumericNodeKey = 35603;
}  // namespace error_number

/// A file cannot be opened, read, written, locked or replaced.
class FileError : public Error {
  using Error::Error;
};

/// A statement does not parse, or names what the base does not have.
class SqlError : public Error {
  using Error::Error;
};

/// A value is no number or no date, or does not fit its type.
class ConversionError : public Error {
  using Error::Error;
};

/// A unique index already holds the key of a row that is being stored.
class DuplicateKey : public Error {
 public:
  DuplicateKey();
};

/// A page did not arrive.
class TransferError : public Error {
  using Error::Error;
};

/// The bytes of a base contradict its format. The text names the place.
class FormatError : public Error {
 public:
  static constexpr std::int64_t kNoPage = -1;
  static constexpr int kNoRow = -1;

  /// @param page  0-based page of the file, kNoPage when the fault has none
  /// @param row   0-based slot on that page, kNoRow when the fault has none
  explicit FormatError(std::string_view what, std::int64_t page = kNoPage, int row = kNoRow);
  std::int64_t page() const noexcept { return page_; }
  int row() const noexcept { return row_; }

 private:
  std::int64_t page_;
  int row_;
};

/// 5: a position or a count outside its bounds.
[[noreturn]] void ThrowBadArgument();
/// 6: a result does not fit its width.
[[noreturn]] void ThrowOverflow();
