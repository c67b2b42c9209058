#include "cli/batch/context.h"

namespace cli {
namespace {

const session::KeyInfo& KnownKey(const std::string& key) {
  const session::KeyInfo* info = session::FindKey(key);
  if (info == nullptr) throw Refusal("Nu exista setarea: " + key);
  return *info;
}

int Get(Context& context, const std::string& key) {
  const session::KeyInfo& info = KnownKey(key);
  session::Session& session = context.Settings();
  context.WriteAnswer(key, session::ReadSetting(session.host, session.settings_file, info.section, key));
  return kDone;
}

int Set(Context& context, const std::string& key, const std::string& value) {
  const session::KeyInfo& info = KnownKey(key);
  if (info.forced) {
    throw Refusal("Setarea " + key + " nu se poate schimba: programul o rescrie la fiecare pornire");
  }
  const bool decimals = std::string_view(info.section) == session::kSectionZecimale && key != "UseFormat";
  const bool number = !value.empty() && value.size() <= 3 &&
                      value.find_first_not_of("0123456789") == std::string::npos && std::stoi(value) <= 255;
  if (decimals && !number) throw Refusal("Zecimale_" + key + " - NU ESTE NUMAR");
  session::Session& session = context.Settings();
  return session::UpdateSetting(session.host, session.settings_file, info.section, key, value, true)
             ? kDone
             : kRefused;
}

}  // namespace

void AddSettingsCommands(CLI::App& app, Context& context) {
  CLI::App* settings = app.add_subcommand("settings", "Fisierul de setari");
  settings->require_subcommand(1)->fallthrough();
  auto key = std::make_shared<std::string>();
  auto value = std::make_shared<std::string>();

  CLI::App* get = settings->add_subcommand("get", "Citeste o setare")->fallthrough();
  get->add_option("KEY", *key)->required();
  get->callback([&context, key] { context.action = [&context, key] { return Get(context, *key); }; });

  CLI::App* set = settings->add_subcommand("set", "Schimba o setare")->fallthrough();
  set->add_option("KEY", *key)->required();
  set->add_option("VALUE", *value)->required();
  set->callback([&context, key, value] {
    context.action = [&context, key, value] { return Set(context, *key, *value); };
  });
}

}  // namespace cli
