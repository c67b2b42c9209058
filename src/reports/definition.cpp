#include "reports/definition.h"

#include <charconv>
#include <pugixml.hpp>
#include <set>

#include "platform/encoding.h"

namespace reports {
namespace {

constexpr int kWidest = 400;  // characters

Format FormatOf(std::string_view text, const std::function<void(const std::string&)>& refuse) {
  static constexpr std::pair<std::string_view, Format> kFormats[] = {{"", Format::kAsShown},
                                                                     {"##,##0", Format::kWhole},
                                                                     {"##,##0.00", Format::kAmount},
                                                                     {"##,##0.0000", Format::kRate},
                                                                     {"numar", Format::kNumber},
                                                                     {"dd.mm.yyyy", Format::kDate},
                                                                     {"dd.mm.yyyy hh:mm", Format::kDateTime},
                                                                     {"text", Format::kText},
                                                                     {"da/nu", Format::kTick}};
  for (const auto& [name, format] : kFormats) {
    if (text == name) return format;
  }
  refuse(fmt::format("formatul \"{}\" nu este cunoscut", text));
  return Format::kText;
}

/// What is wrong with a text that is no XML.
std::string InRomanian(const pugi::xml_parse_result& result) {
  switch (result.status) {
    case pugi::status_no_document_element:
      return "nu are nici un element";
    case pugi::status_bad_start_element:
    case pugi::status_unrecognized_tag:
      return "un element nu este scris corect";
    case pugi::status_bad_attribute:
      return "un atribut nu este scris corect";
    case pugi::status_bad_end_element:
      return "un sfarsit de element nu este scris corect";
    case pugi::status_end_element_mismatch:
      return "un element nu se inchide unde trebuie";
    case pugi::status_bad_comment:
      return "un comentariu nu se inchide";
    default:
      return result.description();
  }
}

/// Reads one file; `file` and the report at hand are named in every error.
class Parser {
 public:
  explicit Parser(const std::string& file) : file_(file) {}

  std::vector<Definition> Read(std::string_view xml) {
    xml_ = xml;
    pugi::xml_document document;
    const pugi::xml_parse_result result = document.load_buffer(xml.data(), xml.size());
    if (!result) {
      throw ReportError(fmt::format("Fisierul {} nu este un XML corect: linia {}, {}", file_,
                                    LineAt(result.offset), InRomanian(result)));
    }
    const pugi::xml_node root = document.child("Reports");
    if (!root) throw ReportError(fmt::format("Fisierul {} nu are elementul Reports", file_));
    std::vector<Definition> all;
    std::set<std::string> ids;
    for (const pugi::xml_node node : root.children("Report")) {
      id_ = node.attribute("Id").as_string();
      line_ = LineAt(node.offset_debug());
      if (id_.empty())
        throw ReportError(fmt::format("Fisierul {}, linia {}: un raport nu are Id", file_, line_));
      if (!ids.insert(id_).second) Refuse("apare de doua ori");
      all.push_back(ReadReport(node));
    }
    return all;
  }

 private:
  int LineAt(std::ptrdiff_t offset) const {
    const auto end = xml_.begin() + std::clamp<std::ptrdiff_t>(offset, 0, std::ssize(xml_));
    return 1 + static_cast<int>(std::count(xml_.begin(), end, '\n'));
  }

  [[noreturn]] void Refuse(const std::string& reason) const {
    throw ReportError(fmt::format("Fisierul {}, linia {}, raportul {}: {}", file_, line_, id_, reason));
  }

  bool Switch(const pugi::xml_node& node, const char* name, bool otherwise) const {
    const std::string_view value = node.attribute(name).as_string();
    if (value.empty()) return otherwise;
    if (value != "0" && value != "1") {
      Refuse(fmt::format("{} este \"{}\"; se asteapta 0 sau 1", name, value));
    }
    return value == "1";
  }

  template <typename Value>
  Value Choice(const pugi::xml_node& node, const char* name,
               std::initializer_list<std::pair<std::string_view, Value>> choices) const {
    const std::string_view value = node.attribute(name).as_string();
    if (value.empty()) return choices.begin()->second;
    for (const auto& [text, meaning] : choices) {
      if (value == text) return meaning;
    }
    Refuse(fmt::format("{} nu poate fi \"{}\"", name, value));
  }

