#include "declarations/lines/line_query.h"

namespace declarations {

LineQuery BuiltInLineQuery(std::string_view columns) {
  return {"SELECT " + std::string(columns) + " FROM INTRASTAT", " ORDER BY Record_ID"};
}

LineQuery ReadLineQuery(session::Session& session, std::string_view file, std::string_view columns,
                        std::string_view where) {
  const std::string path = session.UnderSystem(file);
  if (!session.host.files.Exists(path)) return BuiltInLineQuery(columns);
  try {
    std::string text = session.host.files.Read(path);
    if (text.starts_with("\xEF\xBB\xBF")) text.erase(0, 3);  // text editors put the mark there
    std::vector<std::string> lines = platform::SplitLines(text);
    lines.resize(2);
    return {std::move(lines[0]), std::move(lines[1])};
  } catch (const platform::FileError& error) {
    session.host.errors.Write(where, error.what());
  }
  return BuiltInLineQuery(columns);
}

}  // namespace declarations
