#include "chapter.h"

#include <fmt/format.h>
#include <md4c-html.h>

#include <array>
#include <fstream>
#include <iterator>
#include <regex>
#include <set>
#include <stdexcept>

namespace manual {
namespace {

std::string ReadWhole(const std::filesystem::path& file) {
  std::ifstream in(file, std::ios::binary);
  if (!in) {
    throw std::runtime_error("cannot read " + file.string());
  }
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

std::string ToHtml(const std::string& markdown) {
  std::string html;
  const auto append = [](const MD_CHAR* text, MD_SIZE size, void* out) {
    static_cast<std::string*>(out)->append(text, size);
  };
  if (md_html(markdown.data(), static_cast<MD_SIZE>(markdown.size()), append, &html, MD_FLAG_TABLES,
              MD_HTML_FLAG_XHTML) != 0) {
    throw std::runtime_error("the text is not Markdown");
  }
  return html;
}

std::runtime_error Fault(const std::filesystem::path& file, const std::string& what) {
  return std::runtime_error(file.string() + ": " + what);
}

// The size stands in the first chunk of a PNG file, big-endian.
Picture ReadPicture(const std::filesystem::path& file) {
  std::array<unsigned char, 24> head{};
  std::ifstream in(file, std::ios::binary);
  in.read(reinterpret_cast<char*>(head.data()), head.size());
  if (!in || head[1] != 'P' || head[2] != 'N' || head[3] != 'G') {
    return {};
  }
  const auto number = [&head](std::size_t at) {
    return head[at] << 24 | head[at + 1] << 16 | head[at + 2] << 8 | head[at + 3];
  };
  return {file, number(16), number(20)};
}

// Turns every paragraph that is a picture into a numbered figure.
std::string WithFigures(const std::string& html, const std::filesystem::path& file, int number,
                        std::vector<Picture>* pictures) {
  static const std::regex paragraph(R"re(<p><img src="([^"]*)" alt="([^"]*)" /></p>)re");
  std::string out;
  auto rest = html.cbegin();
  for (std::sregex_iterator it(html.begin(), html.end(), paragraph), end; it != end; ++it) {
    const std::string source = (*it)[1];
    const std::string caption = (*it)[2];
    const Picture picture = ReadPicture(file.parent_path() / source);
    if (picture.width <= 0 || picture.height <= 0) {
      throw Fault(file, "no picture " + source);
    }
    if (caption.empty()) {
      throw Fault(file, "no caption for " + source);
    }
    pictures->push_back(picture);
    const std::string figure =
        number > 0 ? fmt::format("{}.{}", number, pictures->size()) : std::to_string(pictures->size());
    out.append(rest, (*it)[0].first);
    out += fmt::format(R"(<figure><a href="{0}"><img src="{0}" alt="{1}" width="{2}" height="{3}" /></a>)"
                       "<figcaption>Figura {4}. {1}</figcaption></figure>",
                       PictureCopy(picture), caption, picture.width, picture.height, figure);
    rest = (*it)[0].second;
  }
  out.append(rest, html.cend());
  static const std::regex image("<img ");
  if (std::distance(std::sregex_iterator(out.begin(), out.end(), image), {}) !=
      static_cast<std::ptrdiff_t>(pictures->size())) {
    throw Fault(file, "a picture stands within a line");
  }
  return out;
}

}  // namespace

std::string PictureCopy(const Picture& picture) {
  return std::string(kPictureFolder) + "/" + picture.file.filename().string();
}

Chapter ReadChapter(const std::filesystem::path& file, int number) {
  static const std::regex heading(R"(<h([1-6])>(.*?)(?: *\{#([A-Za-z0-9_-]+)\})?</h[1-6]>)");
  Chapter chapter;
  const std::string html = WithFigures(ToHtml(ReadWhole(file)), file, number, &chapter.pictures);
  int section = 0;
  auto rest = html.cbegin();
  for (std::sregex_iterator it(html.begin(), html.end(), heading), end; it != end; ++it) {
    const std::smatch& match = *it;
    Heading found{std::stoi(match[1]), match[3], "", match[2]};
    if (found.level <= 2 && found.id.empty()) {
      throw Fault(file, "no anchor at " + found.html);
    }
    if (number > 0 && found.level == 1) {
      found.number = std::to_string(number);
    } else if (number > 0 && found.level == 2) {
      found.number = std::to_string(number) + "." + std::to_string(++section);
    }
    chapter.html.append(rest, match[0].first);
    const std::string tag = "h" + match[1].str();
    chapter.html += "<" + tag + (found.id.empty() ? "" : " id=\"" + found.id + "\"") + ">";
    chapter.html +=
        (found.number.empty() ? "" : found.number + "&#160;&#160;") + found.html + "</" + tag + ">";
    rest = match[0].second;
    chapter.headings.push_back(std::move(found));
  }
  chapter.html.append(rest, html.cend());
  return chapter;
}

std::vector<std::string> FindBrokenLinks(const std::vector<Chapter>& chapters) {
  static const std::regex link("href=\"(?:Manual\\.Html)?#([^\"]*)\"");
  std::vector<std::string> faults;
  std::set<std::string> anchors;
  for (const Chapter& chapter : chapters) {
    for (const Heading& heading : chapter.headings) {
      if (!heading.id.empty() && !anchors.insert(heading.id).second) {
        faults.push_back("anchor given twice: " + heading.id);
      }
    }
  }
  for (const Chapter& chapter : chapters) {
    for (std::sregex_iterator it(chapter.html.begin(), chapter.html.end(), link), end; it != end; ++it) {
      if (!anchors.contains((*it)[1])) {
        faults.push_back("link to a missing anchor: " + (*it)[1].str());
      }
    }
  }
  return faults;
}

}  // namespace manual
