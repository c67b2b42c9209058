#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "session/session.h"

class QWidget;

namespace ui {

struct GridContent;
class ScreenMemory;

/// What every screen works with. One per program, outliving all screens.
struct Context {
  session::Session& session;
  ScreenMemory& memory;  ///< sizes, column widths, order and sort, per user and screen

  /// Opens a document or folder (Windows path) with the program that the user has for it.
  std::function<bool(std::string_view windows_path)> open_document;
  /// Opens the manual at a screen's chapter; the anchor is the screen's object name.
  std::function<void(std::string_view screen)> open_manual;
  /// Opens a page of the help folder beside the program ("incoterms.html"); false where that failed.
  std::function<bool(std::string_view page)> open_help = {};
  /// Shows a list as a report: preview, print, export.
  std::function<void(const GridContent& content, QWidget* parent)> preview_list = {};
  /// Opens the declaration that a line belongs to, at the line, over `parent`; comes back when it is closed.
  std::function<void(std::int64_t Record_ID, QWidget* parent)> open_line = {};
};

}  // namespace ui
