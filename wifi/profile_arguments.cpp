#include "wifi/profile_arguments.h"

#include "wifi/secret_input.h"
#include "wifi/signals.h"

namespace wifi {

std::unique_ptr<session::Profile> readProfile(const Arguments& arguments) {
  session::ProfileReader reader;
  for (const auto& [key, value] : arguments.settings) {
    reader.set(key, value, "--" + key);
  }
  if (!arguments.settingsFile.empty()) {
    reader.readFile(arguments.settingsFile);
  }
  auto profile = std::make_unique<session::Profile>(reader.finish());
  if (session::needsSecret(*profile)) {
    const Interruption interruption;
    profile->secret = readSecret(*profile, reader.secretSource());
  }
  return profile;
}

}  // namespace wifi
