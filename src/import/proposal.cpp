#include "import/proposal.h"

#include <algorithm>
#include <array>

#include "platform/encoding.h"

namespace importer {
namespace {

struct Synonyms {
  std::string_view Dest_ColumnName;
  std::vector<std::string_view> headings;  ///< normalised
};

const std::vector<Synonyms>& AllSynonyms() {
  static const std::vector<Synonyms> kAll = {
      {"DataReceptiei",
       {"data receptiei", "data receptie", "data nir", "data livrarii", "data livrare", "data intrarii",
        "data expedierii", "data", "receipt date", "arrival date", "delivery date", "dispatch date",
        "shipping date", "date", "lieferdatum", "wareneingangsdatum", "eingangsdatum", "versanddatum",
        "datum"}},
      {"Descriere",
       {"descriere",
        "descriere marfa",
        "denumire",
        "denumire produs",
        "denumire marfa",
        "denumire articol",
        "produs",
        "articol",
        "marfa",
        "description",
        "goods description",
        "product description",
        "product",
        "product name",
        "item",
        "item description",
        "goods",
        "bezeichnung",
        "warenbezeichnung",
        "artikelbezeichnung",
        "beschreibung",
        "artikel",
        "ware"}},
      {"Cod_NC", {"cod nc",        "nc",           "nc8",
                  "cod nc8",       "cod vamal",    "cod tarifar",
                  "cod taric",     "taric",        "tarif vamal",
                  "pozitie vamal", "cod marfa",    "incadrare tarifara",
                  "cn code",       "cn",           "cn8",
                  "hs code",       "hs",           "commodity code",
                  "tariff code",   "customs code", "customs tariff number",
                  "warennummer",   "zolltarifnr",  "zolltarifnummer",
                  "kn code",       "kn nummer",    "warentarifnummer"}},
      {"Descriere_NC", {"descriere nc", "descriere cod nc", "descriere cod vamal", "denumire nc"}},
      {"Cantitate", {"cantitate", "cant", "bucati", "quantity", "qty", "menge", "anzahl", "stuckzahl"}},
      {"UM",
       {"um", "unitate", "unitate masura", "unit", "unit of measure", "uom", "mengeneinheit", "einheit",
        "me"}},
      {"Valoare_Valuta",
       {"valoare valuta",
        "valoare in valuta",
        "suma valuta",
        "valoare factura",
        "valoare facturata",
        "valoare",
        "valoare eur",
        "valoare usd",
        "invoice value",
        "invoice amount",
        "invoiced amount",
        "amount",
        "net amount",
        "value",
        "value in currency",
        "rechnungsbetrag",
        "rechnungswert",
        "warenwert",
        "betrag",
        "nettobetrag"}},
      {"Moneda",
       {"moneda", "valuta", "cod moneda", "cod valuta", "currency", "currency code", "wahrung", "waehrung",
        "wahrungscode", "waehrungscode"}},
      {"Curs_Schimb",
       {"curs", "curs schimb", "curs valutar", "curs bnr", "exchange rate", "rate", "wechselkurs", "kurs",
        "umrechnungskurs"}},
      {"Val_Fiscala",
       {"valoare fiscala", "valoare lei", "valoare in lei", "valoare ron", "valoare in ron",
        "valoare factura lei", "valoare factura ron", "suma lei", "suma ron", "lei", "ron", "fiscal value",
        "value ron", "amount ron", "wert in ron", "betrag ron", "betrag in ron", "rechnungsbetrag ron"}},
      {"Val_Stat",
       {"valoare statistica", "valoare stat", "statistical value", "statistischer wert", "statistikwert"}},
      {"Tara_Orig",
       {"tara origine", "tara de origine", "origine", "cod tara origine", "country of origin",
        "origin country", "origin", "ursprungsland", "ursprung"}},
      {"Tara_Exp",
       {"tara expeditie", "tara de expeditie", "tara expedierii", "tara expeditor", "tara furnizor",
        "expeditie", "expediere", "tara expediere", "tara de expediere", "tara provenienta",
        "country of consignment", "country of dispatch", "dispatch country", "consignment country",
        "supplier country", "versendungsland", "versandland", "lieferland"}},
      {"Tara_Dest",
       {"tara destinatie", "tara de destinatie", "destinatie", "tara destinatar", "tara client",
        "country of destination", "destination country", "destination", "customer country", "bestimmungsland",
        "empfangsland"}},
      {"Net",
       {"net", "net kg", "greutate neta", "greutate neta kg", "masa neta", "masa neta kg", "kg", "kg net",
        "greutate", "net weight", "net weight kg", "net mass", "weight", "nettogewicht", "netto",
        "nettomasse", "eigenmasse", "gewicht", "reingewicht"}},
      {"Cod_UMS",
       {"um supl", "um suplimentara", "unitate suplimentara", "unitate masura suplimentara", "cod ums", "ums",
        "supplementary unit", "supplementary unit code", "besondere masseinheit", "besondere einheit"}},
      {"Val_UMS",
       {"cantitate supl", "cantitate suplimentara", "cantitate um supl", "cantitate ums",
        "cantitate unitate suplimentara", "supplementary quantity", "quantity in supplementary unit",
        "besondere menge", "menge in besonderer masseinheit"}},
      {"Nat_Tranz",
       {"natura tranzactiei", "nat tranz", "tranzactie", "cod tranzactie", "nature of transaction",
        "transaction nature", "transaction", "transaction code", "art des geschafts", "geschaftsart",
        "geschaeftsart"}},
      {"Incoterms",
       {"incoterms", "incoterm", "conditie livrare", "conditii de livrare", "cond livrare", "termeni livrare",
        "delivery terms", "terms of delivery", "lieferbedingung", "lieferbedingungen"}},
      {"Mod_Transp",
       {"mod transport", "mod de transport", "mijloc transport", "mode of transport", "transport mode",
        "verkehrszweig", "transportart", "versandart"}},
      {"Factura_Numar",
       {"numar factura", "nr factura", "factura", "serie numar factura", "numar document", "nr document",
        "document", "invoice number", "invoice no", "invoice nr", "invoice", "document number", "document no",
        "rechnungsnummer", "rechnungsnr", "rechnung", "rechnung nr", "belegnummer"}},
      {"Factura_Data",
       {"data factura", "data facturii", "data document", "invoice date", "document date", "rechnungsdatum",
        "belegdatum"}},
      {"VAT_ID",
       {"cod tva",
        "cod tva furnizor",
        "cod tva client",
        "cod tva partener",
        "cod inregistrare tva",
        "cod fiscal",
        "cod fiscal furnizor",
        "cod fiscal client",
        "cui",
        "cui furnizor",
        "cui client",
        "cif",
        "vat id",
        "vat number",
        "vat no",
        "vat code",
        "vat registration number",
        "tva id",
        "ust id",
        "ust idnr",
        "ustid",
        "ustidnr",
        "ust id nr",
        "umsatzsteuer id"}},
      {"Document_Numar_Referinta",
       {"document numar referinta", "numar referinta", "nr referinta", "document referinta",
        "reference number", "reference", "referenz", "referenznummer"}},
      {"Document_Data_Referinta",
       {"document data referinta", "data referinta", "data document referinta", "reference date",
        "referenzdatum"}},
  };
  return kAll;
}

/// Letters with marks, as Romanian and German headings have them, and what they are compared as.
constexpr std::pair<std::string_view, std::string_view> kMarked[] = {
    {"ă", "a"}, {"â", "a"}, {"î", "i"}, {"ș", "s"},  {"ş", "s"}, {"ț", "t"}, {"ţ", "t"},
    {"ä", "a"}, {"ö", "o"}, {"ü", "u"}, {"ß", "ss"}, {"é", "e"}, {"á", "a"}};

/// A price per piece, a running number or a gross mass is none of what a declaration asks for.
constexpr std::array<std::string_view, 16> kNever = {
    "pret", "price", "preis", "einzelpreis", "stuckpreis",    "unitar",   "unitara", "crt",
    "brut", "bruta", "gross", "brutto",      "bruttogewicht", "discount", "rabat",   "rabatt"};
/// Words that turn a thing into its number.
constexpr std::array<std::string_view, 8> kNumbering = {"cod",    "code",   "nr", "numar",
                                                        "number", "nummer", "id", "sku"};
/// Words that say nothing.
constexpr std::array<std::string_view, 14> kFiller = {"de",  "din", "in",  "la",  "al",  "a",   "cu",
                                                      "the", "of",  "der", "die", "des", "das", "no"};

template <typename List>
bool Among(const List& list, std::string_view word) {
  return std::find(list.begin(), list.end(), word) != list.end();
}

std::vector<std::string> WordsOf(std::string_view normalised) {
  std::vector<std::string> words;
  std::size_t at = 0;
  while (at < normalised.size()) {
    const std::size_t end = std::min(normalised.find(' ', at), normalised.size());
    if (end > at) words.emplace_back(normalised.substr(at, end - at));
    at = end + 1;
  }
  return words;
}

enum class Likeness { kNone, kAlike, kSame };

/// Words cut short and Romanian endings: "orig" and "origine", "factura" and "facturii".
Likeness Compare(std::string_view a, std::string_view b) {
  if (a == b) return Likeness::kSame;
  const std::size_t shorter = std::min(a.size(), b.size());
  std::size_t common = 0;
  while (common < shorter && a[common] == b[common]) ++common;
  if (common == shorter && shorter >= 3) return Likeness::kAlike;
  return common >= 4 && common + 2 >= shorter && std::max(a.size(), b.size()) <= common + 3 ? Likeness::kAlike
                                                                                            : Likeness::kNone;
}

constexpr int kLeastScore = 95;

/// How well a heading says a phrase; 0: it does not. A word more or less costs more than one cut short.
int Score(const std::vector<std::string>& heading, const std::vector<std::string>& phrase) {
  std::vector<bool> used(heading.size());
  int score = 100;
  for (const std::string& word : phrase) {
    if (Among(kFiller, word)) continue;
    int best = -1;
    Likeness best_likeness = Likeness::kNone;
    for (std::size_t i = 0; i < heading.size(); ++i) {
      const Likeness likeness = used[i] ? Likeness::kNone : Compare(heading[i], word);
      if (likeness > best_likeness) {
        best = static_cast<int>(i);
        best_likeness = likeness;
      }
    }
    if (best < 0) return 0;
    used[static_cast<std::size_t>(best)] = true;
    score += best_likeness == Likeness::kSame ? 12 : 9;
  }
  for (std::size_t i = 0; i < heading.size(); ++i) {
    // "Cod produs" is no description of the goods, though "Produs vandut" is.
    if (!used[i] && !Among(kFiller, heading[i])) score -= Among(kNumbering, heading[i]) ? 30 : 15;
  }
  return score >= kLeastScore ? score : 0;
}

/// What takes another one's column where it has none of its own: the statistical value starts out equal to
/// the value in lei, and a delivery without a date is converted at the rate of its invoice.
constexpr std::pair<std::string_view, std::string_view> kShared[] = {{"Val_Stat", "Val_Fiscala"},
                                                                     {"DataReceptiei", "Factura_Data"}};

}  // namespace

std::string NormalisedHeading(std::string_view heading) {
  std::string text = platform::ToLower(heading);
  for (const auto& [marked, plain] : kMarked) text = platform::ReplaceAll(text, marked, plain);
  for (char& c : text) {
    if (!((c >= 'a' && c <= 'z') || (c >= '0' && c <= '9'))) c = ' ';
  }
  std::string result;
  bool single = false;  // the word before is letters joined one by one
  for (const std::string& word : WordsOf(text)) {
    const bool letter = word.size() == 1;
    if (!result.empty() && !(letter && single)) result += ' ';
    result += word;
    single = letter;
  }
  return result;
}

std::vector<Proposal> ProposeColumns(const std::vector<SampleColumn>& columns,
                                     const std::vector<Wanted>& wanted) {
  struct Match {
    int score;
    std::size_t column, wanted;
  };
  std::vector<std::vector<std::string>> headings;
  for (const SampleColumn& column : columns) {
    headings.push_back(WordsOf(NormalisedHeading(column.heading)));
    if (std::any_of(headings.back().begin(), headings.back().end(),
                    [](const std::string& word) { return Among(kNever, word); })) {
      headings.back().clear();
    }
  }
  std::vector<Match> matches;
  for (std::size_t w = 0; w < wanted.size(); ++w) {
    std::vector<std::vector<std::string>> phrases = {WordsOf(NormalisedHeading(wanted[w].Dest_ColumnName)),
                                                     WordsOf(NormalisedHeading(wanted[w].description))};
    for (const Synonyms& synonyms : AllSynonyms()) {
      if (!platform::EqualsNoCase(synonyms.Dest_ColumnName, wanted[w].Dest_ColumnName)) continue;
      for (const std::string_view phrase : synonyms.headings) phrases.push_back(WordsOf(phrase));
    }
    for (std::size_t c = 0; c < columns.size(); ++c) {
      int best = 0;
      for (const auto& phrase : phrases) {
        if (!phrase.empty() && !headings[c].empty()) best = std::max(best, Score(headings[c], phrase));
      }
      if (best > 0) matches.push_back({best, c, w});
    }
  }
  std::stable_sort(matches.begin(), matches.end(),
                   [](const Match& a, const Match& b) { return a.score > b.score; });
  std::vector<bool> column_used(columns.size()), wanted_found(wanted.size());
  std::vector<Proposal> proposals;
  for (const Match& match : matches) {
    if (column_used[match.column] || wanted_found[match.wanted]) continue;
    column_used[match.column] = wanted_found[match.wanted] = true;
    proposals.push_back({wanted[match.wanted].Dest_ColumnName, columns[match.column].number});
  }
  const std::vector<Proposal> own = proposals;
  for (std::size_t w = 0; w < wanted.size(); ++w) {
    for (const auto& [name, other] : kShared) {
      if (wanted_found[w] || wanted[w].Dest_ColumnName != name) continue;
      for (const Proposal& each : own) {
        if (each.Dest_ColumnName == other) proposals.push_back({wanted[w].Dest_ColumnName, each.number});
      }
    }
  }
  return proposals;
}

}  // namespace importer
