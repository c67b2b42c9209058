#pragma once

#include <cstdint>
#include <string_view>

#include "platform/download_request.h"
#include "session/session.h"

namespace calc {

/// Brings `Rate_Schimb` of the open company up to date from the rates file of the server, at most once a day
/// and only where the marker "CursBNR\data.txt" says that newer rates are to be had. Rows newer than the
/// table are also taken from a "CursBNR\curs.txt" that is already there, whatever the marker says: it has
/// been fetched for one company, and each has a table of its own.
///
/// Errors are passed over and noted, a row that makes no sense is noted and left out.
enum class RatesOutcome : std::uint8_t {
  kUpToDate,    ///< updated or found current
  kTriedToday,  ///< the marker is of today: an import has run already
  kNoMarker,    ///< no marker, no update
  kNotFetched,  ///< no file came; the download has shown why, unless the user stopped it
  kFailed,      ///< a file without a usable row, no company, an error; it is in the log
};
RatesOutcome UpdateRates(session::Session& session, const platform::Downloader& download);
/// The same; true for kUpToDate.
bool CursSchimb_Actualizare(session::Session& session, const platform::Downloader& download);

/// The local half of it, for a further company: rows newer than its table from the file that is there.
/// Nothing is fetched and the marker stays. Shows the newest day where something was taken.
void TakeFetchedRates(session::Session& session);

/// Whether a server's answer is a rates file: delimited rows (Schema.ini beside the file says how) of a
/// currency, a day, a rate and a multiplier.
bool IsRatesFile(std::string_view content);

}  // namespace calc
