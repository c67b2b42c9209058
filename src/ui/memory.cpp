#include "ui/memory.h"

#include "ui/text.h"

namespace ui {
namespace {

// The user name becomes part of a file name.
std::string FileNamePart(std::string_view user_name) {
  std::string part;
  for (const char c : user_name) {
    const auto byte = static_cast<unsigned char>(c);
    part += byte >= 0x80 || std::isalnum(byte) != 0 || c == '-' || c == '_' || c == '.' ? c : '_';
  }
  return part.empty() ? "utilizator" : part;
}

}  // namespace

ScreenMemory::ScreenMemory(platform::Files& files, std::string_view folder, std::string_view user_name)
    : files_(&files), path_(fmt::format("{}Ecrane_{}.txt", folder, FileNamePart(user_name))) {
  Load();
}

void ScreenMemory::Load() {
  try {
    if (!files_->Exists(path_)) return;
    for (const std::string& line : platform::SplitLines(files_->Read(path_))) {
      const std::size_t at = line.find('=');
      if (at != std::string::npos) values_[Q(line.substr(0, at))] = Q(line.substr(at + 1));
    }
  } catch (const platform::FileError&) {  // screens open as they did the first time
  }
}

QString ScreenMemory::Get(const QString& screen, const QString& key) const {
  const auto found = values_.find(screen + '/' + key);
  return found == values_.end() ? QString() : found->second;
}

void ScreenMemory::Set(const QString& screen, const QString& key, const QString& value) {
  QString& kept = values_[screen + '/' + key];
  if (kept == value) return;
  kept = value;
  std::string text;
  for (const auto& [name, one] : values_) text += Utf8(name) + "=" + Utf8(one) + "\r\n";
  try {
    files_->Replace(path_, text);
  } catch (const platform::FileError&) {  // not worth a message: nothing of the user's work is lost
  }
}

}  // namespace ui
