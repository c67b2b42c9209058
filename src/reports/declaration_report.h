#pragma once

#include "declarations/lines/lines.h"
#include "reports/layout.h"
#include "reports/report.h"

namespace reports {

// The definitions of a declaration, by the company's option XML_Detaliat.
inline constexpr char kDetailed[] = "Declaratie_Detaliat", kAggregated[] = "Declaratie_Agregat";

/// What any report may name: Nume_Firma, Cod_Fiscal (the open company), Utilizator, Data.
Placeholders CommonPlaceholders(const session::Session& session);

/// And what those of a declaration may: its identity (TIP, Anul, Luna), Sens ("ACHIZITIE"), the contact
/// person's fields of the register, and Vedere, the stored view that its file is made of. Throws
/// store::Error.
Placeholders DeclarationPlaceholders(session::Session& session, const declarations::Identity& identity);

/// The report of a definition that has a statement. Throws ReportError, store::Error.
Report RunStatement(session::Session& session, const Definition& definition, const std::string& file,
                    const Placeholders& placeholders, Formatter formatter);

/// The foot of every page, and the day.
Footer FooterOf(const session::Session& session);

/// A definition for rows that have none in the file: every column as it is, sums nowhere.
Definition PlainDefinition();

}  // namespace reports
