#include "app/commands.h"
#include "tariff/levels.h"

namespace app {
namespace {

using enum CommandKind;
using Headings = std::array<std::string_view, 5>;

constexpr Headings kCodes = {"COD", "DESCRIERE "};  // the reference lists have a blank at the end

constexpr Command TariffLevel(std::string_view caption, const tariff::Level& level) {
  return {.key = level.key,
          .caption = caption,
          .parent = "TARIF",
          .kind = kTariff,
          .title = level.title,
          .query = level.query,
          .headings = level.headings,
          .link = level.link};
}

constexpr Command kTable[] = {
    {.key = "INTRASTAT", .caption = "Declaratii &Intrastat"},

    {.key = "EXCEL", .caption = "E&xcel", .kind = kSubMenu},
    {.key = "MACHETA_EXCEL", .caption = "Machete Preluare", .parent = "EXCEL", .kind = kSubMenu},
    {.key = "MACHETA_NOUA", .caption = "Adauga Macheta", .parent = "MACHETA_EXCEL"},
    {.key = "MACHETA_MODIFICARE", .caption = "Modificare Macheta", .parent = "MACHETA_EXCEL"},
    {.key = "MACHETA_STERGE", .caption = "Sterge Macheta", .parent = "MACHETA_EXCEL"},
    {.key = "EXCEL_PRELUARE", .caption = "Preluare fisier excel", .parent = "EXCEL"},

    {.key = "CURS", .caption = "&Curs valutar", .kind = kSubMenu},
    {.key = "CURS_ACTUALIZARE", .caption = "Actualizare automata", .parent = "CURS"},
    {.key = "CURS_MANUAL", .caption = "Introducere manuala", .parent = "CURS"},

    {.key = "TARIF", .caption = "Tarif &Vamal", .kind = kSubMenu},
    TariffLevel("Sectiuni", tariff::kLevels[0]),
    TariffLevel("Capitole", tariff::kLevels[1]),
    TariffLevel("Grupe (4)", tariff::kLevels[2]),
    TariffLevel("HS (6)", tariff::kLevels[3]),
    TariffLevel("Cod vamal (8+4)", tariff::kLevels[4]),

    {.key = "TABELE", .caption = "&Tabele referinta", .kind = kSubMenu},
    {.key = "TABELE_TARI",
     .caption = "Tari",
     .parent = "TABELE",
     .kind = kViewer,
     .title = "TARI -",
     .query = "SELECT [Tara_COD], [Tara_DESC] FROM Tari ORDER BY [Tara_COD]",
     .headings = {"COD", "DESCRIERE TARA"}},
    {.key = "TABELE_TARI_UE",
     .caption = "Tari UE",
     .parent = "TABELE",
     .kind = kViewer,
     .title = "TARI UE -",
     .query = "SELECT [COD_TARA], [Tara_DESC], [DATA_ADERARII] FROM UE_Tari ORDER BY [DATA_ADERARII], "
              "[COD_TARA]",
     .headings = {"COD", "DESCRIERE TARA", "Data Aderarii"}},
    {.key = "TABELE_MONEZI",
     .caption = "Monezi",
     .parent = "TABELE",
     .kind = kViewer,
     .title = "MONEZI -",
     .query = "SELECT [Moneda_COD], [Moneda_DESC] FROM Monezi ORDER BY [Moneda_COD]",
     .headings = kCodes},
    {.key = "TABELE_INCOTERMS",
     .caption = "Conditii Livrare",
     .parent = "TABELE",
     .kind = kViewer,
     .title = "Incoterms -",
     .query = "SELECT [Incoterms_COD], [Incoterms_DESC] FROM Incoterms ORDER BY [Incoterms_COD]",
     .headings = kCodes},
    {.key = "TABELE_NAT_TRANZ",
     .caption = "Natura Tranzactiei",
     .parent = "TABELE",
     .kind = kViewer,
     .title = "Natura Tranzactiei -",
     .query = "SELECT TR1_COD + '.'+ TR2_COD, TR_DESC FROM Tranzactii ORDER BY TR1_COD, TR2_COD",
     .headings = kCodes},
    {.key = "TABELE_UM_SUPL",
     .caption = "UM Suplimentare",
     .parent = "TABELE",
     .kind = kViewer,
     .title = "UM suplimentare -",
     .query = "SELECT [UM_COD], [UM_DESC] FROM UM ORDER BY [UM_COD]",
     .headings = kCodes},

    {.key = "FIRMA", .caption = "&Firme Meniu", .kind = kSubMenu},
    {.key = "FIRMA_SELECTARE", .caption = "Selectare Firma", .parent = "FIRMA"},
    {.key = "FIRMA_CREARE",
     .caption = "Creare Firma",
     .parent = "FIRMA",
     .title = "Introducere date firma noua",
     .confirm = "Creaza Firma >>>"},
    {.key = "FIRMA:SEPARATOR1", .caption = "", .parent = "FIRMA", .kind = kSeparator},
    {.key = "FIRMA_DATE",
     .caption = "Date Firma",
     .parent = "FIRMA",
     .title = "Modificare Date Firma",
     .confirm = "OK - Retine datele"},
    {.key = "SETARI", .caption = "Setari", .parent = "FIRMA", .kind = kSubMenu},
    {.key = "SETARI_DATEFIRMA", .caption = "", .parent = "SETARI", .kind = kNoAction},
    {.key = "SETARI_IMPLICITE",
     .caption = "Setari Implicite",
     .parent = "SETARI",
     .confirm = "OK-Retine datele"},
    {.key = "SETARI_GENERALE",
     .caption = "Setari Generale",
     .parent = "SETARI",
     .title = "Setari diverse",
     .confirm = "OK-Retine datele"},
    {.key = "SETARI_UPDATE", .caption = "Actualizare program", .parent = "SETARI"},
    {.key = "FIRMA:SEPARATOR2", .caption = "", .parent = "FIRMA", .kind = kSeparator},
    {.key = "IESIRE", .caption = "Iesire", .parent = "FIRMA"},

    {.key = "AJUTOR", .caption = "&Ajutor", .kind = kSubMenu},
    {.key = "AJUTOR_AJUTOR", .caption = "Ajutor", .parent = "AJUTOR"},
    {.key = "AJUTOR:SEPARATOR1", .caption = "", .parent = "AJUTOR", .kind = kSeparator},
    {.key = "AJUTOR_DESPRE", .caption = "Despre program", .parent = "AJUTOR"},
};

}  // namespace

std::span<const Command> CommandTable() { return kTable; }

const Command* FindCommand(std::string_view key) {
  for (const Command& command : kTable) {
    if (command.key == key) return &command;
  }
  return nullptr;
}

}  // namespace app
