#include "support/installation.h"

#include <gtest/gtest.h>

#include "companies/open_company.h"
#include "companies/register.h"
#include "setup/setup.h"

namespace test_support {
namespace {

namespace fs = std::filesystem;

constexpr char kProgram[] = "C:\\Program Files\\Declarix";

void Create(session::Session& session, ScriptedPrompter& prompter, std::string_view Cod_Fiscal,
            std::string_view Nume_Firma) {
  companies::Fields fields = companies::NewCompany();
  fields.Set("Cod_Fiscal", Cod_Fiscal);
  fields.Set("Nume_Firma", Nume_Firma);
  prompter.ExpectInfo("FIRMA A FOST CREATA", "MESAJ");
  if (!companies::CreateCompany(session, fields))
    throw std::runtime_error("the test company was not created");
}

/// The drives folder that every test copies.
const fs::path& Pristine() {
  static TestHost machine;
  static const bool ready = [] {
    setup::LayDown(machine, setup::kDefaultRoot, DataFolder(machine.files));
    session::Session session(machine.host());
    session.ReadSettings(kProgram);
    session::OpenCommonConnection(session);
    Create(session, machine.prompter, Installation::kCompany, "PROBA SRL");
    return true;
  }();
  (void)ready;
  return machine.folder.path();
}

TestHost& CopyPristine(TestHost& machine) {
  fs::copy(Pristine(), machine.folder.path(),
           fs::copy_options::recursive | fs::copy_options::overwrite_existing);
  return machine;
}

}  // namespace

Installation::Installation(State state) : session(CopyPristine(machine).host()) {
  session.ReadSettings(kProgram);
  if (state == State::kClosed) return;
  session::OpenCommonConnection(session);
  if (state == State::kCompanyOpen && !companies::OpenRegisteredCompany(session, kCompany)) {
    throw std::runtime_error("the test company cannot be opened");
  }
}

void Installation::AddCompany(std::string_view Cod_Fiscal, std::string_view Nume_Firma) {
  Create(session, machine.prompter, Cod_Fiscal, Nume_Firma);
}

std::string DataFolder(const platform::Files& files) {
  return files.drives().FromHost(fs::path(DECLARIX_SOURCE_DIR) / "data") + "\\";
}

}  // namespace test_support
