#include "cli/batch/console.h"

#include <ostream>

#include "platform/encoding.h"

namespace cli {
namespace {

std::string OneLineEnds(std::string_view text) {
  return platform::ReplaceAll(platform::ReplaceAll(text, "\r\n", "\n"), "\r", "\n");
}

std::string Titled(std::string_view text, std::string_view title) {
  return title.empty() ? OneLineEnds(text) : std::string(title) + ": " + OneLineEnds(text);
}

}  // namespace

void BatchPrompter::Message(std::string_view text, std::string_view title, platform::Icon) {
  *err_ << Titled(text, title) << std::endl;
}

bool BatchPrompter::Ask(std::string_view text, std::string_view title, platform::Icon) {
  *err_ << Titled(text, title) << (answer_ ? " -> Da" : " -> Nu") << std::endl;
  return answer_;
}

void TerminalProgress::Update(std::string_view caption, int percent) {
  if (!shown_ || (percent == last_percent_ && caption == last_caption_)) return;
  last_percent_ = percent;
  last_caption_ = caption;
  *err_ << "\r\x1b[K" << caption << ' ' << percent << '%' << std::flush;
  line_open_ = true;
  if (percent >= 100) End();
}

// A status that changes with every line would flood the terminal; the measure tells enough.
void TerminalProgress::Status(std::string_view) {}

void TerminalProgress::End() {
  if (line_open_) *err_ << "\r\x1b[K" << std::flush;
  line_open_ = false;
}

}  // namespace cli
