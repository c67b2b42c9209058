#include "reports/report.h"

#include <set>

#include "platform/encoding.h"

namespace reports {
namespace {

/// Text with every {name} replaced by what `value_of` answers; a lone brace stays.
std::string Replace(std::string_view text, const std::function<std::string(std::string_view)>& value_of) {
  std::string filled;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t open = text.find('{', at);
    const std::size_t close = open == std::string_view::npos ? open : text.find('}', open);
    if (close == std::string_view::npos) return filled.append(text.substr(at));
    filled += text.substr(at, open - at);
    filled += value_of(text.substr(open + 1, close - open - 1));
    at = close + 1;
  }
  return filled;
}

std::string Where(const std::string& file, int line, const std::string& id) {
  return file.empty() ? std::string() : fmt::format("Fisierul {}, linia {}, raportul {}: ", file, line, id);
}

Alignment AlignmentOf(const ColumnDefinition& column, Format format) {
  if (column.alignment != Alignment::kByFormat) return column.alignment;
  return IsNumeric(format) ? Alignment::kRight : Alignment::kLeft;
}

}  // namespace

std::string StatementOf(const Definition& definition, const std::string& file,
                        const Placeholders& placeholders) {
  return Replace(definition.statement, [&](std::string_view name) {
    const auto found = placeholders.find(name);
    if (found == placeholders.end()) {
      throw ReportError(Where(file, definition.line, definition.id) +
                        fmt::format("{{{}}} nu este cunoscut in fraza", name));
    }
    return platform::ReplaceAll(found->second, "'", "''");
  });
}

Report::Report(const Definition& definition, const std::string& file, std::shared_ptr<const Table> table,
               Placeholders placeholders, Formatter formatter)
    : file_(file),
      id_(definition.id),
      line_(definition.line),
      table_(std::move(table)),
      placeholders_(std::move(placeholders)),
      formatter_(std::move(formatter)),
      orientation_(definition.orientation) {
  title_ = Fill(definition.title, -1);
  for (const std::string& line : definition.lines) {
    std::string filled = Fill(line, -1);
    // A line that only carries values is left out where there are none.
    if (!platform::Trim(filled).empty()) lines_.push_back(std::move(filled));
  }
  ResolveColumns(definition);
  ResolveGroups(definition);
  MakeBands(definition);
}

void Report::Refuse(const std::string& reason) const { throw ReportError(Where(file_, line_, id_) + reason); }

std::string Report::Fill(std::string_view text, int row) const {
  return Replace(text, [&](std::string_view name) {
    if (const auto found = placeholders_.find(name); found != placeholders_.end()) return found->second;
    const int column = table_->ColumnOf(name);
    if (column < 0) Refuse(fmt::format("{{{}}} nu este cunoscut", name));
    if (row >= table_->rows() || row < 0) return std::string();
    Format format = Format::kAsShown;
    for (const ReportColumn& each : columns_) {
      if (each.source == column) format = each.format;
    }
    return table_->TextAt(row, column, format, formatter_);
  });
}

bool Report::IsEmptyColumn(int column) const {
  for (int row = 0; row < table_->rows(); ++row) {
    if (!store::IsEmpty(table_->ValueAt(row, column))) return false;
  }
  return table_->rows() > 0;
}

void Report::ResolveColumns(const Definition& definition) {
  const auto add = [&](const ColumnDefinition& column, int source) {
    const Table::Column& own = table_->columns()[static_cast<std::size_t>(source)];
    const Format format = column.format == Format::kAsShown ? own.format : column.format;
    columns_.push_back({column.caption.empty() ? own.caption : column.caption, source, column.format,
                        AlignmentOf(column, format), column.width, column.total, column.group_total});
    has_totals_ = has_totals_ || column.total;
  };
  const std::vector<ColumnDefinition>& given = definition.columns;
  const bool all =
      std::any_of(given.begin(), given.end(), [](const ColumnDefinition& each) { return each.field == "*"; });
  for (const ColumnDefinition& column : given) {
    if (!column.only.empty()) {
      const std::size_t equals = column.only.find('=');
      const auto found = placeholders_.find(std::string_view(column.only).substr(0, equals));
      if (found == placeholders_.end() || found->second != column.only.substr(equals + 1)) continue;
    }
    if (column.field == "*") {
      for (int i = 0; i < table_->visible_columns(); ++i) {
        if (column.filled && IsEmptyColumn(i)) continue;
        const auto own = std::find_if(given.begin(), given.end(), [&](const ColumnDefinition& each) {
          return table_->ColumnOf(each.field) == i;
        });
        add(own == given.end() ? column : *own, i);
      }
      continue;
    }
    const int source = table_->ColumnOf(column.field);
    if (source >= 0) {
      if (!all) add(column, source);
    } else if (!column.optional) {
      Refuse(fmt::format("coloana {} nu exista", column.field));
    }
  }
  if (columns_.empty()) Refuse("nu are coloane");
}

bool Report::StandTogether(const std::vector<int>& columns) const {
  std::set<std::string> seen;
  std::string last;
  for (int row = 0; row < table_->rows(); ++row) {
    std::string key;
    for (const int column : columns) key += table_->ValueAt(row, column).ToText() + '\x1F';
    if (row > 0 && key == last) continue;
    if (!seen.insert(key).second) return false;
    last = std::move(key);
  }
  return true;
}

