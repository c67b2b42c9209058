#pragma once

#include <QByteArray>
#include <QString>
#include <map>
#include <string>

#include "platform/files.h"

namespace ui {

/// How the user left each screen: window sizes, column widths, order and sort. Kept in a file of ours beside
/// Settings.xml, one per operating-system user ("Ecrane_ana.txt"), as "screen/key=value" lines. A file that
/// cannot be read or written costs nothing but the memory.
class ScreenMemory {
 public:
  /// `folder` is the Windows path of the settings file's folder, with its backslash.
  ScreenMemory(platform::Files& files, std::string_view folder, std::string_view user_name);

  QString Get(const QString& screen, const QString& key) const;
  /// Stores at once; an equal value writes nothing.
  void Set(const QString& screen, const QString& key, const QString& value);

 private:
  void Load();

  platform::Files* files_;
  std::string path_;
  std::map<QString, QString> values_;
};

}  // namespace ui
