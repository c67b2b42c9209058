#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "import/templates.h"

namespace importer {

/// A worksheet column found for a destination column.
struct Proposal {
  std::string Dest_ColumnName;
  int number = 0;  ///< from 1
};

/// A destination column that still needs one.
struct Wanted {
  std::string Dest_ColumnName;
  std::string description;  ///< what the user calls it; counts as a heading of its own
};

/// Finds columns by their headings, as bookkeeping programs word them in Romanian, English and German:
/// without regard to case, diacritics, punctuation and word order, and with words cut short ("Cant.", "Val.
/// fiscala"). Each column is given once, the best match first; prices and running numbers never. Only a value
/// in lei is also proposed as the statistical value, and an invoice's date as that of the delivery, where
/// these have no column of their own.
std::vector<Proposal> ProposeColumns(const std::vector<SampleColumn>& columns,
                                     const std::vector<Wanted>& wanted);

/// A heading as it is compared: lower-case words without diacritics, one blank between them, single letters
/// joined ("U.M." gives "um").
std::string NormalisedHeading(std::string_view heading);

}  // namespace importer
