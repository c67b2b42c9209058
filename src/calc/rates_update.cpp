#include "calc/rates_update.h"

#include <chrono>

#include "calc/rates.h"
#include "calc/rounding/rounding.h"
#include "platform/encoding.h"
#include "platform/spreadsheet/text_value.h"

namespace calc {
namespace {

constexpr char kWhere[] = "CursSchimb_Actualizare";
constexpr char kNewestRate[] = "SELECT MAX(Valid_La_Data) FROM Rate_Schimb";
constexpr std::size_t kNamedRows = 20;  ///< a file that is wrong throughout need not fill the log

double DayOf(const platform::LocalTime& time) {
  return platform::ToSerial({time.year, time.month, time.day, 0, 0, 0});
}

/// Rates are published on working days: on a Saturday or Sunday the last ones are Friday's.
double LastWorkingDay(double today) {
  const auto day =
      std::chrono::sys_days(std::chrono::year{1899} / 12 / 30) + std::chrono::days(static_cast<int>(today));
  const unsigned from_monday = std::chrono::weekday(day).iso_encoding();
  return from_monday > 5 ? today - (from_monday - 5) : today;
}

/// The day behind the marker's first ":", as "yyyy-mm-dd"; the earliest date where there is none.
double MarkerDay(std::string_view content) {
  const std::string_view line = content.substr(0, content.find_first_of("\r\n"));
  const std::size_t colon = line.find(':');
  if (colon == std::string_view::npos) return 0;
  const std::string_view text = platform::Trim(line.substr(colon + 1));
  if (text.size() < 10) return 0;
  const auto number = [&](std::size_t from, std::size_t length) {
    return static_cast<int>(store::ParseNumber(text.substr(from, length)).value_or(0));
  };
  const int year = number(0, 4), month = number(5, 2), day = number(8, 2);
  return platform::IsValidDate(year, month, day) ? platform::ToSerial({year, month, day, 0, 0, 0}) : 0;
}

class RatesUpdate {
 public:
  RatesUpdate(session::Session& session, platform::Downloader download)
      : session_(session),
        host_(session.host),
        download_(std::move(download)),
        today_(DayOf(host_.clock.Now())) {}

  RatesOutcome Run() {
    if (!session_.company.is_open()) return RatesOutcome::kFailed;
    const Marker marker = ReadMarker();
    const bool taken_here = TakeFetched();
    if (marker != Marker::kDue) {
      if (taken_here) ShowNewest();
      if (taken_here || marker == Marker::kCurrent) return RatesOutcome::kUpToDate;
      return marker == Marker::kToday ? RatesOutcome::kTriedToday : RatesOutcome::kNoMarker;
    }
    if (!Fetch()) return RatesOutcome::kNotFetched;
    if (!TakeNewer()) return RatesOutcome::kFailed;
    const std::optional<store::Date> newest = ShowNewest();
    if (!newest) return RatesOutcome::kFailed;
    // A rate dated ahead must not count as the rates of the days until then.
    const store::Date known{std::min(newest->days, today_)};
    PassOverFile([&] { host_.files.Replace(marker_, "Actualizat:" + store::DateIso(known) + "\r\n"); });
    return RatesOutcome::kUpToDate;
  }

  void RunLocally() {
    if (session_.company.is_open() && TakeFetched()) ShowNewest();
  }

 private:
  enum class Marker { kToday, kMissing, kCurrent, kDue };

  Marker ReadMarker() const {
    const auto changed = host_.files.LastModified(marker_);
    if (!changed) return Marker::kMissing;
    if (DayOf(platform::ToLocal(*changed)) == today_) return Marker::kToday;
    return MarkerDay(host_.files.Read(marker_)) >= LastWorkingDay(today_) ? Marker::kCurrent : Marker::kDue;
  }

  void PassOverFile(const std::function<void()>& step) {
    try {
      step();
    } catch (const platform::FileError& error) {
      host_.errors.Write(kWhere, error.what());
    }
  }

  /// Only what has just been fetched counts: the file of before has been taken already and becomes the
  /// backup.
  bool Fetch() {
    PassOverFile([&] {
      if (!host_.files.Exists(file_)) return;
      host_.files.Copy(file_, folder_ + "curs_old.txt");
      host_.files.Remove(file_);
    });
    const platform::DownloadRequest request{
        platform::AddressBelow(session_.settings.www, "curs_bnr/curs.txt"), file_};
    return download_(request.Text(), IsRatesFile) && host_.files.Exists(file_);
  }

  /// True where the file that is there brought something.
  bool TakeFetched() { return host_.files.Exists(file_) && TakeNewer() && added_ > 0; }

  /// True where the file holds rows and those newer than the table, if any, were not all refused.
  bool TakeNewer() {
    added_ = 0;
    bool taken = false;
    const bool went_through = store::PassOver(host_.errors, kWhere, [&] {
      store::Connection file(session::StoreEnvironment(session_));
      file.Open(store::TextFolderString(folder_));
      const store::Value newest = session_.company.Scalar(kNewestRate).value_or(store::Value());
      const store::Recordset rows =
          file.Query("Select * From curs.txt WHERE Data_Curs > #" + store::DateIso(newest.ToDate()) + "#");
      AddAll(rows);
      NameUndated(file.Query("Select * From curs.txt WHERE Data_Curs IS NULL"));
      taken = rows.record_count() > 0 ? added_ > 0
                                      : file.Any("Select * From curs.txt WHERE Data_Curs > #1899-12-30#");
    });
    NameRefused();
    return went_through && taken;
  }

