#include <ostream>

#include "cli/batch/context.h"
#include "setup/setup.h"
#include "store/layout/layout.h"

namespace cli {
namespace {

int LayDown(Context& context, const std::string& root) {
  platform::Host host = context.host();
  const setup::Outcome outcome =
      setup::LayDown(host, root, store::layout::FindDataFolder(host.files, context.ProgramFolder()));
  for (const std::string& note : outcome.notes) context.prompter().Info(note);
  if (!context.json) {  // paths as Windows writes them, without the escapes of tables
    context.out() << "adaugat\n";
    for (const std::string& item : outcome.added) context.out() << item << '\n';
    return kDone;
  }
  ResultTable table{{"adaugat"}, {}};
  for (const std::string& item : outcome.added) table.rows.push_back({item});
  context.Write(table);
  return kDone;
}

}  // namespace

void AddSetupCommand(CLI::App& app, Context& context) {
  auto root = std::make_shared<std::string>(setup::kDefaultRoot);
  CLI::App* command = app.add_subcommand("setup", "Asaza o instalare sau ii adauga ce lipseste");
  command->add_option("--root", *root, "Dosarul instalarii, ca pe Windows");
  command->callback(
      [&context, root] { context.action = [&context, root] { return LayDown(context, *root); }; });
}

}  // namespace cli
