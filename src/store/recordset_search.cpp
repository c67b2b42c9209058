#include "platform/encoding.h"
#include "store/functions.h"
#include "store/recordset_data.h"

namespace store {

int CompareCells(const Cell& a, const Cell& b) {
  if (a.is_null() || b.is_null()) return static_cast<int>(b.is_null()) - static_cast<int>(a.is_null());
  if (a.is_text() && b.is_text()) return CompareText(a.AsText(), b.AsText());
  if (a.is_text() != b.is_text()) return a.is_text() ? 1 : -1;  // numbers before texts
  const bool whole = (a.kind == Cell::Kind::kInteger || a.kind == Cell::Kind::kBoolean) &&
                     (b.kind == Cell::Kind::kInteger || b.kind == Cell::Kind::kBoolean);
  if (whole) return a.integer < b.integer ? -1 : static_cast<int>(a.integer > b.integer);
  const double x = a.AsNumber(), y = b.AsNumber();
  return x < y ? -1 : static_cast<int>(x > y);
}

RowTest::RowTest(const dialect::RowCondition& condition, const RowSet& set) {
  for (const auto& all_of : condition.any_of) {
    std::vector<Term>& terms = any_of_.emplace_back();
    for (const dialect::RowCondition::Term& term : all_of) {
      const auto found = set.by_name.find(term.column);
      if (found == set.by_name.end()) {
        throw Error(kItemNotFound, set.statement, fmt::format("Nu exista campul '{}'", term.column));
      }
      terms.push_back({found->second, platform::ToUpper(term.op), term.value});
    }
  }
}

bool RowTest::Meets(const Term& term, const Cell& cell) {
  const std::string& op = term.op;
  if (term.value.is_null()) {
    if (op == "=") return cell.is_null();
    return op == "<>" && !cell.is_null();
  }
  if (cell.is_null()) return false;
  if (op == "LIKE") {
    if (cell.is_text() && term.value.is_text()) return Like(cell.AsText(), term.value.text(), true);
    return Like(cell.ToValue().ToText(), term.value.ToText(), true);
  }
  int order = 0;
  if (cell.is_text()) {
    // Text against anything else compares as text does.
    order = term.value.is_text() ? CompareText(cell.AsText(), term.value.text())
                                 : CompareText(cell.AsText(), term.value.ToText());
  } else {
    double number = 0;
    if (!term.value.is_text()) {
      number = term.value.is_date() ? term.value.ToDate().days : term.value.ToDouble();
    } else if (cell.kind == Cell::Kind::kDate) {
      const std::optional<Date> date = ParseDate(term.value.text());
      if (!date) throw Error(kTypeMismatch, term.value.text(), "Criteriul compara o data cu un text");
      number = date->days;
    } else {
      const std::optional<double> parsed = ParseNumber(term.value.text());
      if (!parsed) throw Error(kTypeMismatch, term.value.text(), "Criteriul compara un numar cu un text");
      number = *parsed;
    }
    const double own = cell.AsNumber();
    order = own < number ? -1 : static_cast<int>(own > number);
  }
  if (op == "=") return order == 0;
  if (op == "<>") return order != 0;
  if (op == "<") return order < 0;
  if (op == "<=") return order <= 0;
  if (op == ">") return order > 0;
  return order >= 0;
}

bool RowTest::operator()(const Cell* row) const {
  if (any_of_.empty()) return true;
  return std::any_of(any_of_.begin(), any_of_.end(), [row](const std::vector<Term>& terms) {
    return std::all_of(terms.begin(), terms.end(),
                       [row](const Term& term) { return Meets(term, row[term.field]); });
  });
}

void Recordset::Data::Settle() {
  if (has_view && view_version != set->version) {
    const std::int64_t kept = at;
    RebuildView();
    at = kept;
  }
  if (at > count()) at = count();
}

void Recordset::Data::RebuildView() {
  view_version = set->version;
  has_view = !filter.any_of.empty() || !order.empty() || !related.empty();
  at = 0;
  view.clear();
  if (!has_view) return;
  const RowTest meets(filter, *set);
  const std::int64_t rows = set->live_count();
  for (std::int64_t i = 0; i < rows; ++i) {
    const std::int64_t row = set->live_row(i);
    const Cell* cells = set->rows.row(row);
    const bool belongs = std::all_of(related.begin(), related.end(), [&](const auto& key) {
      const Cell& cell = cells[key.first];
      if (cell.is_null() || key.second.is_null()) return false;
      if (cell.is_text() && key.second.is_text()) return CompareText(cell.AsText(), key.second.text()) == 0;
      return !cell.is_text() && !key.second.is_text() && cell.AsNumber() == key.second.ToDouble();
    });
    if (belongs && meets(cells)) view.push_back(static_cast<std::uint32_t>(row));
  }
  if (order.empty()) return;
  std::stable_sort(view.begin(), view.end(), [&](std::uint32_t a, std::uint32_t b) {
    const Cell* x = set->rows.row(a);
    const Cell* y = set->rows.row(b);
    for (const auto& [field, descending] : order) {
      const int compared = CompareCells(x[field], y[field]);
      if (compared != 0) return descending ? compared > 0 : compared < 0;
    }
    return false;
  });
}

bool Recordset::Find(std::string_view criterion, std::int64_t start) {
  if (data_ == nullptr) throw Error(kObjectClosed, "", "Setul de inregistrari este inchis");
  const dialect::RowCondition condition = dialect::ParseRowCondition(criterion);
  if (condition.any_of.size() != 1 || condition.any_of[0].size() != 1) {
    throw Error(kSyntaxError, std::string(criterion), "Cautarea se face dupa o singura coloana");
  }
  set_position(start < 0 ? position() : start);
  if (data_->at < 0) data_->at = 0;
  const RowTest meets(condition, *data_->set);
  const std::int64_t count = data_->count();
  for (; data_->at < count; ++data_->at) {
    if (meets(data_->set->rows.row(data_->row_at(data_->at)))) return true;
  }
  return false;
}

void Recordset::SetFilter(std::string_view criterion) {
  if (data_ == nullptr) throw Error(kObjectClosed, "", "Setul de inregistrari este inchis");
  dialect::RowCondition condition;
  if (!platform::Trim(criterion).empty()) {
    condition = dialect::ParseRowCondition(criterion);
    RowTest(condition, *data_->set);
  }
  if (pending()) Update();
  data_->filter = std::move(condition);
  data_->RebuildView();
}

void Recordset::SetSort(std::string_view columns) {
  if (data_ == nullptr) throw Error(kObjectClosed, "", "Setul de inregistrari este inchis");
  std::vector<std::pair<int, bool>> order;
  while (!platform::Trim(columns).empty()) {
    columns = platform::Trim(columns);
    std::size_t end = 0;
    std::string_view name;
    if (columns.front() == '[') {
      end = std::min(columns.find(']'), columns.size() - 1);
      name = columns.substr(1, end - 1);
      ++end;
    } else {
      end = std::min(columns.find_first_of(", "), columns.size());
      name = columns.substr(0, end);
    }
    std::string_view rest = columns.substr(end);
    const std::size_t comma = std::min(rest.find(','), rest.size());
    const std::string_view direction = platform::Trim(rest.substr(0, comma));
    const bool descending = platform::EqualsNoCase(direction, "DESC");
    if (!descending && !direction.empty() && !platform::EqualsNoCase(direction, "ASC")) {
      throw Error(kSyntaxError, std::string(columns), "Ordonarea este scrisa gresit");
    }
    order.emplace_back(FieldIndex(name), descending);
    columns = comma < rest.size() ? rest.substr(comma + 1) : std::string_view{};
  }
  if (pending()) Update();
  data_->order = std::move(order);
  data_->RebuildView();
}

}  // namespace store
