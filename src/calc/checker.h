#pragma once

#include <functional>
#include <string>

#include "declarations/lines/lines.h"
#include "session/session.h"

namespace calc {

/// Path of a declaration's problems report: "…\Verificare\RO1_I_3_2026.txt".
std::string ProblemsReportPath(const session::Session& session, const declarations::Identity& identity);

/// Opens the problems screen on a report.
using ShowProblems = std::function<void(const std::string& report_path)>;

/// Checks the open company's declaration of that flow, year and month: refreshes tariff columns, writes the
/// problems report, marks the lines. True when no line has a problem. All its changes are one transaction.
/// Where the period's tariff cannot be opened the codes are checked against the one that is open, and the
/// tariff columns stay.
/// `report` takes the report's text: the file may be an earlier one where the folder refuses a new one.
bool Verifica_Declaratie(session::Session& session, const std::string& TIP, std::int16_t Anul,
                         std::int16_t Luna, bool CheckValStatistica, const ShowProblems& show_problems,
                         std::string* report = nullptr);

}  // namespace calc