void Report::ResolveGroups(const Definition& definition) {
  std::vector<int> path;
  for (const GroupDefinition& group : definition.groups) {
    const int column = table_->ColumnOf(group.field);
    if (column < 0) Refuse(fmt::format("coloana {} a grupului nu exista", group.field));
    path.push_back(column);
    if (!definition.has_statement() && !StandTogether(path)) break;
    groups_.push_back(group);
    group_columns_.push_back(column);
    if (groups_.back().header.empty()) {
      groups_.back().header =
          fmt::format("{}: {{{}}}", table_->columns()[static_cast<std::size_t>(column)].caption, group.field);
    }
  }
}

void Report::MakeBands(const Definition& definition) {
  const int rows = table_->rows();
  const std::size_t depth = groups_.size();
  const std::vector<double> zero(columns_.size(), 0.0);
  std::vector<std::vector<double>> sums(depth + 1, zero);  // the last one is the grand total
  std::vector<int> first(depth, 0);
  std::vector<std::string> keys(depth);
  bands_.reserve(static_cast<std::size_t>(rows) + 2);

  const auto total = [&](Band::Kind kind, std::size_t level, int from, int to) {
    totals_.push_back(std::exchange(sums[level], zero));
    bands_.push_back(
        {kind, static_cast<std::uint8_t>(level), from, to - from, static_cast<int>(totals_.size()) - 1});
  };
  const auto close_from = [&](std::size_t level, int row) {
    for (std::size_t i = depth; i-- > level;) {
      if (groups_[i].totals && has_totals_) total(Band::Kind::kGroupTotal, i, first[i], row);
      sums[i] = zero;
    }
  };
  for (int row = 0; row < rows; ++row) {
    std::size_t changed = depth;
    for (std::size_t i = 0; i < depth; ++i) {
      std::string key = table_->ValueAt(row, group_columns_[i]).ToText();
      if (changed == depth && (row == 0 || key != keys[i])) changed = i;
      keys[i] = std::move(key);
    }
    if (row > 0) close_from(changed, row);
    for (std::size_t i = changed; i < depth; ++i) {
      first[i] = row;
      bands_.push_back({Band::Kind::kGroupHeader, static_cast<std::uint8_t>(i), row, 0, -1});
    }
    bands_.push_back({Band::Kind::kDetail, static_cast<std::uint8_t>(depth), row, 1, -1});
    if (!has_totals_) continue;
    for (std::size_t c = 0; c < columns_.size(); ++c) {
      if (!columns_[c].total) continue;
      const double value = table_->ValueAt(row, columns_[c].source).ToDouble();
      for (std::vector<double>& each : sums) each[c] += value;
    }
  }
  if (rows > 0) close_from(0, rows);
  if (has_totals_ && rows > 0) total(Band::Kind::kGrandTotal, depth, 0, rows);
  if (definition.count || rows == 0) bands_.push_back({Band::Kind::kCount, 0, 0, rows, -1});
}

store::Value Report::ValueOf(const Band& band, std::size_t column) const {
  if (band.kind == Band::Kind::kDetail) return table_->ValueAt(band.row, columns_[column].source);
  if (band.totals < 0 || !columns_[column].total) return {};
  if (columns_[column].group_total && band.kind == Band::Kind::kGrandTotal) return {};
  return totals_[static_cast<std::size_t>(band.totals)][column];
}

Format Report::FormatOf(std::size_t column) const {
  const ReportColumn& each = columns_[column];
  if (each.format != Format::kAsShown) return each.format;
  return table_->columns()[static_cast<std::size_t>(each.source)].format;
}

std::string Report::TextOf(const Band& band, std::size_t column) const {
  if (band.kind == Band::Kind::kDetail) {
    return table_->TextAt(band.row, columns_[column].source, columns_[column].format, formatter_);
  }
  const store::Value sum = ValueOf(band, column);
  return sum.is_null() ? std::string() : formatter_(sum, FormatOf(column));
}

bool Report::ShowsNumber(const Band& band, std::size_t column) const {
  const store::Value value = ValueOf(band, column);
  return value.is_number() && !value.is_boolean() &&
         TextOf(band, column) == formatter_(value, FormatOf(column));
}

std::string Report::HeaderOf(const Band& band) const {
  return std::string(platform::Trim(Fill(groups_[band.level].header, band.row)));
}

std::string Report::CaptionOf(const Band& band) const {
  switch (band.kind) {
    case Band::Kind::kGroupHeader:
      return HeaderOf(band);
    case Band::Kind::kGroupTotal:
      return fmt::format("Total {} ({})", HeaderOf(band), band.rows);
    case Band::Kind::kGrandTotal:
      return fmt::format("TOTAL ({})", band.rows);
    case Band::Kind::kCount:
      return band.rows == 0 ? "Nu sunt inregistrari" : fmt::format("Total inregistrari: {}", band.rows);
    case Band::Kind::kDetail:
      break;
  }
  return {};
}

}  // namespace reports