  void AddAll(store::Recordset rows) {
    store::Transaction transaction(session_.company);
    store::Recordset table =
        session_.company.QueryForUpdate("SELECT * FROM Rate_Schimb WHERE Cod_Moneda = ''");
    int added = 0, ordinal = 0;
    for (; !rows.eof(); rows.MoveNext()) {
      ++ordinal;
      host_.progress.Update(
          "Actualizez cursul valutar",
          static_cast<int>(Round(ordinal * 100.0 / static_cast<double>(rows.record_count()), 0)));
      if (Add(table, rows)) ++added;
    }
    transaction.Commit();
    added_ = added;
  }

  bool Add(store::Recordset& table, const store::Recordset& row) {
    const std::string currency = row["Currency_Code"].ToText();
    const store::Date day = row["Data_Curs"].ToDate();
    const std::optional<double> rate = RateOf(row["Curs"].ToText());
    const double multiplier = row["Raport"].ToDouble();
    if (store::IsEmpty(currency) || !rate || *rate <= 0 || multiplier < 1)
      return Refuse(row, "valoare gresita");
    if (day.days > LatestRateDay(session_).days) return Refuse(row, "data in viitor");
    try {
      table.AddNew();
      table.Set("Cod_Moneda", currency);
      table.Set("Valid_La_Data", day);
      table.Set("Curs_Schimb", Round(*rate, 4));
      table.Set("Multiplicator", row["Raport"]);
      table.Update();
      return true;
    } catch (const store::Error& error) {
      table.CancelUpdate();
      return Refuse(row, error.what());
    }
  }

  /// The file writes a point; a text is read as the user's own system writes numbers.
  std::optional<double> RateOf(std::string text) const {
    if (session_.decimal_comma) text = platform::ReplaceAll(text, ".", ",");
    return platform::spreadsheet::ParseNumber(platform::Trim(text), session_.decimal_comma ? ',' : '.');
  }

  bool Refuse(const store::Recordset& row, std::string_view reason) {
    std::string values;
    for (int i = 0; i < row.field_count(); ++i) values += (i > 0 ? ";" : "") + row.Get(i).ToText();
    refused_.push_back(fmt::format("rand ignorat in curs.txt: {} ({})", values, reason));
    return false;
  }

  void NameUndated(store::Recordset rows) {
    for (; !rows.eof(); rows.MoveNext()) Refuse(rows, "fara data");
  }

  void NameRefused() {
    const std::size_t named = std::min(refused_.size(), kNamedRows);
    for (std::size_t i = 0; i < named; ++i) {
      host_.errors.Write(kWhere, refused_[i]);
      host_.progress.Status(refused_[i]);
    }
    if (refused_.size() > named) {
      host_.errors.Write(kWhere,
                         fmt::format("alte randuri ignorate in curs.txt: {}", refused_.size() - named));
    }
    refused_.clear();
  }

  std::optional<store::Date> ShowNewest() {
    const store::Value newest = session_.company.Scalar(kNewestRate).value_or(store::Value());
    if (newest.is_null()) return std::nullopt;
    host_.prompter.Info("Curs Valutar actualizat la data: " + store::DateText(newest.ToDate()));
    return newest.ToDate();
  }

  session::Session& session_;
  platform::Host& host_;
  const platform::Downloader download_;
  const double today_;
  const std::string folder_ = session_.UnderSystem("CursBNR\\");
  const std::string file_ = folder_ + "curs.txt", marker_ = folder_ + "data.txt";
  int added_ = 0;
  std::vector<std::string> refused_;
};

void PassOver(session::Session& session, const std::function<void()>& run) {
  try {
    run();
  } catch (const platform::FileError& error) {
    session.host.errors.Write(kWhere, error.what());
  } catch (const store::Error& error) {
    session.host.errors.Write(kWhere, error.what());
  }
}

}  // namespace

RatesOutcome UpdateRates(session::Session& session, const platform::Downloader& download) {
  RatesOutcome outcome = RatesOutcome::kFailed;
  PassOver(session, [&] { outcome = RatesUpdate(session, download).Run(); });
  return outcome;
}

bool CursSchimb_Actualizare(session::Session& session, const platform::Downloader& download) {
  return UpdateRates(session, download) == RatesOutcome::kUpToDate;
}

void TakeFetchedRates(session::Session& session) {
  PassOver(session, [&] { RatesUpdate(session, {}).RunLocally(); });
}

bool IsRatesFile(std::string_view content) {
  for (const std::string& line : platform::SplitLines(content)) {
    if (platform::Trim(line).empty()) continue;
    const auto digits = std::count_if(line.begin(), line.end(), [](char c) { return c >= '0' && c <= '9'; });
    const bool delimited = std::any_of(std::begin(";,|\t"), std::end(";,|\t") - 1, [&](char delimiter) {
      return std::count(line.begin(), line.end(), delimiter) >= 3;
    });
    return delimited && digits >= 6 && line.find_first_of("<{") == std::string::npos;
  }
  return false;
}

}  // namespace calc
