#include "reports/html.h"

namespace reports {
namespace {

constexpr char kStyle[] =
    "body{font:10pt sans-serif;margin:2em}h1{font-size:14pt;margin:0 0 .3em}p{margin:.1em 0}"
    "table{border-collapse:collapse;margin:1em 0}thead{display:table-header-group}tr{break-inside:avoid}"
    "th,td{padding:2px 6px;border-bottom:1px solid #ccc;text-align:left;vertical-align:top}"
    "th{background:#eaeaea;border-bottom:1px solid #000}.r{text-align:right;white-space:nowrap}"
    ".c{text-align:center}.g td{font-weight:bold;padding-top:.8em}.t td{font-weight:bold;background:#f4f4f4;"
    "border-top:1px solid #000}footer{font-size:8pt;border-top:1px solid #000;padding-top:.3em}"
    "@page{size:A4 %s;margin:12mm}@media print{body{margin:0}}";

std::string Escaped(std::string_view text) {
  std::string out;
  for (const char c : text) {
    switch (c) {
      case '&':
        out += "&amp;";
        break;
      case '<':
        out += "&lt;";
        break;
      case '>':
        out += "&gt;";
        break;
      case '"':
        out += "&quot;";
        break;
      default:
        out += c;
    }
  }
  return out;
}

std::string Cell(const char* tag, Alignment alignment, std::string_view text) {
  const char* side = alignment == Alignment::kRight    ? " class=\"r\""
                     : alignment == Alignment::kCentre ? " class=\"c\""
                                                       : "";
  return fmt::format("<{0}{1}>{2}</{0}>", tag, side, Escaped(text));
}

std::string Row(const Report& report, const Band& band) {
  const std::size_t count = report.columns().size();
  if (band.totals < 0 && band.kind != Band::Kind::kDetail) {
    return fmt::format("<tr class=\"g\"><td colspan=\"{}\">{}</td></tr>\r\n", count,
                       Escaped(report.CaptionOf(band)));
  }
  std::string row = band.totals >= 0 ? "<tr class=\"t\">" : "<tr>";
  std::size_t from = 0;
  if (band.totals >= 0) {
    while (from < count && !report.columns()[from].total) ++from;
    if (from > 0) row += fmt::format("<td colspan=\"{}\">{}</td>", from, Escaped(report.CaptionOf(band)));
  }
  for (std::size_t c = from; c < count; ++c) {
    row += Cell("td", report.columns()[c].alignment, report.TextOf(band, c));
  }
  return row + "</tr>\r\n";
}

}  // namespace

std::string Html(const Report& report, const Footer& footer, bool landscape, platform::Progress& progress) {
  std::string style = kStyle;
  style.replace(style.find("%s"), 2, landscape ? "landscape" : "portrait");
  std::string page = fmt::format(
      "<!DOCTYPE html>\r\n<html lang=\"ro\"><head><meta charset=\"utf-8\"><title>{0}</title>"
      "<style>{1}</style></head><body>\r\n<h1>{0}</h1>\r\n",
      Escaped(report.title()), style);
  for (const std::string& line : report.lines()) page += "<p>" + Escaped(line) + "</p>\r\n";
  page += "<table><thead><tr>";
  for (const ReportColumn& column : report.columns()) page += Cell("th", column.alignment, column.caption);
  page += "</tr></thead><tbody>\r\n";
  const std::vector<Band>& bands = report.bands();
  for (std::size_t i = 0; i < bands.size(); ++i) {
    if (i % 256 == 0) {
      progress.Update("Se scrie fisierul HTML", static_cast<int>(i * 100 / bands.size()));
      if (progress.Cancelled()) return {};
    }
    page += Row(report, bands[i]);
  }
  page += "</tbody></table>\r\n<footer>";
  for (const std::string* part : {&footer.publisher, &footer.user, &footer.date}) {
    if (!part->empty()) page += Escaped(*part) + " &nbsp; ";
  }
  return page + "</footer>\r\n</body></html>\r\n";
}

}  // namespace reports
