// What is wrong with a command line, in words.

#include "wifi/usage_errors.h"

#include <CLI/Error.hpp>
#include <algorithm>
#include <array>
#include <string_view>

#include "util/format.h"
#include "wifi/arguments.h"
#include "wifi/translation.h"

namespace wifi {

namespace {

/// Returns the name of an option without its value, which may be a secret.
std::string withoutValue(std::string_view word) {
  return std::string(word.substr(0, word.find('=')));
}

}  // namespace

void rejectSecrets(const std::vector<std::string>& words) {
  constexpr auto names = std::to_array<std::string_view>(
      {"--password", "--passwd", "--passphrase", "--psk", "--key", "--secret", "--wep-key"});
  for (const std::string& word : words) {
    if (const std::string name = withoutValue(word); std::ranges::count(names, name) > 0) {
      throw UsageError(util::formatted(
          // TRANSLATORS: the option comes first.
          tr("%s: a secret is not accepted as an argument, because other users can see it; use "
             "--password-from=prompt, --password-from=file:PATH or --password-from=fd:NUMBER"),
          name.c_str()));
    }
  }
}

void rejectEmptyValues(const std::vector<std::string>& words) {
  for (const std::string& word : words) {
    if (word.starts_with("--") && word.find('=') == word.size() - 1) {
      throw UsageError(util::formatted(tr("%s: expected a value"), withoutValue(word).c_str()));
    }
  }
}

std::string usageProblem(const CLI::Error& error, const std::vector<std::string>& extra,
                         bool hasCommand) {
  if (dynamic_cast<const CLI::ArgumentMismatch*>(&error) != nullptr) {
    // CLI11's text begins with the option's name and a colon.
    const std::string name =
        std::string(error.what()).substr(0, std::string(error.what()).find(':'));
    return util::formatted(tr("%s: expected a value"), name.c_str());
  }
  if (dynamic_cast<const CLI::ExtrasError*>(&error) != nullptr) {
    const std::string first = extra.empty() ? std::string() : extra.front();
    if (first.starts_with('-')) {
      return util::formatted(tr("%s: no such option; see zvkwifi --help"),
                             withoutValue(first).c_str());
    }
    if (!hasCommand && !first.empty()) {
      return util::formatted(
          tr("%s: no such command; expected list, status, set, station, reset or cert"),
          first.c_str());
    }
    return tr("too many arguments; see zvkwifi --help");
  }
  if (dynamic_cast<const CLI::ValidationError*>(&error) != nullptr ||
      dynamic_cast<const CLI::ConversionError*>(&error) != nullptr) {
    // Only --wait takes a number.
    return util::formatted(tr("--wait: expected a number of seconds from 0 to %d"),
                           LongestWaitSeconds);
  }
  if (dynamic_cast<const CLI::RequiredError*>(&error) != nullptr) {
    // CLI11's text begins with the option's name and a space.
    const std::string name =
        std::string(error.what()).substr(0, std::string(error.what()).find(' '));
    return name.starts_with('-')
               ? util::formatted(tr("%s: this option is required"), name.c_str())
               : std::string(tr("cert: expected a command; see zvkwifi cert --help"));
  }
  return error.what();
}

}  // namespace wifi
