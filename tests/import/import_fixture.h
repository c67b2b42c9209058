#pragma once

#include <gtest/gtest.h>

#include "import/run.h"
#include "import/template_rows.h"
#include "import/templates.h"
#include "support/installation.h"
#include "support/xls_writer.h"

/// An open company, with worksheets that a test writes to C:\Foi.
class ImportTest : public testing::Test {
 protected:
  static constexpr char kPath[] = "C:\\Foi\\martie.xls";

  test_support::ScriptedPrompter& prompter() { return at_.prompter(); }
  session::Session& session() { return at_.session; }
  platform::Files& files() { return at_.files(); }

  void CreateTemplate(const std::string& name, const std::string& flow) {
    importer::TemplateEditor editor(session());
    editor.New();
    editor.header().Set("Nume_Structura", name);
    editor.header().Set("TIP", flow);
    ASSERT_TRUE(editor.Save());
  }

  void Save(test_support::XlsWriter& book, const std::string& path = kPath) {
    files().CreateFolders(platform::FolderOf(path));
    book.Save(files().ToHost(path).string());
  }

  /// A sheet of two columns, code and net mass, for tests that care about the run and not the lines.
  void SaveCodes(const std::vector<std::string>& codes, const std::string& path = kPath) {
    test_support::XlsWriter book;
    test_support::XlsWriter::Sheet& sheet = book.AddSheet("Sheet1");
    sheet.Row(0, "'Cod|'Kg");
    for (unsigned i = 0; i < codes.size(); ++i) sheet.Row(i + 1, fmt::format("'{}|={}", codes[i], i + 0.5));
    Save(book, path);
  }

  void CreateCodesTemplate() {
    CreateTemplate("Coduri", "ACHIZITIE");
    importer::ChangeRow(session(), "Coduri", "Cod_NC", {1, std::nullopt, std::nullopt});
    importer::ChangeRow(session(), "Coduri", "Net", {2, std::nullopt, std::nullopt});
    importer::ChangeRow(session(), "Coduri", "Val_Fiscala", {std::nullopt, "100", std::nullopt});
  }

  importer::Inputs Inputs(const std::string& name = "Coduri", const std::string& operation = "I-ACHIZITIE") {
    return {2026, 3, kPath, "Sheet1", at_.kCompany, name, operation};
  }

  std::int64_t Lines() { return at_.Get("SELECT COUNT(*) FROM Intrastat").ToInteger(); }

  test_support::Installation at_;
};
