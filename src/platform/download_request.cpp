#include "platform/download_request.h"

#include "platform/encoding.h"

namespace platform {

DownloadRequest DownloadRequest::Parse(std::string_view text) {
  const std::size_t last = text.rfind(',');
  if (last == std::string_view::npos || last == 0) return {};
  const std::size_t first = text.rfind(',', last - 1);
  if (first == std::string_view::npos) return {};
  return {std::string(text.substr(0, first)), std::string(text.substr(first + 1, last - first - 1))};
}

std::string AddressBelow(std::string_view base, std::string_view path) {
  base = Trim(base);
  if (base.empty()) return {};
  while (base.ends_with('/')) base.remove_suffix(1);
  while (path.starts_with('/')) path.remove_prefix(1);
  return std::string(base) + "/" + std::string(path);
}

bool LooksLikeWebPage(std::string_view content) {
  if (content.starts_with("\xEF\xBB\xBF")) content.remove_prefix(3);
  content.remove_prefix(std::min(content.find_first_not_of(" \t\r\n"), content.size()));
  const std::string beginning = ToLower(content.substr(0, 16));
  for (const char* opening : {"<!doctype", "<html", "<head", "<body", "<!--"}) {
    if (beginning.starts_with(opening)) return true;
  }
  return false;
}

}  // namespace platform
