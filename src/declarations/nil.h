#pragma once

#include <optional>
#include <string>

#include "declarations/export.h"

namespace declarations {

/// The dialog that names a declaration to work on.
struct AddDialog {
  std::string Txt_Fel;   ///< "ACHIZITIE" (in any case) is arrivals, anything else dispatches
  std::string Txt_Anul;  ///< reference year
  std::string Txt_Luna;  ///< reference month
};

/// How the editor opens after the dialog.
struct EditorOpening {
  Identity identity;
  bool modify = false;  ///< the declaration has lines already
  std::string title;    ///< "Modificare Declaratie : I - 2026 / 3"
  /// The declaring agent that the dialog named (its switch and fields); without one, the last used.
  std::optional<Header> agent;
  std::int64_t Record_ID = 0;  ///< the line to begin at; 0: none in particular
};

/// Checks the dialog's fields, each missing one being shown; the identity where all are there. A year or
/// month that no calendar has is refused too.
std::optional<Identity> DialogIdentity(session::Session& session, const AddDialog& dialog);

/// Confirming the dialog: nothing where a field is missing. An existing declaration is said to exist and
/// opens for modification.
std::optional<EditorOpening> ConfirmDeclaration(session::Session& session, const AddDialog& dialog);

/// The header that a nil declaration takes from the company's register row: the contact's name is split at
/// its first blank, missing name and position get stand-ins.
Header NilHeader(session::Session& session);

/// Writes the nil declaration of a month without trade. Nothing is written to the database. Lines that the
/// month has all the same are a finding for the review.
ExportResult WriteNilDeclaration(session::Session& session, const Identity& identity, const Header& header,
                                 const ExportCallbacks& callbacks);

}  // namespace declarations
