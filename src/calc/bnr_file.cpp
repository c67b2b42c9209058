#include "calc/bnr_file.h"

#include <cmath>
#include <pugixml.hpp>
#include <set>

#include "calc/rounding/rounding.h"
#include "platform/encoding.h"

namespace calc {
namespace {

constexpr double kHighestRate = 1e9;
constexpr int kHighestMultiplier = 1'000'000;

/// A name without its namespace prefix.
std::string_view Local(std::string_view name) {
  const std::size_t colon = name.find(':');
  return colon == std::string_view::npos ? name : name.substr(colon + 1);
}

/// The namespace that an element's own prefix (or none) stands for, where the element declares it.
std::string_view NamespaceOf(const pugi::xml_node& node) {
  const std::string_view name = node.name();
  const std::size_t colon = name.find(':');
  std::string attribute = "xmlns";
  if (colon != std::string_view::npos) attribute += ":" + std::string(name.substr(0, colon));
  return node.attribute(attribute.c_str()).value();
}

bool IsNamed(const pugi::xml_node& node, std::string_view name) {
  return node.type() == pugi::node_element && Local(node.name()) == name;
}

pugi::xml_node Child(const pugi::xml_node& parent, std::string_view name) {
  return parent.find_child([&](const pugi::xml_node& node) { return IsNamed(node, name); });
}

/// "yyyy-mm-dd" and nothing else.
std::optional<store::Date> DayOf(std::string_view text) {
  if (text.size() != 10 || text[4] != '-' || text[7] != '-') return std::nullopt;
  return store::ParseDate(text);
}

std::optional<int> MultiplierOf(const pugi::xml_attribute& attribute) {
  if (!attribute) return 1;
  const std::string_view text = platform::Trim(attribute.value());
  const std::optional<double> number = store::ParseNumber(text);
  if (!number || *number < 1 || *number > kHighestMultiplier || *number != std::floor(*number))
    return std::nullopt;
  return static_cast<int>(*number);
}

/// A value as a message shows it: a damaged file may have anything in it, of any length.
std::string_view Shown(std::string_view text) { return platform::Utf8Prefix(platform::Trim(text), 40); }

class Reader {
 public:
  Reader(BnrFile& file, store::Date latest) : file_(file), latest_(latest) {}

  void ReadCube(const pugi::xml_node& cube) {
    const std::string_view text = platform::Trim(cube.attribute("date").value());
    const std::optional<store::Date> day = DayOf(text);
    const auto rates = std::count_if(cube.begin(), cube.end(),
                                     [](const pugi::xml_node& node) { return IsNamed(node, "Rate"); });
    if (!day || day->days > latest_.days) {
      file_.refused.push_back(fmt::format("ziua \"{}\" (cursuri: {}): {}", Shown(text), rates,
                                          day ? "data este in viitor" : "data este gresita"));
      return;
    }
    for (const pugi::xml_node& rate : cube) {
      if (IsNamed(rate, "Rate")) ReadRate(rate, *day);
    }
  }

 private:
  void ReadRate(const pugi::xml_node& rate, store::Date day) {
    const std::string currency(platform::Trim(rate.attribute("currency").value()));
    const std::string_view text = platform::Trim(rate.child_value());
    const auto refuse = [&](std::string_view reason) {
      file_.refused.push_back(fmt::format("{} din {}: {}",
                                          currency.empty() ? "moneda fara cod" : Shown(currency),
                                          store::DateText(day), reason));
    };
    if (currency.size() != 3 ||
        !std::all_of(currency.begin(), currency.end(), [](char c) { return c >= 'A' && c <= 'Z'; })) {
      return refuse("codul monedei este gresit");
    }
    const std::optional<double> value = store::ParseNumber(text);
    if (!value) return refuse(fmt::format("cursul \"{}\" nu este un numar", Shown(text)));
    const double rounded = Round(*value, 4);
    if (!std::isfinite(rounded) || rounded <= 0)
      return refuse(fmt::format("cursul \"{}\" nu este mai mare ca zero", Shown(text)));
    if (rounded > kHighestRate) return refuse(fmt::format("cursul \"{}\" este prea mare", Shown(text)));
    const std::optional<int> multiplier = MultiplierOf(rate.attribute("multiplier"));
    if (!multiplier)
      return refuse(
          fmt::format("multiplicatorul \"{}\" este gresit", Shown(rate.attribute("multiplier").value())));
    if (!seen_.emplace(day.days, currency).second) return refuse("apare de doua ori in fisier");
    file_.rates.push_back({currency, day, rounded, *multiplier});
  }

  BnrFile& file_;
  const store::Date latest_;
  std::set<std::pair<double, std::string>> seen_;
};

}  // namespace

BnrFile ReadBnrFile(std::string& xml, store::Date latest) {
  BnrFile file;
  pugi::xml_document document;
  const pugi::xml_parse_result parsed = document.load_buffer_inplace(xml.data(), xml.size());
  if (!parsed) {
    file.error =
        fmt::format("nu este un fisier XML corect (octetul {}: {})", parsed.offset, parsed.description());
    return file;
  }
  const pugi::xml_node root = document.document_element();
  const std::string_view from = NamespaceOf(root);
  if (!IsNamed(root, "DataSet") || (from != "http://www.bnr.ro/xsd" && from != "https://www.bnr.ro/xsd")) {
    file.error =
        fmt::format("nu este un fisier de cursuri al BNR (elementul radacina este {})", Shown(root.name()));
    return file;
  }
  const pugi::xml_node body = Child(root, "Body");
  const std::string_view home = platform::Trim(Child(body, "OrigCurrency").child_value());
  if (!home.empty() && home != "RON") {
    file.error = fmt::format("cursurile sunt exprimate in {}, nu in RON", Shown(home));
    return file;
  }
  Reader reader(file, latest);
  for (const pugi::xml_node& node : body) {
    if (IsNamed(node, "Cube")) reader.ReadCube(node);
  }
  if (file.rates.empty() && file.refused.empty()) file.error = "nu contine nici un curs";
  return file;
}

}  // namespace calc
