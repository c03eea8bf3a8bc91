// Settings files: opening, reading, and taking them apart into lines.

#include "session/settings_file.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstdlib>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "session/profile.h"
#include "session/translatable.h"
#include "util/unique_fd.h"

namespace session {

namespace {

constexpr std::string_view Blanks = " \t";
constexpr std::string_view ByteOrderMark = "\xEF\xBB\xBF";
/// Errors show a key only if it has at most this many characters. Every valid key is shorter.
constexpr std::size_t LongestShownKey = 20;

constexpr const char* ReadableSettings = translatable("a settings file that can be read");

void requireRegular(const std::string& path, const struct stat& status) {
  if (!S_ISREG(status.st_mode)) {
    throw ProfileError(path, "", translatable("a regular file with settings"));
  }
}

void requireSize(std::size_t size, const std::string& name) {
  if (size > LargestSettingsFile) {
    throw ProfileError(name, "", translatable("a settings file of at most 65536 bytes"));
  }
}

/// Returns true if errors may show the text as a key. Other text may be a secret in the wrong
/// place.
bool looksLikeKey(std::string_view text) {
  return !text.empty() && text.size() <= LongestShownKey && std::ranges::all_of(text, [](char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '-' || c == '_';
  });
}

/// Removes the next line from the text and returns the line without its line end.
std::string_view takeLine(std::string_view& text) {
  std::string_view line = text.substr(0, text.find('\n'));
  text.remove_prefix(std::min(line.size() + 1, text.size()));
  if (line.ends_with('\r')) {
    line.remove_suffix(1);
  }
  return line;
}

}  // namespace

std::string_view trimmed(std::string_view text) {
  const std::size_t start = text.find_first_not_of(Blanks);
  if (start == std::string_view::npos) {
    return {};
  }
  return text.substr(start, text.find_last_not_of(Blanks) - start + 1);
}

void forEachSetting(std::string_view text, const std::string& name,
                    const std::function<void(const SettingLine& line)>& take) {
  requireSize(text.size(), name);
  if (text.starts_with(ByteOrderMark)) {
    text.remove_prefix(ByteOrderMark.size());
  }
  for (int number = 1; !text.empty(); ++number) {
    const std::string_view line = takeLine(text);
    std::string subject = name + ":" + std::to_string(number);
    if (line.size() > LongestSettingLine) {
      throw ProfileError(subject, "", translatable("a line of at most 4096 bytes"));
    }
    if (line.find('\0') != std::string_view::npos) {
      throw ProfileError(subject, "", translatable("text without zero bytes"));
    }
    const std::string_view content = trimmed(line);
    if (content.empty() || content.starts_with('#')) {
      continue;
    }
    const std::size_t equals = line.find('=');
    if (equals == std::string_view::npos) {
      throw ProfileError(subject, "", translatable("a line KEY=VALUE"));
    }
    const std::string_view key = trimmed(line.substr(0, equals));
    if (looksLikeKey(key)) {
      subject.append(": ").append(key);
    }
    take({std::move(subject), key, line.substr(equals + 1)});
  }
}

SettingsFile loadSettingsFile(const std::string& path) {
  // The kind of file is checked before the file is opened, because opening a device can change its
  // state.
  struct stat status = {};
  if (::stat(path.c_str(), &status) != 0) {
    throw ProfileError::ofLastCall(path, ReadableSettings);
  }
  requireRegular(path, status);
  const util::UniqueFd file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
  if (!file || ::fstat(file.get(), &status) != 0) {
    throw ProfileError::ofLastCall(path, ReadableSettings);
  }
  requireRegular(path, status);

  SettingsFile content;
  content.isPrivate =
      isPrivateFile(status.st_mode, status.st_uid, ::geteuid(), std::getenv("SUDO_UID"));
  content.text.resize(LargestSettingsFile + 1);
  std::size_t size = 0;
  while (size < content.text.size()) {
    const ssize_t count =
        ::read(file.get(), content.text.data() + size, content.text.size() - size);
    if (count == 0) {
      break;
    }
    if (count > 0) {
      size += static_cast<std::size_t>(count);
    } else if (errno != EINTR) {
      throw ProfileError::ofLastCall(path, ReadableSettings);
    }
  }
  content.text.resize(size);
  return content;
}

bool isPrivateFile(mode_t mode, uid_t owner, uid_t user, const char* sudoUser) {
  constexpr uid_t root = 0;
  if ((mode & (S_IRWXG | S_IRWXO)) != 0) {
    return false;
  }
  if (owner == user) {
    return true;
  }
  uid_t caller = root;
  const std::string_view text = sudoUser == nullptr ? "" : sudoUser;
  const auto [rest, error] = std::from_chars(text.data(), text.data() + text.size(), caller);
  return user == root && error == std::errc() && rest == text.data() + text.size() &&
         owner == caller;
}

}  // namespace session
