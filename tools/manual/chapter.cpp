#include "chapter.h"

#include <md4c-html.h>

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

}  // namespace

Chapter ReadChapter(const std::filesystem::path& file, int number) {
  static const std::regex heading(R"(<h([1-6])>(.*?)(?: *\{#([A-Za-z0-9_-]+)\})?</h[1-6]>)");
  const std::string html = ToHtml(ReadWhole(file));
  Chapter chapter;
  int section = 0;
  auto rest = html.cbegin();
  for (std::sregex_iterator it(html.begin(), html.end(), heading), end; it != end; ++it) {
    const std::smatch& match = *it;
    Heading found{std::stoi(match[1]), match[3], "", match[2]};
    if (found.level <= 2 && found.id.empty()) {
      throw std::runtime_error(file.string() + ": no anchor at " + found.html);
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
