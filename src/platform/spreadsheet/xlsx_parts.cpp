#include "platform/spreadsheet/xlsx_parts.h"

#include <charconv>
#include <unordered_map>

#include "platform/encoding.h"
#include "platform/spreadsheet/sheet.h"
#include "platform/spreadsheet/xml_scanner.h"

namespace platform::spreadsheet {
namespace {

struct Relation {
  std::string type;  ///< last word of its address
  std::string part;
};
using Relations = std::unordered_map<std::string, Relation>;

std::string_view FolderOfPart(std::string_view part) {
  const std::size_t slash = part.rfind('/');
  return slash == std::string_view::npos ? std::string_view() : part.substr(0, slash + 1);
}

// A target as the package names it: it may be absolute or go up from its folder.
std::string ResolveTarget(std::string_view folder, std::string_view target) {
  std::string path(target.starts_with('/') ? target.substr(1) : std::string(folder) + std::string(target));
  for (std::size_t up; (up = path.find("../")) != std::string::npos;) {
    const std::size_t before = up < 2 ? 0 : path.rfind('/', up - 2) + 1;  // npos + 1 is 0
    path.erase(before, up + 3 - before);
  }
  while (path.starts_with("./")) path.erase(0, 2);
  return path;
}

class RelationsHandler : public XmlHandler {
 public:
  RelationsHandler(std::string_view folder, Relations& relations) : folder_(folder), relations_(&relations) {}
  void OnStart(std::string_view name, const XmlAttributes& attributes) override {
    if (LocalName(name) != "Relationship" || attributes.Get("TargetMode") == "External") return;
    const std::string_view type = attributes.Get("Type");
    (*relations_)[std::string(attributes.Get("Id"))] = {std::string(type.substr(type.rfind('/') + 1)),
                                                        ResolveTarget(folder_, attributes.Get("Target"))};
  }
  void OnEnd(std::string_view) override {}
  void OnText(std::string_view) override {}

 private:
  std::string_view folder_;
  Relations* relations_;
};

Relations ReadRelations(Package& package, std::string_view part) {
  Relations relations;
  const std::string_view folder = FolderOfPart(part);
  const std::string path = fmt::format("{}_rels/{}.rels", folder, part.substr(folder.size()));
  if (!package.Has(path)) return relations;
  RelationsHandler handler(folder, relations);
  ReadXml(package, path, handler);
  return relations;
}

class WorkbookHandler : public XmlHandler {
 public:
  WorkbookHandler(const Relations& relations, XlsxParts& parts) : relations_(&relations), parts_(&parts) {}

  void OnStart(std::string_view name, const XmlAttributes& attributes) override {
    name = LocalName(name);
    if (name == "workbookPr") {
      const std::string_view base = attributes.Get("date1904");
      parts_->base_1904 = base == "1" || base == "true" || base == "on";
    }
    if (name != "sheet") return;
    XlsxParts::Sheet sheet;
    sheet.name = attributes.Get("name");
    sheet.hidden = !attributes.Get("state").empty() && attributes.Get("state") != "visible";
    for (const XmlAttribute& attribute : attributes) {
      if (attribute.name.find(':') == std::string_view::npos || LocalName(attribute.name) != "id") continue;
      const auto relation = relations_->find(std::string(attribute.value));
      if (relation == relations_->end()) continue;
      if (relation->second.type != "worksheet") return;
      sheet.part = relation->second.part;
    }
    parts_->sheets.push_back(std::move(sheet));
  }
  void OnEnd(std::string_view) override {}
  void OnText(std::string_view) override {}

 private:
  const Relations* relations_;
  XlsxParts* parts_;
};

int ToInt(std::string_view text) {
  int value = -1;
  std::from_chars(text.data(), text.data() + text.size(), value);
  return value;
}

class StylesHandler : public XmlHandler {
 public:
  explicit StylesHandler(std::vector<NumberFormat>& formats) : formats_(&formats) {}

