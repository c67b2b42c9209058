#pragma once

#include <chrono>
#include <cstddef>
#include <string>

#include "platform/download_request.h"
#include "platform/host.h"

namespace platform {

struct DownloadOptions {
  std::chrono::milliseconds connect_timeout{15'000};
  std::chrono::milliseconds stall_timeout{30'000};  ///< without a single byte coming in
  std::chrono::milliseconds total_timeout{600'000};
  int redirects = 5;
  std::size_t size_limit = std::size_t{32} << 20;  ///< bytes
};

/// Fetches one http, https or file address into one local file, showing on host.progress how far it is; the
/// user may cancel it there.
///
/// The target is replaced as a whole and only by content that came in whole and passes `valid`; a refused
/// answer, a cut or empty body and a web page leave it as it was. A failure is shown with its number (the
/// server's status from 400 on, otherwise the web client's own) and noted in the error log. False then, and
/// after cancelling, which shows nothing.
bool Download(Host host, const std::string& request, const ContentCheck& valid,
              const DownloadOptions& options = {});

/// The same bound to a host, for those who take a Downloader.
Downloader DownloaderFor(Host host, DownloadOptions options = {});

}  // namespace platform
