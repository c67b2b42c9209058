#include "import/select_builder.h"

#include "store/value.h"

namespace importer {
namespace {

std::string PresentColumn(const ColumnRule& rule, const std::string& heading) {
  const std::string& D = rule.Valoare_Implicita;
  const std::string& N = rule.Marime_Maxima;
  const bool has_default = !store::IsEmpty(D);
  const bool has_size = !store::IsEmpty(N);
  const std::string C = "[" + heading + "]";
  std::string item;
  if (has_default && has_size) {
    item = "LEFT(IIF(ISNULL(" + C + "),\"" + D + "\" ," + C + ") ," + N + ")";
  } else if (has_size) {
    item = "LEFT(" + C + " ," + N + ")";
  } else if (has_default) {
    item = "IIF(ISNULL(" + C + ")," + D + " ," + C + ")";
  } else {
    item = C;
  }
  return item;
}

}  // namespace

SelectText BuildSelect(const std::vector<ColumnRule>& rules, const std::vector<std::string>& headings,
                       std::string_view sheet) {
  std::string list = " ";
  for (const ColumnRule& rule : rules) {
    const std::string& D = rule.Valoare_Implicita;
    std::string item;
    if (rule.Exista_Coloana) {
      const int number = rule.Numar_Coloana.value_or(0);
      if (number < 1 || static_cast<std::size_t>(number) > headings.size()) {
        const std::string which =
            rule.Numar_Coloana ? "are numarul " + std::to_string(number) : "nu are numar de coloana";
        return {"", "In macheta, " + rule.Dest_ColumnName + " " + which + ", iar foaia " +
                        std::string(sheet) + " are " + std::to_string(headings.size()) + " coloane"};
      }
      item = PresentColumn(rule, headings[static_cast<std::size_t>(number) - 1]);
    } else if (!store::IsEmpty(D)) {
      item = store::IsEmpty(rule.Marime_Maxima) ? D : "'" + D + "'";
    } else {
      continue;
    }
    list += item + " AS " + rule.Dest_ColumnName + ", ";
  }
  if (list.size() > 2) list.resize(list.size() - 2);
  return {"SELECT" + list + " FROM [" + std::string(sheet) + "$]", ""};
}

}  // namespace importer
