#include "store/sources.h"

#include "platform/encoding.h"
#include "platform/paths.h"
#include "store/engine.h"
#include "store/source_table.h"

namespace store {

namespace {

using platform::spreadsheet::ColumnKind;
using platform::spreadsheet::SheetError;

ColumnType TypeOf(const platform::spreadsheet::Column& column) {
  switch (column.kind) {
    case ColumnKind::kNumber:
      return ColumnType::kDouble;
    case ColumnKind::kDate:
      return ColumnType::kDateTime;
    case ColumnKind::kBoolean:
      return ColumnType::kYesNo;
    case ColumnKind::kText:
      break;
  }
  return column.size > 0 ? ColumnType::kText : ColumnType::kMemo;
}

// "A1:D20" behind the "$" of a sheet name.
struct Range {
  std::size_t first_column = 0, first_row = 0, last_column = 0, last_row = 0;  // from 0
};

// Reads "D20"; false where it is no cell.
bool TakeCell(std::string_view& text, std::size_t& column, std::size_t& row) {
  column = 0;
  row = 0;
  std::size_t i = 0;
  for (; i < text.size() && i < 3; ++i) {
    const char c = static_cast<char>(text[i] & ~0x20);
    if (c < 'A' || c > 'Z') break;
    column = column * 26 + static_cast<std::size_t>(c - 'A' + 1);
  }
  const std::size_t letters = i;
  for (; i < text.size() && text[i] >= '0' && text[i] <= '9' && row < 10'000'000; ++i) {
    row = row * 10 + static_cast<std::size_t>(text[i] - '0');
  }
  if (letters == 0 || i == letters || row == 0) return false;
  text.remove_prefix(i);
  --column;
  --row;
  return true;
}

bool ParseRange(std::string_view text, Range& range) {
  if (!TakeCell(text, range.first_column, range.first_row) || !text.starts_with(':')) return false;
  text.remove_prefix(1);
  return TakeCell(text, range.last_column, range.last_row) && text.empty() &&
         range.last_column >= range.first_column && range.last_row >= range.first_row;
}

/// The reader's text without the file's bare name before it, which the message names in full.
std::string ReasonOf(const SheetError& error, std::string_view path) {
  const std::string text = error.what();
  const std::string prefix = "Fisierul " + std::string(platform::FileNameOf(path)) + ": ";
  return text.starts_with(prefix) ? text.substr(prefix.size()) : text;
}

}  // namespace

SourceSchema::SourceSchema(Engine& engine, const ConnectionRequest& request)
    : engine_(engine), request_(request) {
  const std::u8string host = engine.ToHost(request.data_source).u8string();
  host_path_.assign(host.begin(), host.end());
}

SourceSchema::~SourceSchema() = default;

void SourceSchema::Register() {
  const std::string& path = request_.data_source;
  const std::filesystem::path host = engine_.ToHost(path);
  std::error_code ignored;
  if (request_.kind == ConnectionRequest::Kind::kTextFolder) {
    if (!std::filesystem::is_directory(host, ignored)) {
      throw Error(kIntegrity, path, fmt::format("Nu exista folderul {}", path));
    }
  } else {
    if (!std::filesystem::is_regular_file(host, ignored)) {
      throw Error(kIntegrity, path, fmt::format("Nu exista fisierul {}", path));
    }
    try {
      book_ = platform::spreadsheet::OpenWorkbook(host_path_);
    } catch (const SheetError& error) {
      throw Error(kIntegrity, path,
                  fmt::format("Fisierul {} nu poate fi citit: {}", path, ReasonOf(error, path)));
    }
  }
  RegisterSourceModule(engine_.db(), *this);
}

std::vector<std::string> SourceSchema::Names() const {
  std::vector<std::string> names;
  if (request_.kind == ConnectionRequest::Kind::kWorksheet) {
    for (const auto& sheet : book_->sheets()) names.push_back(sheet.name + "$");
    return names;
  }
  std::error_code failed;
  for (const auto& entry :
       std::filesystem::directory_iterator(engine_.ToHost(request_.data_source), failed)) {
    const std::u8string name = entry.path().filename().u8string();
    const std::string extension = platform::ToLower(entry.path().extension().string());
    if (extension == ".txt" || extension == ".csv" || extension == ".tab" || extension == ".asc") {
      names.emplace_back(name.begin(), name.end());
    }
  }
  std::sort(names.begin(), names.end());
  return names;
}

void SourceSchema::FailUnknown(std::string_view name) const {
  std::string known;
  for (const std::string& there : Names()) known += (known.empty() ? "" : ", ") + there;
  throw Error(kNoSuchTable, request_.data_source,
              fmt::format("Nu exista '{}' in {}; exista: {}", name, request_.data_source, known));
}

const SourceSchema::Source* SourceSchema::Loaded(std::string_view name) const {
  for (const auto& source : sources_) {
    if (NameEqual()(source->name, name)) return source.get();
  }
  return nullptr;
}

const dialect::Relation* SourceSchema::Find(std::string_view name) const {
  if (const Source* loaded = Loaded(name)) return &loaded->relation;
  std::unique_ptr<Source> source;
  try {
    source = Read(name);
  } catch (const SheetError& error) {
    if (error.reason() == SheetError::Reason::kNoSuchSheet) FailUnknown(name);
    throw Error(kIntegrity, request_.data_source,
                fmt::format("'{}' din {} nu poate fi citit: {}", name, request_.data_source,
                            ReasonOf(error, request_.data_source)));
  }
  source->name = name;
  for (std::size_t i = source->first_column; i < source->last_column; ++i) {
    const platform::spreadsheet::Column& column = source->table.columns()[i];
    source->relation.columns.push_back({.name = column.name,
                                        .type = TypeOf(column),
                                        .size = column.kind == ColumnKind::kText ? column.size : 0});
  }
  source->relation.has_rowid = false;
  source->relation.sqlite_name = "temp." + QuoteName(name);
  sources_.push_back(std::move(source));
  try {
    engine_.Run(ShowStatement(sources_.size() - 1));
  } catch (...) {
    sources_.pop_back();
    throw;
  }
  return &sources_.back()->relation;
}

std::uint32_t SourceSchema::FirstRow(std::string_view name) const {
  const dialect::Relation* relation = Find(name);
  for (const std::unique_ptr<Source>& source : sources_) {
    if (&source->relation == relation) return source->table.first_row();
  }
  return 1;
}

std::string SourceSchema::ShowStatement(std::size_t index) const {
  return fmt::format("CREATE VIRTUAL TABLE IF NOT EXISTS {} USING dx_source({})",
                     sources_[index]->relation.sqlite_name, index);
}

void SourceSchema::ShowAgain() noexcept {
  for (std::size_t i = 0; i < sources_.size(); ++i) {
    sqlite3_exec(engine_.db(), ShowStatement(i).c_str(), nullptr, nullptr, nullptr);
  }
}

std::unique_ptr<SourceSchema::Source> SourceSchema::Read(std::string_view name) const {
  return request_.kind == ConnectionRequest::Kind::kWorksheet ? ReadSheet(name) : ReadText(name);
}

std::unique_ptr<SourceSchema::Source> SourceSchema::ReadSheet(std::string_view name) const {
  const std::size_t dollar = name.rfind('$');
  if (dollar == std::string_view::npos) FailUnknown(name);
  const std::string_view behind = name.substr(dollar + 1);
  Range range;
  const bool ranged = !behind.empty() && behind != "'";
  if (ranged && !ParseRange(behind, range)) FailUnknown(name);
  if (range.first_row > 0) {
    throw Error(kNoSuchTable, request_.data_source,
                fmt::format("Domeniul '{}' trebuie sa inceapa cu primul rand", name));
  }
  std::string_view sheet = name.substr(0, dollar);
  if (behind == "'" && sheet.starts_with('\'')) sheet.remove_prefix(1);
  auto source = std::make_unique<Source>();
  source->table = platform::spreadsheet::ReadSheetTable(
      *book_, sheet, {.headings = request_.headings, .mixed_as_text = request_.mixed_as_text});
  source->last_column = source->table.columns().size();
  source->row_count = source->table.row_count();
  if (!ranged) return source;
  if (range.first_column >= source->last_column) FailUnknown(name);
  source->first_column = range.first_column;
  source->last_column = std::min(source->last_column, range.last_column + 1);
  source->row_count = std::min(source->row_count, range.last_row + (request_.headings ? 0 : 1));
  return source;
}

std::unique_ptr<SourceSchema::Source> SourceSchema::ReadText(std::string_view name) const {
  std::string file(name);
  // "curs#txt" is how the dialect may write the dot.
  if (file.find('.') == std::string::npos) {
    const std::size_t mark = file.rfind('#');
    if (mark != std::string::npos) file[mark] = '.';
  }
  const bool plain = file.find_first_of("\\/:") == std::string::npos;
  const std::filesystem::path host = engine_.ToHost(platform::WithBackslash(request_.data_source) + file);
  std::error_code ignored;
  if (!plain || !std::filesystem::is_regular_file(host, ignored)) FailUnknown(name);
  auto source = std::make_unique<Source>();
  const std::u8string text = host.u8string();
  source->table = platform::spreadsheet::ReadTextTable({text.begin(), text.end()}, request_.headings);
  source->last_column = source->table.columns().size();
  source->row_count = source->table.row_count();
  return source;
}

}  // namespace store
