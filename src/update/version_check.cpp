#include "update/version_check.h"

#include "platform/download/download.h"
#include "platform/encoding.h"

namespace update {
namespace {

constexpr char kFileName[] = "vers.txt";
constexpr std::size_t kSizeLimit = 64 * 1024;

bool IsText(std::string_view content) {
  return std::none_of(content.begin(), content.end(), [](char c) {
    const auto byte = static_cast<unsigned char>(c);
    return byte < ' ' && c != '\t' && c != '\r' && c != '\n';
  });
}

/// The part before the next dot, taken off `version`.
std::string_view TakePart(std::string_view& version) {
  const std::size_t dot = version.find('.');
  const std::string_view part = version.substr(0, dot);
  version.remove_prefix(dot == std::string_view::npos ? version.size() : dot + 1);
  return part;
}

/// The file's content; nothing where it did not come or cannot be read.
std::optional<std::string> Fetch(session::Session& session, const platform::Downloader& download) {
  const std::string path = session.UnderSystem(kFileName);
  const platform::DownloadRequest request{
      platform::AddressBelow(session.settings.www, "download/dat/vers.txt"), path};
  // A failed download leaves an earlier file, which says nothing about today.
  if (!download(request.Text(), IsText) || !session.host.files.Exists(path)) return std::nullopt;
  try {
    return session.host.files.Read(path);
  } catch (const platform::FileError& error) {
    session.host.errors.Write("CheckVersion", error.what());
    return std::nullopt;
  }
}

}  // namespace

std::string InstalledVersion() { return DECLARIX_VERSION; }

std::string CheckVersion(session::Session& session, bool interactive) {
  platform::DownloadOptions options;
  options.size_limit = kSizeLimit;
  return CheckVersion(session, interactive, platform::DownloaderFor(session.host, options));
}

std::string CheckVersion(session::Session& session, bool interactive, const platform::Downloader& download) {
  const std::optional<std::string> content = Fetch(session, download);
  if (!content) {
    session.host.prompter.Error("A fost o eroare la verificare versiune disponibila pentru download", "");
    return "0";
  }
  std::string server = ServerVersion(*content);
  if (server.empty()) return "0";
  const std::string installed = InstalledVersion();
  if (IsNewer(installed, server)) return server;
  if (interactive) {
    session.host.prompter.Info("Nu este necesara actualizarea programului.\r\nVersiunea instalata este: " +
                               installed + "\r\nVersiunea de pe server : " + server);
  }
  return "0";
}

std::string ServerVersion(std::string_view content) {
  if (content.starts_with("\xEF\xBB\xBF")) content.remove_prefix(3);
  const std::string_view line = content.substr(0, content.find_first_of("\r\n"));
  const std::size_t dash = line.find('-');
  if (dash == std::string_view::npos) return {};
  const std::string_view version = platform::Trim(line.substr(0, dash));
  if (version.find_first_not_of("0123456789.") != std::string_view::npos) return {};
  return std::string(version);
}

bool IsNewer(std::string_view installed, std::string_view server) {
  while (!installed.empty() && !server.empty()) {
    const std::string_view ours = TakePart(installed);
    const std::string_view theirs = TakePart(server);
    if (ours != theirs) return theirs > ours;
  }
  return false;
}

}  // namespace update
