#include "page.h"

namespace manual {
namespace {

constexpr char kStyle[] = R"(
:root { color-scheme: light dark; --text: #1d2730; --faint: #5b6b78; --accent: #1f6391; --line: #d3dde5; --panel: #f3f7fa; --paper: #ffffff; }
@media (prefers-color-scheme: dark) {
  :root { --text: #dfe6ec; --faint: #9fb0bd; --accent: #7db8de; --line: #37444f; --panel: #1f272e; --paper: #161c21; }
}
* { box-sizing: border-box; }
html { scroll-padding-top: 16px; }
body { margin: 0; font: 16px/1.55 "Segoe UI", "Noto Sans", "DejaVu Sans", sans-serif; color: var(--text); background: var(--paper); }
nav { position: fixed; top: 0; bottom: 0; left: 0; width: 320px; overflow-y: auto; padding: 24px 16px 40px 24px;
      background: var(--panel); border-right: 1px solid var(--line); font-size: 14px; line-height: 1.4; }
nav .title { font-size: 20px; font-weight: 600; }
nav .version { color: var(--faint); margin-bottom: 8px; }
nav .keys { color: var(--faint); margin-bottom: 16px; font-size: 13px; }
nav ul { list-style: none; margin: 0; padding: 0; }
nav li { margin: 3px 0; }
nav ul ul { padding-left: 20px; }
nav > ul > li { margin-top: 10px; font-weight: 600; }
nav ul ul li { font-weight: 400; }
nav a { color: var(--text); }
nav a[aria-current] { color: var(--accent); text-decoration: underline; }
main { max-width: 1000px; margin: 0 auto; padding: 24px 32px 96px; }
main.with-contents { margin-left: 352px; }
h1 { font-size: 28px; line-height: 1.25; margin: 72px 0 16px; padding-bottom: 8px; border-bottom: 2px solid var(--accent); }
main > h1:first-child { margin-top: 8px; }
h2 { font-size: 21px; line-height: 1.3; margin: 40px 0 12px; }
h3 { font-size: 17px; margin: 28px 0 8px; }
h1:target, h2:target, h3:target { background: var(--panel); }
p, ul, ol { margin: 0 0 12px; max-width: 46em; }
li { margin: 4px 0; }
a { color: var(--accent); text-decoration: none; }
a:hover, a:focus { text-decoration: underline; }
code { font: 0.92em "Cascadia Mono", Consolas, "DejaVu Sans Mono", monospace; padding: 1px 4px; background: var(--panel);
       border: 1px solid var(--line); border-radius: 3px; overflow-wrap: break-word; }
pre { padding: 12px 16px; overflow-x: auto; background: var(--panel); border: 1px solid var(--line); border-radius: 4px; }
pre code { padding: 0; border: 0; background: none; white-space: pre; }
blockquote { max-width: 46em; margin: 16px 0; padding: 10px 16px; background: var(--panel); border-left: 4px solid var(--accent); }
blockquote p:last-child { margin-bottom: 0; }
table { width: 100%; margin: 12px 0 20px; border-collapse: collapse; font-size: 15px; line-height: 1.45; }
th, td { padding: 6px 10px; text-align: left; vertical-align: top; border-bottom: 1px solid var(--line); }
th { font-weight: 600; border-bottom: 2px solid var(--line); }
figure { margin: 16px 0 24px; }
figure img { display: block; max-width: 100%; height: auto; border: 1px solid var(--line); border-radius: 4px; }
figcaption { margin-top: 6px; font-size: 14px; color: var(--faint); }
@media (max-width: 960px) {
  nav { position: static; width: auto; border-right: 0; border-bottom: 1px solid var(--line); }
  main.with-contents { margin: 0 auto; }
}
@media print {
  @page { size: A4; margin: 20mm 18mm; }
  :root { --text: #000000; --faint: #444444; --accent: #1f6391; --line: #bbbbbb; --panel: #f4f4f4; --paper: #ffffff; }
  body { font-size: 10.5pt; }
  nav { position: static; width: auto; overflow: visible; border: 0; background: none; padding: 0; break-after: page; }
  main, main.with-contents { max-width: none; margin: 0; padding: 0; }
  h1 { break-before: page; margin-top: 0; }
  main > h1:first-child { break-before: auto; }
  h1, h2, h3 { break-after: avoid; }
  tr, blockquote, pre, figure { break-inside: avoid; }
  thead { display: table-header-group; }
}
)";

// Marks in the contents where the reader is, and keeps that in sight.
constexpr char kFollow[] = R"(<script>//<![CDATA[
(() => {
  const nav = document.querySelector("nav");
  const links = [...nav.querySelectorAll("a")];
  const places = links.map(link => document.getElementById(link.hash.slice(1)));
  let shown = null;
  const follow = () => {
    const below = places.findIndex(place => place.getBoundingClientRect().top > 48);
    const link = links[Math.max(0, (below < 0 ? links.length : below) - 1)];
    if (link === shown) return;
    if (shown) shown.removeAttribute("aria-current");
    link.setAttribute("aria-current", "true");
    shown = link;
    const at = link.getBoundingClientRect();
    if (at.top < 8 || at.bottom > innerHeight - 8) nav.scrollTop += at.top - innerHeight / 3;
  };
  addEventListener("scroll", follow, {passive: true});
  addEventListener("load", follow);
})();
//]]></script>
)";

std::string Head(const std::string& title) {
  return "<!DOCTYPE html>\n<html xmlns=\"http://www.w3.org/1999/xhtml\" lang=\"ro\">\n<head>\n<meta "
         "charset=\"utf-8\" />\n"
         "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\" />\n<title>" +
         title + "</title>\n<style>" + kStyle + "</style>\n</head>\n<body>\n";
}

std::string Link(const Heading& heading) {
  return "<a href=\"#" + heading.id + "\">" + (heading.number.empty() ? "" : heading.number + "&#160; ") +
         heading.html + "</a>";
}

std::string Contents(const std::vector<Chapter>& chapters) {
  std::string out = "<ul>\n";
  for (const Chapter& chapter : chapters) {
    std::string sections;
    for (const Heading& heading : chapter.headings) {
      if (heading.level == 1) {
        out += "<li>" + Link(heading);
      } else if (heading.level == 2) {
        sections += "<li>" + Link(heading) + "</li>\n";
      }
    }
    out += (sections.empty() ? "" : "\n<ul>\n" + sections + "</ul>") + "</li>\n";
  }
  return out + "</ul>\n";
}

}  // namespace

std::string ManualPage(const std::vector<Chapter>& chapters, const std::string& version) {
  std::string out = Head("Declarix – Manual de utilizare");
  out +=
      "<nav aria-label=\"Cuprins\">\n<div class=\"title\">Declarix</div>\n<div class=\"version\">Manual de "
      "utilizare, versiunea " +
      version +
      "</div>\n<div class=\"keys\"><code>Ctrl+F</code> caută în manual, <code>Alt+←</code> merge "
      "înapoi</div>\n" +
      Contents(chapters) + "</nav>\n<main class=\"with-contents\">\n";
  for (const Chapter& chapter : chapters) {
    out += chapter.html;
  }
  return out + "</main>\n" + kFollow + "</body>\n</html>\n";
}

std::string ScreenPage(const std::string& id) {
  const std::string target = "../Manual.Html#" + id;
  return "<!DOCTYPE html>\n<html xmlns=\"http://www.w3.org/1999/xhtml\" lang=\"ro\">\n<head>\n<meta "
         "charset=\"utf-8\" />\n<title>Declarix – Manual de utilizare</title>\n<meta http-equiv=\"refresh\" "
         "content=\"0; url=" +
         target + "\" />\n</head>\n<body>\n<p><a href=\"" + target +
         "\">Manual de utilizare</a></p>\n</body>\n</html>\n";
}

std::string SinglePage(const Chapter& chapter) {
  return Head(chapter.headings.empty() ? "Declarix" : chapter.headings.front().html) + "<main>\n" +
         chapter.html + "</main>\n</body>\n</html>\n";
}

}  // namespace manual
