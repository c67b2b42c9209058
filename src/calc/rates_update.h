#pragma once

#include <string_view>

#include "platform/download_request.h"
#include "session/session.h"

namespace calc {

/// Brings `Rate_Schimb` of the open company up to date from the rates file of the server, at most once a day
/// and only where the marker "CursBNR\data.txt" says that newer rates are to be had. Rows newer than the
/// table are also taken from a "CursBNR\curs.txt" that is already there, whatever the marker says: it has
/// been fetched for one company, and each has a table of its own.
///
/// True when the table was updated or found current; false when it stopped early (marker of today, or none)
/// or the download brought no file of rates. Errors are passed over and noted, a row that makes no sense is
/// noted and left out.
bool CursSchimb_Actualizare(session::Session& session, const platform::Downloader& download);

/// Whether a server's answer is a rates file: delimited rows (Schema.ini beside the file says how) of a
/// currency, a day, a rate and a multiplier.
bool IsRatesFile(std::string_view content);

}  // namespace calc
