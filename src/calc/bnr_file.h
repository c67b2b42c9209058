#pragma once

#include <string>
#include <vector>

#include "store/value.h"

namespace calc {

/// One rate as the National Bank publishes it.
struct PublishedRate {
  std::string Cod_Moneda;
  store::Date Valid_La_Data;
  double Curs_Schimb = 0;  ///< lei for `Multiplicator` units, 4 decimals
  int Multiplicator = 1;
};

/// What a rates file of the National Bank holds. With an error nothing was read.
struct BnrFile {
  std::string error;                 ///< why this is no such file
  std::vector<PublishedRate> rates;  ///< in the file's order
  std::vector<std::string> refused;  ///< rows left out: which, and why
};

/// Reads the bank's XML (DataSet of "http://www.bnr.ro/xsd", since 2025 "https://www.bnr.ro/xsd"): Body/Cube
/// for each day, Rate/@currency with the rate as text and, for currencies of small value, @multiplier. Rates
/// of later days than `latest` are refused. `xml` is modified.
BnrFile ReadBnrFile(std::string& xml, store::Date latest);

}  // namespace calc
