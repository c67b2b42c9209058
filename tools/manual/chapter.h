#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace manual {

struct Heading {
  int level;           // 1 the chapter, 2 a section, …
  std::string id;      // anchor, unique over the whole manual
  std::string number;  // "3" or "3.2"; empty from level 3 on
  std::string html;    // the title, inline markup included
};

// A picture of the chapter, alone in its paragraph: "![Ce se vede](../screenshots/Frm_Tarif.png)". What is
// seen becomes the caption below it.
struct Picture {
  std::filesystem::path file;
  int width;  // pixels
  int height;
};

// Folder beside the help files that takes their pictures, so that a page opens without waiting for them.
inline constexpr char kPictureFolder[] = "imagini";
std::string PictureCopy(const Picture& picture);  // its place there, as the pages name it

// One Markdown file. Its headings are written "## Titlu {#anchor}"; screens have their object name as anchor,
// so that the program can open the manual at the screen in front.
struct Chapter {
  std::string html;  // well-formed fragment, headings with id and number
  std::vector<Heading> headings;
  std::vector<Picture> pictures;  // in the text as <figure>, with their place in kPictureFolder
};

// Throws std::runtime_error, naming the file, when it or one of its pictures cannot be read, a picture has no
// caption or stands within a line, or a heading of level 1 or 2 has no anchor. `number` 0 leaves headings and
// pictures without the chapter's number.
Chapter ReadChapter(const std::filesystem::path& file, int number);

// Links inside the manual that lead nowhere and anchors given twice, one line each.
std::vector<std::string> FindBrokenLinks(const std::vector<Chapter>& chapters);

}  // namespace manual
