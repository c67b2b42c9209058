#pragma once

#include <array>
#include <functional>
#include <map>
#include <span>
#include <string_view>

#include "session/session.h"

namespace app {

enum class CommandKind {
  kAction,     ///< an action of its own, handled by key
  kViewer,     ///< a reference list: the one generic list screen, on the common connection
  kTariff,     ///< a level of the tariff browser, on the tariff connection of the current month
  kSubMenu,    ///< opens the commands whose parent it is
  kSeparator,  ///< a line between commands
  kNoAction,   ///< a key that is kept, has no caption and does nothing
};

/// One line of the main menu. Fields that a kind does not have are empty.
struct Command {
  std::string_view key;
  std::string_view caption;      ///< "&" before the mnemonic
  std::string_view parent = {};  ///< key of a sub-menu; empty: in the menu bar
  CommandKind kind = CommandKind::kAction;
  std::string_view title = {};                    ///< of the screen that the command opens
  std::string_view confirm = {};                  ///< caption of that screen's confirm button
  std::string_view query = {};                    ///< of viewers and tariff levels
  std::array<std::string_view, 5> headings = {};  ///< one per column of the query, the rest empty
  std::string_view link = {};                     ///< tariff: caption of the way to the next level
};

/// All commands, each sub-menu's in the order of showing.
std::span<const Command> CommandTable();
/// By exact key; null where there is none.
const Command* FindCommand(std::string_view key);

/// The dispatcher: what runs under a key. Screens put their handlers in as they are built.
class Commands {
 public:
  using Handler = std::function<void(const Command&)>;

  explicit Commands(session::Session& session) : session_(&session) {}

  /// The handler of an action. Throws std::logic_error for a key without own action and for a second handler.
  void Handle(std::string_view key, Handler handler);
  /// The screens behind all viewers and all tariff levels.
  void HandleViewers(Handler handler) { viewer_ = std::move(handler); }
  void HandleTariff(Handler handler) { tariff_ = std::move(handler); }

  /// False for actions and lists whose screen is not there yet: such commands are shown disabled.
  bool IsBuilt(const Command& command) const;

  /// Runs a key's handler. Whatever else the key may be, nothing happens. Tariff levels first get the tariff
  /// of the current month; without any tariff open they stay closed, which has been shown.
  void ExecuteCommand(std::string_view key);

 private:
  const Handler* HandlerOf(const Command& command) const;

  session::Session* session_;
  std::map<std::string_view, Handler> handlers_;
  Handler viewer_, tariff_;
};

/// Tooltip of a disabled command.
inline constexpr char kNotBuilt[] = "Comanda nu este inca disponibila in aceasta versiune";

}  // namespace app
