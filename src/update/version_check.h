#pragma once

#include <string>
#include <string_view>

#include "platform/download_request.h"
#include "session/session.h"

namespace update {

/// The running program's major, minor and revision numbers: "1.0.0".
std::string InstalledVersion();

/// Fetches "download/dat/vers.txt" from the server of the setting `www` into the system folder and compares
/// the version in it with ours. "0" where no update is needed or the check failed (with its message), else
/// the server's version. `interactive` also says that there is nothing newer.
std::string CheckVersion(session::Session& session, bool interactive);
std::string CheckVersion(session::Session& session, bool interactive, const platform::Downloader& download);

/// The version in the file's content: of its first line the text before the first "-", without blanks around
/// it. Empty without a "-", and where anything but digits and dots stands there: the version becomes part of
/// a command line.
std::string ServerVersion(std::string_view content);

/// Compares part by part, as texts: "10" comes before "9", which is deliberate. Only parts that both have
/// count.
bool IsNewer(std::string_view installed, std::string_view server);

}  // namespace update
