#include "platform/paths.h"

#include <cstdlib>
#include <system_error>

#include "platform/encoding.h"
#ifdef _WIN32
#include <windows.h>
// Behind windows.h, which it needs.
#include <shlobj.h>
#endif

namespace platform {
namespace {

namespace fs = std::filesystem;

fs::path FromUtf8(std::string_view text) { return fs::path(std::u8string(text.begin(), text.end())); }

std::string ToUtf8(const fs::path& path) {
  const std::u8string text = path.u8string();
  return std::string(text.begin(), text.end());
}

bool IsSeparator(char c) { return c == '\\' || c == '/'; }
char Lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }
char Upper(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }
bool IsLetter(char c) { return Lower(c) >= 'a' && Lower(c) <= 'z'; }

/// The parts between separators, with "." and ".." resolved as Windows does (never above the drive's root).
std::vector<std::string_view> Parts(std::string_view path) {
  std::vector<std::string_view> parts;
  std::size_t begin = 0;
  for (std::size_t i = 0; i <= path.size(); ++i) {
    if (i < path.size() && !IsSeparator(path[i])) continue;
    const std::string_view part = path.substr(begin, i - begin);
    begin = i + 1;
    if (part.empty() || part == ".") continue;
    if (part == "..") {
      if (!parts.empty()) parts.pop_back();
    } else {
      parts.push_back(part);
    }
  }
  return parts;
}

bool Present(const fs::path& path) {
  std::error_code failed;
  return fs::exists(fs::symlink_status(path, failed));
}

/// The entry of `folder` that bears `name` in another case; among several the alphabetically first one.
fs::path FindNoCase(const fs::path& folder, std::string_view name) {
  const std::string wanted = ToUpper(name);
  fs::path found;
  std::error_code failed;
  for (fs::directory_iterator entry(folder, failed), end; !failed && entry != end; entry.increment(failed)) {
    const fs::path candidate = entry->path().filename();
    if (ToUpper(ToUtf8(candidate)) == wanted && (found.empty() || candidate < found)) found = candidate;
  }
  return found;
}

fs::path Resolve(const fs::path& base, const std::vector<std::string_view>& parts) {
  fs::path exact = base;
  for (const std::string_view part : parts) exact /= FromUtf8(part);
  if (Present(exact)) return exact;

  fs::path path = base;
  bool known = true;  // every part so far exists
  for (const std::string_view part : parts) {
    const fs::path spelled = FromUtf8(part);
    if (known && !Present(path / spelled)) {
      const fs::path found = FindNoCase(path, part);
      if (!found.empty()) {
        path /= found;
        continue;
      }
      known = false;
    }
    path /= spelled;
  }
  return path;
}

fs::path DefaultRoot() {
  if (const char* data = std::getenv("XDG_DATA_HOME"); data != nullptr && *data != '\0') {
    return FromUtf8(data) / "declarix" / "drives";
  }
  if (const char* home = std::getenv("HOME"); home != nullptr && *home != '\0') {
    return FromUtf8(home) / ".local" / "share" / "declarix" / "drives";
  }
  return fs::absolute("declarix-drives");
}

/// "C:\a\b" where `path` lies below the drives folder `root`, else empty.
std::string OnDrive(const fs::path& path, const fs::path& root) {
  const fs::path below = path.lexically_relative(root);
  if (below.empty()) return {};
  const std::string drive = ToUtf8(*below.begin());
  if (drive.size() != 1 || !IsLetter(drive[0]) || Lower(drive[0]) == 'z') return {};
  std::string text{Upper(drive[0]), ':', '\\'};
  for (auto part = std::next(below.begin()); part != below.end(); ++part) {
    if (part->empty()) continue;
    if (text.back() != '\\') text += '\\';
    text += ToUtf8(*part);
  }
  return text;
}

}  // namespace

Drives::Drives(fs::path root) : root_(std::move(root)) {
  if (!root_.empty()) root_ = fs::absolute(root_).lexically_normal();
}

Drives Drives::FromEnvironment() {
  if (const char* root = std::getenv("DECLARIX_DRIVES"); root != nullptr && *root != '\0') {
    return Drives(FromUtf8(root));
  }
#ifdef _WIN32
  return Drives(fs::path());  // the machine's own drives
#else
  return Drives(DefaultRoot());
#endif
}

fs::path Drives::ToHost(std::string_view windows_path) const {
  if (root_.empty()) return FromUtf8(windows_path);
  char drive = 'c';
  if (windows_path.size() >= 2 && windows_path[1] == ':' && IsLetter(windows_path[0])) {
    drive = Lower(windows_path[0]);
    windows_path.remove_prefix(2);
  }
  std::vector<std::string_view> parts = Parts(windows_path);
  if (drive == 'z') return Resolve(root_.root_path(), parts);
  const std::string folder(1, drive);
  parts.insert(parts.begin(), folder);
  return Resolve(root_, parts);
}

std::string Drives::FromHost(const fs::path& host_path) const {
  const fs::path path = fs::absolute(host_path).lexically_normal();
  if (root_.empty()) return ReplaceAll(ToUtf8(path), "/", "\\");
  if (std::string text = OnDrive(path, root_); !text.empty()) return text;
  std::error_code failed;
  const fs::path real_root = fs::weakly_canonical(root_, failed);
  if (!failed) {
    const fs::path real = fs::weakly_canonical(path, failed);
    if (!failed) {
      if (std::string text = OnDrive(real, real_root); !text.empty()) return text;
    }
  }
  return "Z:\\" + ReplaceAll(ToUtf8(path.relative_path()), "/", "\\");
}

std::vector<std::string> Drives::Roots() const {
  std::vector<std::string> roots;
#ifdef _WIN32
  if (root_.empty()) {
    const DWORD present = GetLogicalDrives();
    for (int i = 0; i < 26; ++i) {
      if ((present >> i & 1) != 0) roots.push_back(std::string(1, static_cast<char>('A' + i)) + ":\\");
    }
    return roots;
  }
#endif
  for (char letter = 'A'; letter < 'Z'; ++letter) {
    std::error_code failed;
    if (fs::is_directory(root_ / std::string(1, Lower(letter)), failed) ||
        fs::is_directory(root_ / std::string(1, letter), failed)) {
      roots.push_back(std::string(1, letter) + ":\\");
    }
  }
  roots.push_back("Z:\\");
  return roots;
}

std::string WithBackslash(std::string_view folder) {
  std::string text(folder);
  if (text.empty() || text.back() != '\\') text += '\\';
  return text;
}

std::string_view FileNameOf(std::string_view windows_path) {
  const std::size_t slash = windows_path.rfind('\\');
  return slash == std::string_view::npos ? windows_path : windows_path.substr(slash + 1);
}

std::string_view FolderOf(std::string_view windows_path) {
  const std::size_t slash = windows_path.rfind('\\');
  return slash == std::string_view::npos ? std::string_view() : windows_path.substr(0, slash + 1);
}

std::string CommonDataFolder() {
#ifdef _WIN32
  wchar_t folder[MAX_PATH];
  if (SHGetFolderPathW(nullptr, CSIDL_COMMON_APPDATA, nullptr, SHGFP_TYPE_CURRENT, folder) == S_OK) {
    return ToUtf8(fs::path(folder));
  }
#endif
  return "C:\\ProgramData";
}

}  // namespace platform
