#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "reports/report.h"

namespace reports {

/// How wide the letters of a font are, so that pages are laid out without a window: advances of one point's
/// size, in points.
struct FontTable {
  static constexpr std::size_t kLetters = 0x250;  ///< to the end of Latin Extended-B

  std::array<float, kLetters> advance{};
  float other = 1;     ///< any letter beyond the table
  float height = 1;    ///< of a line
  float ascent = .8f;  ///< baseline below the line's top

  double Width(std::string_view utf8, double points) const;
};

struct Fonts {
  FontTable plain, bold;
};

/// Points throughout: 1/72 inch.
struct PageSize {
  double width = 0, height = 0;
  double margin = 34;  ///< 12 mm on every side
};

/// What stands at the foot of every page besides its number.
struct Footer {
  std::string publisher, user;
  std::string date;  ///< beside the title
};

/// The contents of one page, from its upper left corner.
struct PageContent {
  struct Text {
    double x = 0, baseline = 0;  ///< x is the left end, whatever the alignment
    double width = 0, size = 0;
    bool bold = false;
    std::string text;
    /// How it goes on from the text before it, where a text was wrapped: after a blank or within a word.
    enum class Joint : std::uint8_t { kNone, kBlank, kWord } joint = Joint::kNone;
  };
  struct Line {
    double x = 0, y = 0, width = 0, weight = 0;
    bool strong = false;
  };
  struct Fill {
    double x = 0, y = 0, width = 0, height = 0;
    std::uint8_t grey = 0xee;
  };
  std::vector<Fill> fills;
  std::vector<Line> lines;
  std::vector<Text> texts;
};

/// A report laid out on pages: columns as wide as what they hold where that fits; else texts are wrapped,
/// then the letters become smaller. Nothing is cut off but texts longer than half a page. Headings, and the
/// headers of groups that go on, are repeated on every page, below the report's title in small. Pages are
/// broken one by one, so that the first can be shown before the last is known.
class Layout {
 public:
  /// The report and the fonts must outlive the layout. kAuto turns the page where the columns need it.
  Layout(const Report& report, const Fonts& fonts, PageSize page, Footer footer, Orientation orientation);

  const PageSize& page() const { return page_; }
  double font_size() const { return size_; }
  const std::vector<double>& widths() const { return widths_; }  ///< of the columns

  /// Pages broken so far; at least one.
  int page_count() const { return static_cast<int>(pages_.size()); }
  bool complete() const { return complete_; }
  void BreakNextPage();
  void BreakAll();
  /// Percent of the rows on the pages so far.
  int progress() const;

  /// `index` from 0, below page_count(). The number of pages is left open in the foot while it is not known.
  PageContent Page(int index) const;

 private:
  struct PageStart {
    std::size_t first = 0, end = 0;      ///< bands
    std::vector<std::size_t> continued;  ///< group headers repeated on top
  };
  struct Measure {
    /// At one point's size, without padding: with long words broken, what must be, what should be, whole
    /// texts, headings on one line.
    double tight = 0, least = 0, wanted = 0, content = 0, natural = 0;
  };

  static constexpr double kPadding = 0.4;  ///< of the letters' size, at either side of a cell

  void MeasureColumns();
  void ChoosePage(Orientation orientation);
  void ChooseFont();
  void FitColumns();
  double Needed(double Measure::*measure, double size) const;
  double room() const { return page_.width - 2 * page_.margin; }
  double pad() const { return size_ * kPadding; }
  double line() const { return fonts_->plain.height * size_; }

  double TitleRoom() const { return room() - 70; }  ///< beside the date
  double TitleSize() const;
  double TitleHeight() const;
  double RunningTitleHeight() const;
  double HeadHeight() const;
  double FootHeight() const;
  double BandHeight(const Band& band) const;
  double CellsHeight(const std::function<std::string(std::size_t)>& text_of, const FontTable& font) const;
  double CaptionRoom(const Band& band) const;
  /// What must stand on the same page below a group's header.
  double Following(std::size_t band) const;

  double PutTitle(PageContent& content) const;
  double PutRunningTitle(PageContent& content) const;
  double PutHead(PageContent& content, double y) const;
  double PutBand(PageContent& content, const Band& band, double y, bool continued) const;
  void PutCells(PageContent& content, double y, bool bold,
                const std::function<std::string(std::size_t)>& text_of) const;
  void PutFoot(PageContent& content, int index) const;
  void Put(PageContent& content, double x, double top, double width, std::string text, bool bold,
           Alignment alignment, double size) const;
  /// A wrapped text; the height that it takes.
  double PutLines(PageContent& content, double x, double top, double width,
                  const std::vector<std::string_view>& lines, bool bold, Alignment alignment,
                  double size) const;

  const Report* report_;
  const Fonts* fonts_;
  PageSize page_;
  Footer footer_;
  std::string title_;
  std::vector<Measure> measures_;
  std::vector<double> widths_;
  double size_ = 9;
  std::vector<PageStart> pages_;
  std::vector<std::size_t> open_;  ///< headers of the groups around the next band
  bool complete_ = false;
};

/// The lines of a text in a cell: between words where they fit, else anywhere; at least one.
std::vector<std::string_view> Wrap(std::string_view text, const FontTable& font, double size, double room);

}  // namespace reports
