#include "reports/layout.h"

#include "platform/encoding.h"
#include "platform/utf8.h"

namespace reports {
namespace {

constexpr double kSizes[] = {9, 8, 7, 6.5, 6, 5.5, 5};
constexpr int kMeasuredRows = 1500;  // evenly chosen, of longer lists
constexpr int kNarrowText = 14;      // characters that a text column keeps where its definition has no width
constexpr std::string_view kSigns = "_-/.,;:+";  // behind which a long word is rather broken
constexpr int kLongWord = 24;                    // longer words may be broken
constexpr int kTightWord = 14;                   // and these where the page is too full
constexpr double kTitleFactor = 1.45, kLeastTitleFactor = 1.15;
constexpr double kSmall = 8;    // letters of the foot and of the title on further pages
constexpr double kIndent = 12;  // points a group's level stands further in

std::size_t CharactersEnd(std::string_view text, int count) {
  std::size_t at = 0;
  while (at < text.size() && count-- > 0) platform::NextCodePoint(text, at);
  return at;
}

double LongestWord(const FontTable& font, std::string_view text, int most = kLongWord) {
  double longest = 0;
  while (!text.empty()) {
    const std::string_view word = text.substr(0, text.find(' '));
    longest = std::max(longest, font.Width(word.substr(0, CharactersEnd(word, most)), 1));
    text.remove_prefix(std::min(text.size(), word.size() + 1));
  }
  return longest;
}

/// A text on one line, its end left out where the room does not do.
std::string Cut(std::string_view text, const FontTable& font, double size, double room) {
  const std::vector<std::string_view> lines = Wrap(text, font, size, room);
  return std::string(lines[0]) + (lines.size() > 1 ? "..." : "");
}

bool IsHeader(const Band& band) { return band.kind == Band::Kind::kGroupHeader; }

}  // namespace

double FontTable::Width(std::string_view utf8, double points) const {
  double width = 0;
  for (std::size_t at = 0; at < utf8.size();) {
    const auto byte = static_cast<unsigned char>(utf8[at]);
    if (byte < 0x80) {
      width += advance[byte];
      ++at;
      continue;
    }
    const char32_t c = platform::NextCodePoint(utf8, at);
    width += c < kLetters ? advance[c] : other;
  }
  return width * points;
}

std::vector<std::string_view> Wrap(std::string_view text, const FontTable& font, double size, double room) {
  std::vector<std::string_view> lines;
  while (font.Width(text, size) > room) {
    double width = 0;
    std::size_t at = 0, word_end = 0, sign_end = 0;
    while (at < text.size()) {
      std::size_t next = at;
      platform::NextCodePoint(text, next);
      if (text[at] == ' ') word_end = at;
      width += font.Width(text.substr(at, next - at), size);
      if (width > room && text[at] != ' ') break;
      if (kSigns.find(text[at]) != std::string_view::npos) sign_end = next;
      at = next;
    }
    if (at >= text.size()) break;  // only blanks were too much
    std::size_t cut = word_end > 0 ? word_end : sign_end > at / 2 ? sign_end : at;
    if (cut == 0) {  // a cell narrower than its first letter
      platform::NextCodePoint(text, cut);
      if (cut >= text.size()) break;
    }
    lines.push_back(text.substr(0, cut));
    text.remove_prefix(cut);
    while (text.starts_with(' ')) text.remove_prefix(1);
  }
  if (!text.empty() || lines.empty()) lines.push_back(text);
  return lines;
}

Layout::Layout(const Report& report, const Fonts& fonts, PageSize page, Footer footer,
               Orientation orientation)
    : report_(&report),
      fonts_(&fonts),
      page_(page),
      footer_(std::move(footer)),
      title_(platform::Trim(report.title())) {
  MeasureColumns();
  ChoosePage(orientation);
  ChooseFont();
  FitColumns();
  BreakNextPage();
}

void Layout::MeasureColumns() {
  const std::vector<Band>& bands = report_->bands();
  const std::size_t step = std::max<std::size_t>(1, bands.size() / kMeasuredRows);
  const double average = fonts_->plain.Width("aeinrt0123456789", 1) / 16;
  std::vector<const Band*> measured;
  for (std::size_t i = 0; i < bands.size(); ++i) {
    const bool sum = bands[i].totals >= 0;
    if (sum || (bands[i].kind == Band::Kind::kDetail && i % step == 0)) measured.push_back(&bands[i]);
  }
  for (std::size_t c = 0; c < report_->columns().size(); ++c) {
    const ReportColumn& column = report_->columns()[c];
    const bool text_column = column.alignment != Alignment::kRight && !column.total;
    const double caption = fonts_->bold.Width(column.caption, 1);
    // A heading takes three lines before its column grows.
    double widest = 0, tight = 0,
           longest_word = std::max(LongestWord(fonts_->bold, column.caption), caption * 0.4);
    for (const Band* band : measured) {
      if (band->totals >= 0 && !column.total) continue;
      const std::string text = report_->TextOf(*band, c);
      const double width = (band->totals >= 0 ? fonts_->bold : fonts_->plain).Width(text, 1);
      if (width > longest_word) {
        longest_word = std::max(longest_word, text_column ? LongestWord(fonts_->plain, text) : width);
      }
      if (width > tight) {
        tight = std::max(tight, text_column ? LongestWord(fonts_->plain, text, kTightWord) : width);
      }
      widest = std::max(widest, width);
    }
    const double readable = average * (column.width > 0 ? column.width : kNarrowText);
    Measure measure;
    measure.least = longest_word;
    measure.tight = std::max(tight, LongestWord(fonts_->bold, column.caption, kTightWord));
    measure.wanted = std::max(longest_word, text_column ? std::min(widest, readable) : widest);
    measure.content = std::max(measure.wanted, widest);
    measure.natural = std::max(measure.content, column.width > 0 ? std::min(caption, readable) : caption);
    measures_.push_back(measure);
  }
}

double Layout::Needed(double Measure::*measure, double size) const {
  double sum = 0;
  for (const Measure& each : measures_) sum += each.*measure * size + 2 * size * kPadding;
  return sum;
}

void Layout::ChoosePage(Orientation orientation) {
  const double narrow = std::min(page_.width, page_.height), wide = std::max(page_.width, page_.height);
  bool landscape = page_.width > page_.height;
  if (orientation != Orientation::kAuto) {
    landscape = orientation == Orientation::kLandscape;
  } else if (Needed(&Measure::wanted, kSizes[0]) > room()) {
    landscape = true;
  }
  page_.width = landscape ? wide : narrow;
  page_.height = landscape ? narrow : wide;
}

void Layout::ChooseFont() {
  size_ = kSizes[0];
  if (Needed(&Measure::natural, size_) <= room()) return;
  for (const double size : kSizes) {
    size_ = size;
    if (Needed(&Measure::wanted, size) <= room()) return;
  }
}

/// What is left of the page goes to the texts that had to wrap, then to the headings, at last to the widest
/// text; what is missing is taken from texts down to their longest words, at last from all alike.
void Layout::FitColumns() {
  constexpr double Measure::*kLevels[] = {&Measure::tight, &Measure::least, &Measure::wanted,
                                          &Measure::content, &Measure::natural};
  const auto width = [&](const Measure& each, double Measure::*which) {
    return each.*which * size_ + 2 * pad();
  };
  widths_.clear();
  std::size_t level = 0;
  while (level < std::size(kLevels) && Needed(kLevels[level], size_) <= room()) ++level;
  if (level == 0) {
    const double shrunk = room() / Needed(&Measure::tight, size_);
    for (const Measure& each : measures_) widths_.push_back(width(each, &Measure::tight) * shrunk);
    return;
  }
  if (level < std::size(kLevels)) {
    const double small = Needed(kLevels[level - 1], size_), large = Needed(kLevels[level], size_);
    const double share = (room() - small) / std::max(large - small, 1e-6);
    for (const Measure& each : measures_) {
      const double from = width(each, kLevels[level - 1]);
      widths_.push_back(from + (width(each, kLevels[level]) - from) * share);
    }
    return;
  }
  std::size_t filler = measures_.size();
  for (std::size_t i = 0; i < measures_.size(); ++i) {
    widths_.push_back(width(measures_[i], &Measure::natural));
    if (report_->columns()[i].alignment != Alignment::kLeft) continue;
    if (filler == measures_.size() || measures_[i].natural > measures_[filler].natural) filler = i;
  }
  if (filler < measures_.size()) widths_[filler] += room() - Needed(&Measure::natural, size_);
}

/// A title that is only a little too long becomes smaller, a longer one takes several lines.
double Layout::TitleSize() const {
  const double wanted = kSizes[0] * kTitleFactor;
  const double fitting = TitleRoom() / std::max(fonts_->bold.Width(title_, 1), 1e-6);
  return std::clamp(fitting, kSizes[0] * kLeastTitleFactor, wanted);
}

double Layout::TitleHeight() const {
  const double size = TitleSize();
  const std::size_t title = Wrap(title_, fonts_->bold, size, TitleRoom() + 0.01).size();
  const double lines = static_cast<double>(report_->lines().size());
  return (static_cast<double>(title) * size + lines * kSizes[0]) * fonts_->plain.height + 10;
}

double Layout::RunningTitleHeight() const { return fonts_->plain.height * kSmall + 6; }

double Layout::FootHeight() const { return fonts_->plain.height * kSmall + 8; }

double Layout::CellsHeight(const std::function<std::string(std::size_t)>& text_of,
                           const FontTable& font) const {
  std::size_t lines = 1;
  for (std::size_t c = 0; c < widths_.size(); ++c) {
    const double inside = widths_[c] - 2 * pad() + 0.01;
    const std::string text = text_of(c);
    if (font.Width(text, size_) <= inside) continue;
    lines = std::max(lines, Wrap(text, font, size_, inside).size());
  }
  const auto most = static_cast<std::size_t>(page_.height / 2 / line());
  return static_cast<double>(std::min(lines, most)) * line() + pad();
}

double Layout::HeadHeight() const {
  return CellsHeight([this](std::size_t c) { return report_->columns()[c].caption; }, fonts_->bold);
}

/// A total's caption has the columns before its first sum.
double Layout::CaptionRoom(const Band& band) const {
  if (band.totals < 0) return room();
  double width = 0;
  for (std::size_t c = 0; c < widths_.size() && !report_->columns()[c].total; ++c) width += widths_[c];
  return width;
}

double Layout::BandHeight(const Band& band) const {
  if (band.kind == Band::Kind::kDetail) {
    return CellsHeight([&](std::size_t c) { return report_->TextOf(band, c); }, fonts_->plain);
  }
  const double inside = std::max(CaptionRoom(band) - 2 * pad() - kIndent * band.level, 40.0);
  const double lines =
      static_cast<double>(Wrap(report_->CaptionOf(band), fonts_->bold, size_, inside).size());
  return lines * line() + pad() + (IsHeader(band) ? pad() : 0);
}

double Layout::Following(std::size_t band) const {
  const std::vector<Band>& bands = report_->bands();
  double height = 0;
  for (std::size_t i = band; i < bands.size() && i < band + 8; ++i) {
    if (i > band) height += BandHeight(bands[i]);
    if (!IsHeader(bands[i])) break;
  }
  return height;
}

void Layout::BreakNextPage() {
  if (complete_) return;
  const std::vector<Band>& bands = report_->bands();
  PageStart page;
  page.first = page.end = pages_.empty() ? 0 : pages_.back().end;
  double y = page_.margin + (pages_.empty() ? TitleHeight() : RunningTitleHeight()) + HeadHeight();
  if (page.first < bands.size()) {
    const Band& next = bands[page.first];
    const std::size_t kept = IsHeader(next)                         ? next.level
                             : next.kind == Band::Kind::kGroupTotal ? next.level + 1u
                             : next.kind == Band::Kind::kDetail     ? open_.size()
                                                                    : 0;
    page.continued.assign(open_.begin(),
                          open_.begin() + static_cast<std::ptrdiff_t>(std::min(kept, open_.size())));
    for (const std::size_t header : page.continued) y += BandHeight(bands[header]);
  }
  const double limit = page_.height - page_.margin - FootHeight();
  while (page.end < bands.size()) {
    const Band& band = bands[page.end];
    const double height = BandHeight(band);
    if (page.end > page.first && y + height + Following(page.end) > limit) break;
    if (IsHeader(band)) {
      open_.resize(band.level);
      open_.push_back(page.end);
    }
    y += height;
    ++page.end;
  }
  complete_ = page.end >= bands.size();
  pages_.push_back(std::move(page));
}

void Layout::BreakAll() {
  while (!complete_) BreakNextPage();
}

int Layout::progress() const {
  const std::size_t all = std::max<std::size_t>(1, report_->bands().size());
  return static_cast<int>(pages_.back().end * 100 / all);
}

void Layout::Put(PageContent& content, double x, double top, double width, std::string text, bool bold,
                 Alignment alignment, double size) const {
  if (text.empty()) return;
  const FontTable& font = bold ? fonts_->bold : fonts_->plain;
  const double own = font.Width(text, size);
  if (alignment == Alignment::kRight) x += width - own;
  if (alignment == Alignment::kCentre) x += (width - own) / 2;
  content.texts.push_back({x, top + font.ascent * size, own, size, bold, std::move(text)});
}

double Layout::PutLines(PageContent& content, double x, double top, double width,
                        const std::vector<std::string_view>& lines, bool bold, Alignment alignment,
                        double size) const {
  using Joint = PageContent::Text::Joint;
  for (std::size_t i = 0; i < lines.size(); ++i) {
    const std::size_t before = content.texts.size();
    Put(content, x, top + static_cast<double>(i) * fonts_->plain.height * size, width, std::string(lines[i]),
        bold, alignment, size);
    if (i == 0 || content.texts.size() == before) continue;
    const bool together = lines[i - 1].data() + lines[i - 1].size() == lines[i].data();
    content.texts.back().joint = together ? Joint::kWord : Joint::kBlank;
  }
  return static_cast<double>(lines.size()) * fonts_->plain.height * size;
}

double Layout::PutRunningTitle(PageContent& content) const {
  // With whose report it is, for pages that come apart.
  std::string title = title_;
  if (!report_->lines().empty()) title += "   " + report_->lines()[0];
  Put(content, page_.margin, page_.margin, room(), Cut(title, fonts_->plain, kSmall, TitleRoom()), false,
      Alignment::kLeft, kSmall);
  Put(content, page_.margin, page_.margin, room(), footer_.date, false, Alignment::kRight, kSmall);
  return RunningTitleHeight();
}

double Layout::PutTitle(PageContent& content) const {
  const double size = TitleSize();
  double y = page_.margin;
  Put(content, page_.margin, y, room(), footer_.date, false, Alignment::kRight, kSizes[0]);
  y += PutLines(content, page_.margin, y, room(), Wrap(title_, fonts_->bold, size, TitleRoom() + 0.01), true,
                Alignment::kLeft, size);
  for (const std::string& text : report_->lines()) {
    Put(content, page_.margin, y, room(), text, false, Alignment::kLeft, kSizes[0]);
    y += fonts_->plain.height * kSizes[0];
  }
  return TitleHeight();
}

void Layout::PutCells(PageContent& content, double y, bool bold,
                      const std::function<std::string(std::size_t)>& text_of) const {
  const FontTable& font = bold ? fonts_->bold : fonts_->plain;
  const auto most = static_cast<std::size_t>(page_.height / 2 / line());
  double x = page_.margin;
  for (std::size_t c = 0; c < widths_.size(); ++c) {
    const double inside = widths_[c] - 2 * pad();
    const std::string text = text_of(c);
    std::vector<std::string_view> lines = Wrap(text, font, size_, inside + 0.01);
    const bool cut = lines.size() > most;
    if (cut) lines.resize(most);
    PutLines(content, x + pad(), y + pad() / 2, inside, lines, bold, report_->columns()[c].alignment, size_);
    if (cut) content.texts.back().text += "...";
    x += widths_[c];
  }
}

double Layout::PutHead(PageContent& content, double y) const {
  const double height = HeadHeight();
  content.fills.push_back({page_.margin, y, room(), height, 0xea});
  PutCells(content, y, true, [this](std::size_t c) { return report_->columns()[c].caption; });
  content.lines.push_back({page_.margin, y + height, room(), 0.75, true});
  return height;
}

double Layout::PutBand(PageContent& content, const Band& band, double y, bool continued) const {
  const double height = BandHeight(band);
  if (band.kind == Band::Kind::kDetail) {
    PutCells(content, y, false, [&](std::size_t c) { return report_->TextOf(band, c); });
    content.lines.push_back({page_.margin, y + height, room(), 0.35, false});
    return height;
  }
  double top = y + pad() / 2;
  const bool sum = band.totals >= 0;
  if (IsHeader(band)) {
    top += pad();
    content.lines.push_back({page_.margin, y + height, room(), 0.5, false});
  } else if (sum) {
    content.fills.push_back({page_.margin, y, room(), height, 0xf4});
    content.lines.push_back({page_.margin, y, room(), 0.5, true});
    if (band.kind == Band::Kind::kGrandTotal) {
      content.lines.push_back({page_.margin, y + height, room(), 0.75, true});
    }
  }
  std::string caption = report_->CaptionOf(band);
  if (continued) caption += " (continuare)";
  const double indent = kIndent * (band.kind == Band::Kind::kGrandTotal ? 0 : band.level);
  const double inside = std::max(CaptionRoom(band) - 2 * pad() - kIndent * band.level, 40.0);
  PutLines(content, page_.margin + pad() + indent, top, inside,
           continued ? std::vector<std::string_view>{caption} : Wrap(caption, fonts_->bold, size_, inside),
           true, Alignment::kLeft, size_);
  if (sum) {
    double x = page_.margin;
    for (std::size_t c = 0; c < widths_.size(); ++c) {
      Put(content, x + pad(), top, widths_[c] - 2 * pad(), report_->TextOf(band, c), true,
          report_->columns()[c].alignment, size_);
      x += widths_[c];
    }
  }
  return height;
}

void Layout::PutFoot(PageContent& content, int index) const {
  const double top = page_.height - page_.margin - fonts_->plain.height * kSmall;
  content.lines.push_back({page_.margin, top - 3, room(), 0.5, true});
  const double beside_user = room() / 2 - fonts_->plain.Width(footer_.user, kSmall) / 2 - 20;
  Put(content, page_.margin, top, room(), Cut(footer_.publisher, fonts_->plain, kSmall, beside_user), false,
      Alignment::kLeft, kSmall);
  Put(content, page_.margin, top, room(), footer_.user, false, Alignment::kCentre, kSmall);
  const std::string count = complete_ ? fmt::format(" / {}", page_count()) : "";
  Put(content, page_.margin, top, room(), fmt::format("Pagina {}{}", index + 1, count), false,
      Alignment::kRight, kSmall);
}

PageContent Layout::Page(int index) const {
  const PageStart& page = pages_[static_cast<std::size_t>(index)];
  const std::vector<Band>& bands = report_->bands();
  PageContent content;
  double y = page_.margin;
  y += index == 0 ? PutTitle(content) : PutRunningTitle(content);
  y += PutHead(content, y);
  for (const std::size_t header : page.continued) y += PutBand(content, bands[header], y, true);
  for (std::size_t i = page.first; i < page.end; ++i) y += PutBand(content, bands[i], y, false);
  PutFoot(content, index);
  return content;
}

}  // namespace reports
