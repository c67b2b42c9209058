#include "floor.h"

#include <fmt/format.h>
#include <sqlite3.h>

#include <cmath>
#include <cstdio>

#include "measure.h"
#include "platform/spreadsheet/sheet.h"

namespace bench {
namespace {

void Check(int code, sqlite3* db) {
  if (code != SQLITE_OK && code != SQLITE_DONE && code != SQLITE_ROW) {
    throw std::runtime_error(sqlite3_errmsg(db));
  }
}

class CountingSink : public platform::spreadsheet::CellSink {
 public:
  bool OnCell(const platform::spreadsheet::CellEvent& cell) override {
    ++count;
    bytes += cell.text.size();
    return true;
  }
  std::size_t count = 0, bytes = 0;
};

double InsertRaw(const RawLines& lines, const std::string& file) {
  std::remove(file.c_str());
  sqlite3* db = nullptr;
  Check(sqlite3_open(file.c_str(), &db), db);
  Check(sqlite3_exec(db, "PRAGMA journal_mode=DELETE; PRAGMA synchronous=FULL", nullptr, nullptr, nullptr),
        db);
  std::string create = "CREATE TABLE Intrastat (", marks;
  for (std::size_t i = 0; i < lines.columns.size(); ++i) {
    create += (i ? ", \"" : "\"") + lines.columns[i] + "\" " + lines.types[i];
    if (lines.columns[i] == "Record_ID") create += " PRIMARY KEY";
    marks += i ? ",?" : "?";
  }
  Check(sqlite3_exec(db, (create + ")").c_str(), nullptr, nullptr, nullptr), db);

  const double start = Seconds();
  Check(sqlite3_exec(db, "BEGIN", nullptr, nullptr, nullptr), db);
  sqlite3_stmt* insert = nullptr;
  Check(
      sqlite3_prepare_v2(db, ("INSERT INTO Intrastat VALUES (" + marks + ")").c_str(), -1, &insert, nullptr),
      db);
  for (std::size_t row = 0; row < lines.rows(); ++row) {
    for (std::size_t i = 0; i < lines.columns.size(); ++i) {
      const RawCell& cell = lines.at(row, i);
      const int at = static_cast<int>(i) + 1;
      switch (cell.kind) {
        case RawCell::Kind::kNull:
          sqlite3_bind_null(insert, at);
          break;
        case RawCell::Kind::kInteger:
          sqlite3_bind_int64(insert, at, cell.integer);
          break;
        case RawCell::Kind::kReal:
          sqlite3_bind_double(insert, at, cell.real);
          break;
        case RawCell::Kind::kText:
          sqlite3_bind_text(insert, at, cell.text.data(), static_cast<int>(cell.text.size()), SQLITE_STATIC);
          break;
      }
    }
    Check(sqlite3_step(insert), db);
    Check(sqlite3_reset(insert), db);
  }
  sqlite3_finalize(insert);
  Check(sqlite3_exec(db, "COMMIT", nullptr, nullptr, nullptr), db);
  const double seconds = Seconds() - start;
  sqlite3_close(db);
  return seconds;
}

struct Item {
  std::size_t first_row = 0;
  double invoice = 0, statistical = 0, net = 0, quantity = 0;
};

double Aggregate(const RawLines& lines, const std::string& file, std::size_t& count) {
  const double start = Seconds();
  const char* const keys[] = {"Cod_NC",    "Tara_Orig",  "Tara_Exp", "Nat_Tranz",
                              "Incoterms", "Mod_Transp", "Cod_UMS"};
  std::vector<std::size_t> key_columns;
  for (const char* key : keys) key_columns.push_back(lines.Column(key));
  const std::size_t invoice = lines.Column("Val_Fiscala"), statistical = lines.Column("Val_Stat"),
                    net = lines.Column("Net"), quantity = lines.Column("Val_UMS");
  std::unordered_map<std::string, Item> items;
  std::string key;
  for (std::size_t row = 0; row < lines.rows(); ++row) {
    key.clear();
    for (const std::size_t column : key_columns) key.append(lines.at(row, column).text).push_back('\0');
    auto [at, added] = items.try_emplace(key);
    Item& item = at->second;
    if (added) item.first_row = row;
    const auto number = [&](std::size_t column) {
      const RawCell& cell = lines.at(row, column);
      return cell.kind == RawCell::Kind::kInteger ? static_cast<double>(cell.integer) : cell.real;
    };
    item.invoice += number(invoice);
    item.statistical += number(statistical);
    item.net += number(net);
    item.quantity += number(quantity);
  }
  std::vector<const Item*> order;
  for (const auto& entry : items) order.push_back(&entry.second);
  std::sort(order.begin(), order.end(),
            [](const Item* a, const Item* b) { return a->first_row < b->first_row; });
  fmt::memory_buffer out;
  int number = 0;
  const auto element = [&](const char* name, std::string_view value) {
    fmt::format_to(std::back_inserter(out), "                <{0}>{1}</{0}>\r\n", name, value);
  };
  for (const Item* item : order) {
    const auto text = [&](std::size_t key_at) { return lines.at(item->first_row, key_columns[key_at]).text; };
    fmt::format_to(std::back_inserter(out), "        <InsArrivalItem OrderNr=\"{}\">\r\n", ++number);
    element("Cn8Code", text(0));
    element("InvoiceValue", fmt::format("{:.0f}", item->invoice));
    element("StatisticalValue", fmt::format("{:.0f}", item->statistical));
    element("NetMass", fmt::format("{:.0f}", item->net));
    element("NatureOfTransactionACode", text(3).substr(0, 1));
    element("NatureOfTransactionBCode", text(3));
    element("DeliveryTermsCode", text(4));
    element("ModeOfTransportCode", text(5));
    element("CountryOfOrigin", text(1));
    if (!text(6).empty()) {
      element("SupplUnitCode", text(6));
      element("QtyInSupplUnits", fmt::format("{:.0f}", item->quantity));
    }
    element("CountryOfConsignment", text(2));
    fmt::format_to(std::back_inserter(out), "        </InsArrivalItem>\r\n");
  }
  std::FILE* stream = std::fopen(file.c_str(), "wb");
  if (stream == nullptr) throw std::runtime_error("cannot write " + file);
  std::fwrite(out.data(), 1, out.size(), stream);
  std::fclose(stream);
  count = items.size();
  return Seconds() - start;
}

}  // namespace

std::size_t RawLines::Column(const std::string& name) const {
  const auto at = std::find(columns.begin(), columns.end(), name);
  if (at == columns.end()) throw std::runtime_error("no column " + name);
  return static_cast<std::size_t>(at - columns.begin());
}

RawLines ReadRaw(const std::string& database_file, const std::string& table) {
  sqlite3* db = nullptr;
  Check(sqlite3_open_v2(database_file.c_str(), &db, SQLITE_OPEN_READONLY, nullptr), db);
  sqlite3_stmt* select = nullptr;
  Check(sqlite3_prepare_v2(db, ("SELECT * FROM \"" + table + "\"").c_str(), -1, &select, nullptr), db);
  RawLines lines;
  const int columns = sqlite3_column_count(select);
  for (int i = 0; i < columns; ++i) {
    const char* type = sqlite3_column_decltype(select, i);
    lines.columns.emplace_back(sqlite3_column_name(select, i));
    lines.types.emplace_back(type == nullptr ? "" : type);
  }
  while (sqlite3_step(select) == SQLITE_ROW) {
    for (int i = 0; i < columns; ++i) {
      RawCell cell;
      switch (sqlite3_column_type(select, i)) {
        case SQLITE_INTEGER:
          cell.kind = RawCell::Kind::kInteger;
          cell.integer = sqlite3_column_int64(select, i);
          break;
        case SQLITE_FLOAT:
          cell.kind = RawCell::Kind::kReal;
          cell.real = sqlite3_column_double(select, i);
          break;
        case SQLITE_TEXT:
          cell.kind = RawCell::Kind::kText;
          cell.text.assign(reinterpret_cast<const char*>(sqlite3_column_text(select, i)),
                           static_cast<std::size_t>(sqlite3_column_bytes(select, i)));
          break;
        default:
          break;
      }
      lines.cells.push_back(std::move(cell));
    }
  }
  sqlite3_finalize(select);
  sqlite3_close(db);
  return lines;
}

Floor MeasureFloor(const std::string& worksheet, const std::string& sheet, const RawLines& lines,
                   const std::string& folder) {
  Floor floor;
  const double start = Seconds();
  CountingSink sink;
  platform::spreadsheet::OpenWorkbook(worksheet)->Read(sheet, sink);
  floor.read_cells = Seconds() - start;
  floor.cells = sink.count;
  floor.insert = InsertRaw(lines, folder + "/floor.db");
  floor.aggregate = Aggregate(lines, folder + "/floor.xml", floor.items);
  return floor;
}

}  // namespace bench
