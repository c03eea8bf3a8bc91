// The input is the text of a settings file. A simple model of the format also finds the settings in
// the text, and sets them as options. The model and the code under test must find the same
// settings. Settings that fit each other must make well-formed packets.

#include <algorithm>
#include <optional>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "fuzz_target.h"
#include "outputs.h"
#include "session/profile.h"
#include "wireless/wnpa_generator.h"

namespace {

using session::Profile;
using session::ProfileError;
using session::ProfileReader;
using session::SecretSource;
using session::Security;

constexpr const char* Name = "f";
constexpr std::size_t LargestText = 65536;
constexpr std::size_t LongestLine = 4096;

/// The settings that the model finds.
struct Model {
  ProfileReader options;                ///< the settings except the password
  std::optional<std::string> password;  ///< as it is in the file
};

std::string withoutBlanks(std::string text) {
  const auto isBlank = [](char c) {
    return c == ' ' || c == '\t';
  };
  text.erase(text.begin(), std::ranges::find_if_not(text, isBlank));
  while (!text.empty() && isBlank(text.back())) {
    text.pop_back();
  }
  return text;
}

/// Returns the settings of a text, or nothing if the text is not allowed.
std::optional<Model> modelOf(std::string text) {
  if (text.size() > LargestText) {
    return std::nullopt;
  }
  if (text.starts_with("\xEF\xBB\xBF")) {
    text.erase(0, 3);
  }
  Model model;
  std::set<std::string> keys;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) {
    if (line.ends_with('\r')) {
      line.pop_back();
    }
    if (line.size() > LongestLine || line.find('\0') != std::string::npos) {
      return std::nullopt;
    }
    const std::string content = withoutBlanks(line);
    if (content.empty() || content.front() == '#') {
      continue;
    }
    const std::size_t equals = line.find('=');
    const std::string key = withoutBlanks(line.substr(0, equals));
    if (equals == std::string::npos || !keys.insert(key).second) {
      return std::nullopt;
    }
    if (key == "password") {
      model.password = line.substr(equals + 1);
      continue;
    }
    try {
      model.options.set(key, withoutBlanks(line.substr(equals + 1)), "option");
    } catch (const ProfileError&) {
      return std::nullopt;
    }
  }
  if (model.password && keys.contains("password-from")) {
    return std::nullopt;
  }
  return model;
}

/// Reads a text. Returns true if the text is allowed. Otherwise checks the error and returns false.
bool isRead(ProfileReader& reader, const std::string& text, bool mayHoldPassword) {
  try {
    reader.readText(text, Name, mayHoldPassword);
    return true;
  } catch (const ProfileError& error) {
    fuzz::require(error.subject.starts_with(Name));
    fuzz::require(error.subject.find_first_of(std::string("\n\0\x1B", 3)) == std::string::npos);
    fuzz::require(error.expected != nullptr);
    const bool isSecret =
        error.subject.ends_with(": password") || error.subject.ends_with(": password-from");
    fuzz::require(!isSecret || error.got.empty());
    return false;
  }
}

/// Returns the settings if they fit each other.
std::optional<Profile> finished(const ProfileReader& reader) {
  try {
    return reader.finish();
  } catch (const ProfileError&) {
    return std::nullopt;
  }
}

session::Secret secretFor(const Profile& profile, const SecretSource& source) {
  if (source.kind == SecretSource::Kind::Inline) {
    return source.secret;
  }
  if (!session::needsSecret(profile)) {
    return {};
  }
  return session::Secret(profile.security == Security::Wep ? "abcde" : "secret88");
}

void requirePackets(Profile profile, const SecretSource& source) {
  fuzz::require(!profile.ssid.empty() && profile.ssid.size() <= 32 && profile.user.size() <= 31);
  profile.secret = secretFor(profile, source);
  fuzz::require(session::checkSecret(profile, profile.secret.text()) == nullptr);
  std::vector<npa::Bytes> packets;
  const fuzz::Output output = fuzz::outputOf([&] {
    const auto settings = session::configurationOf(profile, "/dev/usb/lp3");
    wnpaGenerator generator(settings.get());
    generator.setServerValidation(true);
    packets = generator.advancedPackets();
  });
  fuzz::require(output.out.empty());
  fuzz::require(packets.size() == (profile.security == Security::Enterprise ? 2U : 1U));
  for (const npa::Bytes& packet : packets) {
    fuzz::require(packet.size() > 7 && packet.at(0) == 0xA5);
    fuzz::require(packet.size() == packet.at(1) * 256U + packet.at(2) + 3);
  }
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text = fuzz::textOf(data, size);
  const std::optional<Model> model = modelOf(text);

  ProfileReader shared;
  fuzz::require(isRead(shared, text, false) == (model && !model->password));
  ProfileReader reader;
  fuzz::require(isRead(reader, text, true) == model.has_value());
  if (!model) {
    return 0;
  }
  const std::optional<Profile> profile = finished(reader);
  if (model->password) {
    fuzz::require(reader.secretSource().secret.text() == *model->password);
    fuzz::require(!profile || profile == finished(model->options));
  } else {
    fuzz::require(reader.secretSource() == model->options.secretSource());
    fuzz::require(profile == finished(model->options));
  }
  if (profile) {
    requirePackets(*profile, reader.secretSource());
  }
  return 0;
}
