#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "session/session.h"

namespace importer {

/// Captions of the column-row grid, in its order.
inline constexpr const char* kRowHeadings[] = {"Informatie necesara",
                                               "Exista in fisierul excel",
                                               "Numar coloanei din fisierul Excel",
                                               "Valoare Implicita (se va folosi daca nu exista in Excel)",
                                               "Caractere maxime admise",
                                               "Formatul datelor"};

/// Description as the grid shows it: `Tara_Orig` is shown as "Tara Origine" whatever is stored.
std::string ShownDescription(std::string_view Dest_ColumnName, std::string_view Dest_ColumnDescription);

/// Rules of editing one column row. Each shows its message and answers whether the edit may stand.
bool AcceptColumnNumber(platform::Prompter& prompter, bool Exista_Coloana);
bool AcceptRow(platform::Prompter& prompter, bool Exista_Coloana, std::optional<int> Numar_Coloana);
bool ConfirmRowDelete(platform::Prompter& prompter);
bool AcceptFromList(platform::Prompter& prompter, std::string_view value,
                    const std::vector<std::string>& list);

/// Items of a drop-down list, from "ComboBox\" control "." suffix ".txt"; a missing file is an empty list.
std::vector<std::string> ReadComboList(const session::Session& session, std::string_view control,
                                       std::string_view suffix);

/// A change of one stored column row; what is not given stays. Giving a number ticks `Exista_Coloana`, 0
/// unticks it. An empty default or size clears it.
struct RowChange {
  std::optional<int> Numar_Coloana;
  std::optional<std::string> Valoare_Implicita;
  std::optional<std::string> Marime_Maxima;
};
/// Changes the stored row of one destination column; false where the template has none (shown).
bool ChangeRow(session::Session& session, std::string_view Nume_Structura, std::string_view Dest_ColumnName,
               const RowChange& change);

}  // namespace importer
