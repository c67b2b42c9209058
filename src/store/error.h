#pragma once

#include <stdexcept>
#include <string>

namespace store {

/// The numbers that callers of the database engine know.
enum ErrorNumber : int {
  kSyntaxError = -2147217900,       ///< syntax, unknown function, ambiguous name, column not aggregated
  kMissingParameter = -2147217904,  ///< unknown column name
  kNoSuchTable = -2147217865,
  kTypeMismatch = -2147217913,
  kTooLong = -2147217833,     ///< text longer than its column
  kIntegrity = -2147467259,   ///< duplicate key, missing required value, unopenable or locked file, read-only
  kConversion = -2147217887,  ///< value does not fit (overflow, text in a number column)
  kDivisionByZero = -2147217895,  ///< also invalid procedure call
  kObjectClosed = 3704,           ///< operation on a closed connection or recordset
  kItemNotFound = 3265,           ///< no field of that name or position
  kEndOfRecordset = 3021,         ///< BOF or EOF where a current row is needed
  kNotUpdatable = 3251,
  kCancelled = 3712,  ///< stopped by whoever watches the statement
};

/// A failed database operation: number, source (the statement's head or file) and a Romanian description
/// without diacritics, to which the engine's precise reason is added.
class Error : public std::runtime_error {
 public:
  Error(int number, std::string source, const std::string& description)
      : std::runtime_error(description), number_(number), source_(std::move(source)) {}
  /// `position`: byte offset in the statement where it stopped making sense, or -1.
  Error(int number, std::string source, const std::string& description, int position)
      : std::runtime_error(description), number_(number), source_(std::move(source)), position_(position) {}

  int number() const { return number_; }
  const std::string& source() const { return source_; }
  std::string description() const { return what(); }
  int position() const { return position_; }

 private:
  int number_;
  std::string source_;
  int position_ = -1;
};

}  // namespace store
