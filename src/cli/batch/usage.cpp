#include "cli/batch/usage.h"

#include <algorithm>

#include "platform/encoding.h"
#include "platform/utf8.h"

namespace cli {
namespace {

/// The text before `mark`, all of it where there is none.
std::string Before(const std::string& text, std::string_view mark) { return text.substr(0, text.find(mark)); }

std::string After(const std::string& text, std::string_view mark) {
  const std::size_t at = text.find(mark);
  return at == std::string::npos ? "" : text.substr(at + mark.size());
}

std::string InRomanian(const std::string& text) {
  const bool range = text.find(" not in range ") != std::string::npos;
  if (range) {
    const std::string value = After(Before(text, " not in range "), ": Value ");
    const std::string limits = After(text, " not in range ");
    // A limit of hundreds of digits is the largest number there is.
    const std::string wanted =
        limits.size() > 100 ? "un numar mai mare ca 0"
                            : "un numar intre " + Before(limits, " to ") + " si " + After(limits, " to ");
    return Before(text, ": Value ") + ": se asteapta " + wanted + ", nu " + value;
  }
  if (text.find(" not in {") != std::string::npos) {
    const std::string choices = platform::ReplaceAll(Before(After(text, " not in {"), "}"), ",", ", ");
    return Before(text, ": ") + ": se asteapta una din valorile " + choices + ", nu " +
           After(Before(text, " not in {"), ": ");
  }
  return text;
}

}  // namespace

std::string UsageText(const CLI::App& app, const CLI::ParseError& error) {
  const std::string text = error.what();
  const std::string& kind = error.get_name();
  if (kind == "RequiredError") {
    if (!text.starts_with("A subcommand")) return "Lipseste " + Before(text, " is required");
    const std::vector<std::string> unknown = app.remaining(true);
    return unknown.empty() ? "Lipseste comanda" : "Nu exista comanda " + unknown.front();
  }
  if (error.get_exit_code() == static_cast<int>(CLI::ExitCodes::ExtrasError))
    return "Argumente necunoscute: " + After(text, "not expected: ");
  if (kind == "ArgumentMismatch") {
    const bool repeated = text.find("At Most") != std::string::npos;
    return Before(text, ": ") + (repeated ? ": se poate da o singura data" : ": lipseste valoarea");
  }
  if (kind == "RequiresError")
    return Before(text, " requires ") + " se da impreuna cu " + After(text, " requires ");
  if (kind == "ExcludesError") {
    return Before(text, " excludes ") + " nu se poate da impreuna cu " + After(text, " excludes ");
  }
  if (kind == "ConversionError") return "Valoare nepotrivita: " + After(text, ": ");
  return InRomanian(text);
}

void RequireUtf8(const std::vector<std::string>& arguments) {
  for (const std::string& argument : arguments) {
    std::string read;
    for (std::size_t i = 0; i < argument.size();)
      platform::AppendUtf8(read, platform::NextCodePoint(argument, i));
    if (read != argument) throw CLI::ValidationError(read, "argumentul nu este text UTF-8");
  }
}

}  // namespace cli
