#include "import/run.h"

#include "calc/rounding/rounding.h"
#include "import/line_writer.h"
#include "import/worksheet.h"
#include "platform/encoding.h"

namespace importer {
namespace {

constexpr std::size_t kStoredPathCharacters = 255;
constexpr char kUnreadable[] = "Fisierul Excel NU poate fi citit, verificati macheta de preluare";

bool InputsComplete(platform::Prompter& prompter, const Inputs& inputs) {
  bool complete = true;
  const auto require = [&](bool given, const char* label) {
    if (given) return;
    platform::ShowRequired(prompter, label);
    complete = false;
  };
  require(inputs.Anul != 0, "Anul");
  require(inputs.Luna != 0, "Luna");
  require(!store::IsEmpty(inputs.path), "Nume fisier");
  require(!store::IsEmpty(inputs.sheet), "Sheet Name");
  require(!store::IsEmpty(inputs.Cod_Fiscal), "Cod inreg fiscala");
  require(!store::IsEmpty(inputs.Nume_Structura), "Nume Macheta");
  require(!store::IsEmpty(inputs.tip_operatiune), "Tip Operatiune");
  return complete;
}

/// True when the file was not taken over yet for this company and month, or the user wants it again. A path
/// with an apostrophe breaks the statement on purpose as any quoted value does; its error stops the run.
bool MayTakeOver(session::Session& session, const Inputs& inputs) {
  const std::string path(platform::Utf8Prefix(inputs.path, kStoredPathCharacters));
  const bool taken = session.company.Any("SELECT TOP 1 * FROM Intrastat WHERE SourceFile_FullPath='" + path +
                                         "' AND Cod_Fiscal='" + inputs.Cod_Fiscal +
                                         "' AND Anul=" + std::to_string(inputs.Anul) +
                                         " AND Luna=" + std::to_string(inputs.Luna));
  return !taken ||
         session.host.prompter.Ask("Fisierul : " + inputs.path + "\r\nA MAI FOST PRELUAT, CONTINUATI ?",
                                   "RASPUNDETI", platform::Icon::kQuestion);
}

/// What is wrong with a value, without the column's name that the store puts before it.
std::string WithoutColumn(const std::string& description, const std::string& column) {
  const std::string prefix = "Coloana " + column + ": ";
  return !column.empty() && description.starts_with(prefix) ? description.substr(prefix.size()) : description;
}

/// Whether a failed save concerns its row alone; anything else (a full disk, a lock) would fail every row.
bool ConcernsRow(const store::Error& error) {
  return error.number() == store::kTooLong || error.number() == store::kConversion ||
         error.number() == store::kTypeMismatch;
}

void CopyRows(session::Session& session, const Inputs& inputs, Worksheet& worksheet, Result& result) {
  store::Recordset& sheet = worksheet.rows;
  platform::Progress& progress = session.host.progress;
  const tariff::LookupRun lookups(session);
  store::Transaction transaction(session.company);
  store::Recordset lines = session.company.QueryForUpdate("SELECT TOP 1 * FROM Intrastat");
  LineWriter writer(session, inputs, sheet, lines);
  for (std::int64_t line = 1; !sheet.eof(); sheet.MoveNext(), ++line) {
    if (progress.Cancelled()) {
      result.outcome = Outcome::kCancelled;
      result.saved = 0;
      return;
    }
    bool filled = false;
    try {
      writer.Fill();
      filled = true;
      lines.Update();
      ++result.saved;
    } catch (const store::Error& error) {
      if (filled && !ConcernsRow(error)) throw;
      lines.CancelUpdate();
      result.rejected.push_back({worksheet.heading_row + line, writer.column(),
                                 WithoutColumn(error.description(), writer.column())});
    }
    progress.Status("SE RETIN DATELE - Inregistrarea : " + std::to_string(line));
    progress.Update("Copiere date ...",
                    static_cast<int>(calc::RoundStored(
                        static_cast<double>(line) / static_cast<double>(result.total) * 100, 0)));
  }
  transaction.Commit();
  result.outcome = Outcome::kDone;
}

Result RunChecked(session::Session& session, const Inputs& inputs) {
  platform::Host& host = session.host;
  Result result;
  const auto show = [&](std::string status) {
    result.status = std::move(status);
    host.progress.Status(result.status);
  };
  int month = inputs.Luna;
  int year = inputs.Anul;
  tariff::ConexiuneTarif(session, month, year);
  if (!MayTakeOver(session, inputs)) return result;

  show("Se citeste fisiereul excel : " + inputs.path);
  Worksheet worksheet = OpenWorksheet(session, inputs.path, inputs.sheet, inputs.Nume_Structura);
  if (!worksheet.problem.empty()) {
    host.prompter.Error(kUnreadable);
    show(std::string("EROARE - ") + kUnreadable);
    host.prompter.Error(worksheet.problem);
    return result;
  }
  result.total = worksheet.rows.record_count();
  show("TOTAL INREGISTRARI CITITE: " + std::to_string(result.total));

  CopyRows(session, inputs, worksheet, result);
  if (result.outcome == Outcome::kCancelled) {
    result.status.clear();
    host.prompter.Message("Preluarea a fost oprita, nu s-a retinut nicio inregistrare", "MESAJ",
                          platform::Icon::kExclamation);
    return result;
  }
  show("OPERATIE TERMINATA . . .");
  host.prompter.Info("Au fost preluate : " + std::to_string(result.saved) +
                         " inregistrari din totalul de : " + std::to_string(result.total),
                     "Preluare Terminata");
  return result;
}

}  // namespace

Result Run(session::Session& session, const Inputs& inputs) {
  if (!InputsComplete(session.host.prompter, inputs)) return {};
  if (!session.host.files.Exists(inputs.path)) {
    session.host.prompter.Error("Nu exista fisierul : " + inputs.path);
    return {};
  }
  try {
    return RunChecked(session, inputs);
  } catch (const store::Error& error) {
    session::ShowError(session, error);
    return {};
  }
}

}  // namespace importer
