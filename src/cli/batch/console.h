#pragma once

#include <iosfwd>
#include <optional>
#include <string>

#include "platform/progress.h"
#include "platform/prompter.h"

namespace cli {

/// Messages as lines on the error stream, their title first. Questions are not asked: they get the answer
/// given on the command line, else No.
class BatchPrompter : public platform::Prompter {
 public:
  explicit BatchPrompter(std::ostream& err) : err_(&err) {}
  void set_answer(bool yes) { answer_ = yes; }

  void Message(std::string_view text, std::string_view title, platform::Icon icon) override;
  bool Ask(std::string_view text, std::string_view title, platform::Icon icon) override;

 private:
  std::ostream* err_;
  bool answer_ = false;
};

/// One line that is written over as the run goes on; nothing where nobody watches.
class TerminalProgress : public platform::Progress {
 public:
  TerminalProgress(std::ostream& err, bool shown) : err_(&err), shown_(shown) {}
  void Update(std::string_view caption, int percent) override;
  void Status(std::string_view text) override;
  /// Ends the line before other text is written.
  void End();

 private:
  std::ostream* err_;
  bool shown_;
  bool line_open_ = false;
  int last_percent_ = -1;
  std::string last_caption_;
};

}  // namespace cli