  void OnStart(std::string_view name, const XmlAttributes& attributes) override {
    name = LocalName(name);
    // Conditional formats have number formats too, under numbers that may be anything.
    if (name == "numFmts" || name == "cellXfs") inside_ = name == "numFmts" ? kNumFmts : kCellXfs;
    if (name == "numFmt" && inside_ == kNumFmts) {
      stored_[ToInt(attributes.Get("numFmtId"))] = ClassifyNumberFormat(attributes.Get("formatCode"));
    }
    if (name == "xf" && inside_ == kCellXfs) {
      const int index = ToInt(attributes.Get("numFmtId"));
      const auto stored = stored_.find(index);
      formats_->push_back(stored != stored_.end() ? stored->second
                          : index >= 0 && index < 0xFFFF
                              ? BuiltInNumberFormat(static_cast<std::uint16_t>(index))
                              : NumberFormat());
    }
  }
  void OnEnd(std::string_view name) override {
    name = LocalName(name);
    if (name == "numFmts" || name == "cellXfs") inside_ = kNothing;
  }
  void OnText(std::string_view) override {}

 private:
  enum Inside { kNothing, kNumFmts, kCellXfs };
  std::vector<NumberFormat>* formats_;
  std::unordered_map<int, NumberFormat> stored_;
  Inside inside_ = kNothing;
};

class StringsHandler : public XmlHandler {
 public:
  explicit StringsHandler(TextPool& pool) : pool_(&pool) {}
  void OnStart(std::string_view name, const XmlAttributes& attributes) override {
    name = LocalName(name);
    if (name == "si") text_.Clear();
    text_.OnStart(name, attributes);
  }
  void OnEnd(std::string_view name) override {
    name = LocalName(name);
    text_.OnEnd(name);
    if (name == "si") pool_->Add(text_.text());
  }
  void OnText(std::string_view text) override { text_.OnText(text); }

 private:
  TextPool* pool_;
  XlsxText text_;
};

}  // namespace

void ResolveEscapes(std::string& text) {
  constexpr std::size_t kLength = 7;
  std::size_t at = text.find("_x");
  if (at == std::string::npos) return;
  std::string out = text.substr(0, at);
  while (at < text.size()) {
    unsigned code = 0;
    const char* const digits = text.data() + at + 2;
    const bool escape = at + kLength <= text.size() && text[at] == '_' && text[at + 1] == 'x' &&
                        text[at + kLength - 1] == '_' &&
                        std::from_chars(digits, digits + 4, code, 16).ptr == digits + 4;
    if (escape && code != 0 && (code < 0xD800 || code > 0xDFFF)) {
      AppendUtf8(out, code);
      at += kLength;
    } else {
      out += text[at++];
    }
  }
  text = std::move(out);
}

void XlsxText::Clear() {
  text_.clear();
  open_ = false;
  pronounced_ = 0;
}

void XlsxText::OnStart(std::string_view local_name, const XmlAttributes& attributes) {
  if (local_name == "rPh") ++pronounced_;
  if (local_name != "t" || pronounced_ > 0) return;
  open_ = true;
  preserve_ = attributes.Get("xml:space") == "preserve";
  piece_.clear();
}

void XlsxText::OnEnd(std::string_view local_name) {
  if (local_name == "rPh") --pronounced_;
  if (local_name != "t" || !open_) return;
  open_ = false;
  if (!preserve_) {
    constexpr const char* kBlanks = " \t\r\n";
    piece_.erase(std::min(piece_.find_last_not_of(kBlanks) + 1, piece_.size()));  // npos + 1 is 0
    piece_.erase(0, std::min(piece_.find_first_not_of(kBlanks), piece_.size()));
  }
  ResolveEscapes(piece_);
  text_ += piece_;
}

std::string XlsxMainPart(Package& package) {
  for (const auto& [id, relation] : ReadRelations(package, "")) {
    if (relation.type == "officeDocument") return relation.part;
  }
  return package.Has("xl/workbook.xml") ? "xl/workbook.xml" : "";
}

XlsxParts ReadXlsxParts(Package& package, const std::string& main_part) {
  XlsxParts parts;
  const Relations relations = ReadRelations(package, main_part);
  WorkbookHandler workbook(relations, parts);
  ReadXml(package, main_part, workbook);
  for (const auto& [id, relation] : relations) {
    if (relation.type == "sharedStrings" && package.Has(relation.part)) parts.strings_part = relation.part;
    if (relation.type == "styles" && package.Has(relation.part)) {
      StylesHandler styles(parts.formats);
      ReadXml(package, relation.part, styles);
    }
  }
  return parts;
}

TextPool ReadXlsxStrings(Package& package, const std::string& part) {
  TextPool pool;
  StringsHandler handler(pool);
  ReadXml(package, part, handler);
  return pool;
}

}  // namespace platform::spreadsheet