  Definition ReadReport(const pugi::xml_node& node) {
    Definition report;
    report.id = id_;
    report.line = line_;
    report.title = node.attribute("Title").as_string();
    report.name = node.attribute("Name").as_string(report.id.c_str());
    report.family = node.attribute("Family").as_string();
    report.orientation = Choice<Orientation>(node, "Orientation",
                                             {{"Auto", Orientation::kAuto},
                                              {"Portrait", Orientation::kPortrait},
                                              {"Landscape", Orientation::kLandscape}});
    report.count = Switch(node, "Count", false);
    const pugi::xml_node source = node.child("Source");
    report.statement = std::string(platform::Trim(source.child_value()));
    report.sort = source.attribute("Sort").as_string();
    if (!report.sort.empty() && report.statement.empty()) {
      Refuse("Sort cere o fraza SELECT; randurile unei liste stau in ordinea ei");
    }
    for (const pugi::xml_node line : node.children("Line")) report.lines.emplace_back(line.child_value());
    for (const pugi::xml_node column : node.children("Column")) report.columns.push_back(ReadColumn(column));
    for (const pugi::xml_node group : node.children("Group")) {
      line_ = LineAt(group.offset_debug());
      report.groups.push_back({group.attribute("Field").as_string(), group.attribute("Header").as_string(),
                               Switch(group, "Totals", true)});
      if (report.groups.back().field.empty()) Refuse("un grup nu are Field");
    }
    line_ = report.line;
    if (report.title.empty()) Refuse("nu are titlu (Title)");
    if (report.columns.empty()) Refuse("nu are coloane");
    return report;
  }

  ColumnDefinition ReadColumn(const pugi::xml_node& node) {
    line_ = LineAt(node.offset_debug());
    ColumnDefinition column;
    column.field = node.attribute("Field").as_string();
    if (column.field.empty()) Refuse("o coloana nu are Field");
    column.caption = node.attribute("Caption").as_string();
    if (const std::string_view width = node.attribute("Width").as_string(); !width.empty()) {
      const char* end = width.data() + width.size();
      const auto read = std::from_chars(width.data(), end, column.width);
      if (read.ec != std::errc() || read.ptr != end || column.width < 0 || column.width > kWidest) {
        Refuse(fmt::format("latimea \"{}\" a coloanei {} nu este un numar de la 0 la {}", width, column.field,
                           kWidest));
      }
    }
    column.format =
        FormatOf(node.attribute("Format").as_string(), [this](const std::string& reason) { Refuse(reason); });
    column.alignment = Choice<Alignment>(node, "Align",
                                         {{"Auto", Alignment::kByFormat},
                                          {"Left", Alignment::kLeft},
                                          {"Right", Alignment::kRight},
                                          {"Center", Alignment::kCentre}});
    column.group_total = node.attribute("Total").as_string() == std::string_view("Group");
    column.total = column.group_total || Switch(node, "Total", false);
    column.optional = Switch(node, "Optional", false);
    column.filled = Switch(node, "Filled", false);
    column.only = node.attribute("Only").as_string();
    if (!column.only.empty() && column.only.find('=') == std::string::npos) {
      Refuse(fmt::format("Only este \"{}\"; se asteapta nume=valoare", column.only));
    }
    return column;
  }

  std::string file_, id_;
  std::string_view xml_;
  int line_ = 0;  ///< of what is read now
};

}  // namespace

bool IsNumeric(Format format) {
  return format == Format::kWhole || format == Format::kAmount || format == Format::kRate ||
         format == Format::kNumber;
}

Definitions Definitions::Parse(std::string_view xml, const std::string& file) {
  Definitions definitions;
  definitions.file_ = file;
  definitions.all_ = Parser(file).Read(xml);
  return definitions;
}

Definitions Definitions::Read(session::Session& session) {
  const std::string file = session.settings.ReportDefinitionPath + "UE_Reports.xml";
  if (!session.host.files.Exists(file)) throw ReportError("Nu exista fisierul: " + file);
  try {
    return Parse(session.host.files.Read(file), file);
  } catch (const platform::FileError& failure) {
    throw ReportError(failure.what());
  }
}

bool Definitions::Has(std::string_view id) const {
  return std::any_of(all_.begin(), all_.end(), [id](const Definition& each) { return each.id == id; });
}

const Definition& Definitions::Get(std::string_view id) const {
  for (const Definition& definition : all_) {
    if (definition.id == id) return definition;
  }
  throw ReportError(fmt::format("Fisierul {} nu are raportul {}", file_, id));
}

const Definition* Definitions::FindByTitle(std::string_view title) const {
  for (const Definition& definition : all_) {
    if (platform::Trim(definition.title) == platform::Trim(title)) return &definition;
  }
  return nullptr;
}

std::vector<const Definition*> Definitions::Family(std::string_view family) const {
  std::vector<const Definition*> found;
  for (const Definition& definition : all_) {
    if (!family.empty() && definition.family == family) found.push_back(&definition);
  }
  return found;
}

}  // namespace reports
