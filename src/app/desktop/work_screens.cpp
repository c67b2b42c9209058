// The screens of the daily work behind the menu: declarations with their calculations, rates, tariff, lists.

#include "app/desktop/desktop.h"
#include "app/desktop/main_window.h"
#include "calc/screens/net_mass.h"
#include "calc/screens/rates.h"
#include "calc/screens/stat_value.h"
#include "calc/screens/transport.h"
#include "declarations/screens/add_declaration.h"
#include "declarations/screens/editor_screen.h"
#include "import/screens/import_screen.h"
#include "import/screens/template_editor.h"
#include "import/screens/template_list.h"
#include "store/layout/layout.h"
#include "tariff/screens/advanced_search.h"
#include "tariff/screens/browser.h"
#include "tariff/screens/query_builder.h"
#include "tariff/screens/reference_list.h"
#include "ui/text.h"

namespace app {

using declarations::EditorOpening;

void Desktop::OpenEditor(const EditorOpening& opening, bool view, QWidget* over) {
  const declarations::Identity identity = opening.identity;
  const auto calculation = [this, identity]<typename Screen>(std::type_identity<Screen>) {
    return [this, identity](QWidget* parent, const std::string& /*filter*/) {
      Screen(context_, identity, parent).exec();
    };
  };
  const declarations::EditorCommands commands{
      .recalculate_statistical_value = calculation(std::type_identity<calc::Frm_Recalculare_ValStat>()),
      .redistribute_transport = calculation(std::type_identity<calc::Frm_Calcul_Transp_Statistic>()),
      .redistribute_net = calculation(std::type_identity<calc::Frm_Calcul_Net>())};
  declarations::EditorOpener(context_, commands)(opening, view, over);
  if (!view) RefreshDeclarations();
}

void Desktop::RefreshDeclarations() {
  const auto list = open_.find("INTRASTAT");
  if (list == open_.end()) return;
  if (auto* shown = qobject_cast<declarations::Frm_Intrastat_Lista*>(list->second.data())) shown->Refresh();
}

void Desktop::NewDeclaration() {
  const auto opening = declarations::AskForDeclaration(
      context_, main_window_.get(), declarations::Frm_Intrastat_Add::Purpose::kDeclaration);
  if (opening) OpenEditor(*opening, false, main_window_.get());
}

void Desktop::QuickSearch(const QString& text) {
  tariff::OpenQuickSearch(context_, text, main_window_.get());
}

void Desktop::OpenQueries() { tariff::OpenQueryBuilder(context_, main_window_.get()); }

void Desktop::BindWorkScreens() {
  context_.open_line = [this](std::int64_t Record_ID, QWidget* over) {
    const auto opening = declarations::DeclarationList::OpeningAt(*session_, Record_ID);
    if (opening) OpenEditor(*opening, false, over);
  };
  commands_.Handle("INTRASTAT", [this](const Command& command) {
    OpenOnce(command.key, [this] {
      return new declarations::Frm_Intrastat_Lista(
          context_,
          [this](const EditorOpening& opening, bool view, QWidget* over) { OpenEditor(opening, view, over); },
          main_window_.get());
    });
  });
  commands_.Handle("CURS_ACTUALIZARE", [this](const Command&) { program_commands_.UpdateRates(); });
  commands_.Handle("CURS_MANUAL", [this](const Command& command) {
    OpenOnce(command.key, [this] {
      return new calc::Frm_Curs_Manual(
          context_, [this] { program_commands_.UpdateRates(); }, main_window_.get());
    });
  });
  commands_.Handle("MACHETA_NOUA", [this](const Command&) {
    importer::Frm_Macheta(context_, "", main_window_.get()).exec();
  });
  const auto choose = [this](importer::Frm_Machete::Purpose purpose) {
    return [this, purpose](const Command& command) {
      OpenOnce(command.key, [&] { return new importer::Frm_Machete(context_, purpose, main_window_.get()); });
    };
  };
  commands_.Handle("MACHETA_MODIFICARE", choose(importer::Frm_Machete::Purpose::kModify));
  commands_.Handle("MACHETA_STERGE", choose(importer::Frm_Machete::Purpose::kDelete));
  commands_.Handle("EXCEL_PRELUARE", [this](const Command& command) {
    OpenOnce(command.key, [this] {
      auto* screen = new importer::Frm_Preluare(
          context_,
          [this](const declarations::Identity& identity, QWidget* over) {
            OpenEditor(declarations::DeclarationList::Opening(identity, false), false, over);
          },
          main_window_.get());
      QObject::connect(screen, &importer::Frm_Preluare::LinesSaved, screen,
                       [this] { RefreshDeclarations(); });
      return screen;
    });
  });
  commands_.HandleViewers([this](const Command& command) {
    OpenOnce(command.key, [&] {
      tariff::ReferenceTable table{
          std::string(command.query), std::string(command.title), {}, std::string(command.key)};
      for (const std::string_view heading : command.headings) table.captions.emplace_back(heading);
      return new tariff::Frm_Tabel(context_, table, main_window_.get());
    });
  });
  commands_.HandleTariff([this](const Command& command) {
    OpenOnce(command.key, [&] {
      const auto levels = std::span(tariff::kLevels);
      const auto level = std::find_if(levels.begin(), levels.end(),
                                      [&](const auto& one) { return one.query == command.query; });
      return new tariff::Frm_Tarif(context_, *level, main_window_.get(),
                                   store::layout::FindDataFolder(session_->host.files, program_folder_));
    });
  });
}

}  // namespace app
