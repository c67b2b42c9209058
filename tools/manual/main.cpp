// Builds the help files from the Markdown chapters in docs/manual: Manual.Html with its pictures and a page
// for every screen's F1, Manual.Pdf and incoterms.html. Usage: manual_builder CHAPTERS_FOLDER OUT_FOLDER
// VERSION ICON.svg

#include <QFile>
#include <QGuiApplication>
#include <algorithm>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <stdexcept>

#include "booklet.h"
#include "chapter.h"
#include "page.h"

namespace {

namespace fs = std::filesystem;

constexpr char kIncoterms[] = "incoterms.md";  // a page of its own and the manual's last chapter

std::vector<fs::path> ChapterFiles(const fs::path& folder) {
  std::vector<fs::path> files;
  for (const fs::directory_entry& entry : fs::directory_iterator(folder)) {
    if (entry.path().extension() == ".md") {
      files.push_back(entry.path());
    }
  }
  // The numbered chapters sort before the pages named by a word.
  std::sort(files.begin(), files.end());
  return files;
}

void Write(const fs::path& file, const std::string& text) {
  std::ofstream out(file, std::ios::binary | std::ios::trunc);
  out << text;
  out.close();
  if (!out) {
    throw std::runtime_error("cannot write " + file.string());
  }
}

// An emptied folder, so that nothing of an earlier manual stays in it.
fs::path NewFolder(const fs::path& folder) {
  fs::remove_all(folder);
  fs::create_directories(folder);
  return folder;
}

void WritePictures(const std::vector<manual::Chapter>& chapters, const fs::path& out) {
  for (const manual::Chapter& chapter : chapters) {
    for (const manual::Picture& picture : chapter.pictures) {
      fs::copy_file(picture.file, out / manual::PictureCopy(picture), fs::copy_options::skip_existing);
    }
  }
}

void WriteScreenPages(const std::vector<manual::Chapter>& chapters, const fs::path& folder) {
  for (const manual::Chapter& chapter : chapters) {
    for (const manual::Heading& heading : chapter.headings) {
      if (heading.id.starts_with("Frm_")) {
        Write(folder / (heading.id + ".html"), manual::ScreenPage(heading.id));
      }
    }
  }
}

int Build(const fs::path& folder, const fs::path& out, const std::string& version, const QString& icon) {
  manual::Booklet booklet{{}, version, icon};
  int number = 0;
  for (const fs::path& file : ChapterFiles(folder)) {
    booklet.chapters.push_back(manual::ReadChapter(file, ++number));
  }
  const std::vector<std::string> faults = manual::FindBrokenLinks(booklet.chapters);
  for (const std::string& fault : faults) {
    std::fprintf(stderr, "%s\n", fault.c_str());
  }
  if (!faults.empty()) {
    return 1;
  }
  Write(out / "Manual.Html", manual::ManualPage(booklet.chapters, version));
  NewFolder(out / manual::kPictureFolder);
  WritePictures(booklet.chapters, out);
  WriteScreenPages(booklet.chapters, NewFolder(out / "ecrane"));
  Write(out / "incoterms.html", manual::SinglePage(manual::ReadChapter(folder / kIncoterms, 0)));
  if (!manual::WritePdf(booklet, QString::fromStdU16String((out / "Manual.Pdf").u16string()))) {
    throw std::runtime_error("cannot write Manual.Pdf");
  }
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  QGuiApplication application(argc, argv);
  if (argc != 5) {
    std::fputs("usage: manual_builder CHAPTERS_FOLDER OUT_FOLDER VERSION ICON.svg\n", stderr);
    return 2;
  }
  try {
    return Build(argv[1], argv[2], argv[3], QFile::decodeName(argv[4]));
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
  }
}
