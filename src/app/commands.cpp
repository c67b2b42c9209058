#include "app/commands.h"

#include "tariff/lookup.h"

namespace app {

void Commands::Handle(std::string_view key, Handler handler) {
  const Command* command = FindCommand(key);
  if (command == nullptr || command->kind != CommandKind::kAction) {
    throw std::logic_error("no command with an action of its own: " + std::string(key));
  }
  // Keyed by the table's text, which lives as long as the program.
  if (!handlers_.emplace(command->key, std::move(handler)).second) {
    throw std::logic_error("a second handler for " + std::string(key));
  }
}

bool Commands::IsBuilt(const Command& command) const {
  switch (command.kind) {
    case CommandKind::kAction:
    case CommandKind::kViewer:
    case CommandKind::kTariff:
      return HandlerOf(command) != nullptr;
    default:
      return true;
  }
}

const Commands::Handler* Commands::HandlerOf(const Command& command) const {
  switch (command.kind) {
    case CommandKind::kAction: {
      const auto found = handlers_.find(command.key);
      return found == handlers_.end() ? nullptr : &found->second;
    }
    case CommandKind::kViewer:
      return viewer_ ? &viewer_ : nullptr;
    case CommandKind::kTariff:
      return tariff_ ? &tariff_ : nullptr;
    default:
      return nullptr;
  }
}

void Commands::ExecuteCommand(std::string_view key) {
  const Command* command = FindCommand(key);
  const Handler* handler = command == nullptr ? nullptr : HandlerOf(*command);
  if (handler == nullptr) return;
  if (command->kind == CommandKind::kTariff) {
    const platform::LocalTime now = session_->host.clock.Now();
    int month = now.month;
    int year = now.year;
    tariff::ConexiuneTarif(*session_, month, year);
    if (!session_->tariff.is_open()) return;
  }
  (*handler)(*command);
}

}  // namespace app
