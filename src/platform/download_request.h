#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace platform {

/// What to fetch and where to put it. The download screen takes it as one text: the address, ",", the Windows
/// path of the target, ",", "1".
struct DownloadRequest {
  std::string address;
  std::string target;

  std::string Text() const { return address + "," + target + ",1"; }
  /// An address may hold commas, a path of ours does not. A text that is no request gives empty parts.
  static DownloadRequest Parse(std::string_view text);
};

/// Whether the whole content fetched is what the caller asked for.
using ContentCheck = std::function<bool(std::string_view content)>;

/// Downloads what the request's text names; true once the target holds the new content. Who only needs a file
/// fetched takes this, and does not depend on how it is done.
using Downloader = std::function<bool(const std::string& request, const ContentCheck& valid)>;

/// `path` on the server of `base`, with one slash between them. An empty base stays empty: no address.
std::string AddressBelow(std::string_view base, std::string_view path);

/// True for what a server or a proxy sends in place of a file: a web page.
bool LooksLikeWebPage(std::string_view content);

}  // namespace platform
