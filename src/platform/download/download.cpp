#include "platform/download/download.h"

#include "platform/download/transfer.h"

namespace platform {
namespace {

constexpr char kCaption[] = "Descarc fisierul... Va rog asteptati...";

/// Beside the numbers of servers (400 and up) and of the web client (below 100).
constexpr int kContentRefused = 200;  // the server was content, we are not

std::string_view StatusText(TransferStep step) {
  switch (step) {
    case TransferStep::kCache:
      return "Checking For Cached Copy...";
    case TransferStep::kResource:
      return "Finding Resource...";
    case TransferStep::kConnect:
      return "Connecting...";
    case TransferStep::kRequest:
      return "Sending Request...";
    case TransferStep::kBegin:
      return "Beginning Download...";
    case TransferStep::kData:
      return "Downloading Data...";
    case TransferStep::kEnd:
      break;
  }
  return "End Of Download Data...";
}

bool Fail(Host& host, const DownloadRequest& request, int number, std::string_view reason) {
  host.errors.Write("Download",
                    fmt::format("{} -> {}: {} ({})", request.address, request.target, reason, number));
  host.prompter.Error(
      fmt::format("EROARE LA DESCARCARE FISIER\r\nNu exista fisierul sau nu exista o conexiune la "
                  "internet.\r\nNumar eroare: {}",
                  number),
      "");
  return false;
}

/// False once the user has cancelled.
bool Run(Transfer& transfer, Progress& progress) {
  TransferStep shown = TransferStep::kCache;
  progress.Update(kCaption, 0);
  progress.Status(StatusText(shown));
  bool redirected = false;
  for (bool running = true; running;) {
    running = transfer.Turn();
    if (!redirected && transfer.redirected()) {
      redirected = true;
      progress.Status("Redirecting...");
    }
    if (transfer.error() == 0 && transfer.step() > shown) {
      shown = transfer.step();
      progress.Status(StatusText(shown));
    }
    progress.Update(kCaption, transfer.percent());
    if (progress.Cancelled()) {
      progress.Status("Cancelling...");
      return false;
    }
  }
  return true;
}

}  // namespace

bool Download(Host host, const std::string& request, const ContentCheck& valid,
              const DownloadOptions& options) {
  const DownloadRequest what = DownloadRequest::Parse(request);
  Transfer transfer(what.address, options);
  if (!Run(transfer, host.progress)) return false;
  if (transfer.error() != 0) return Fail(host, what, transfer.error(), transfer.reason());
  const std::string& content = transfer.content();
  if (content.empty()) return Fail(host, what, kContentRefused, "fisier gol");
  if (LooksLikeWebPage(content)) return Fail(host, what, kContentRefused, "pagina web in locul fisierului");
  if (valid && !valid(content)) return Fail(host, what, kContentRefused, "continut neasteptat");
  try {
    host.files.Replace(what.target, content);
  } catch (const FileError& error) {
    // Neither the server nor the connection is at fault: the disk's own reason helps more.
    host.errors.Write("Download", error.what());
    host.prompter.Error(error.what());
    return false;
  }
  return true;
}

Downloader DownloaderFor(Host host, DownloadOptions options) {
  return [host, options](const std::string& request, const ContentCheck& valid) {
    return Download(host, request, valid, options);
  };
}

}  // namespace platform
