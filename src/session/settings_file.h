#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <sys/types.h>

namespace session {

// A settings file has one setting per line:
//
//     # the network of the office
//     ssid = office
//     security = wpa
//     password=two words
//
// Lines end with LF or CRLF. Blanks around key and value do not count. The value of `password` is
// an exception: it is everything after the "=". "#" starts a comment only at the start of a line. A
// byte order mark at the start of the file is skipped.

/// The largest size in bytes of a file, and of a line without its line end.
inline constexpr std::size_t LargestSettingsFile = 65536;
inline constexpr std::size_t LongestSettingLine = 4096;

/// One setting of a file.
struct SettingLine {
  std::string subject;     ///< for errors: "office.conf:3: ssid"
  std::string_view key;    ///< without blanks
  std::string_view value;  ///< everything after the "="
};

/// Calls `take` for each setting of the text. Throws `ProfileError` for a text or a line that is
/// too long, a line without "=", and a zero byte. `name` names the file in errors.
void forEachSetting(std::string_view text, const std::string& name,
                    const std::function<void(const SettingLine& line)>& take);

/// Returns the text without blanks and tabs at both ends.
[[nodiscard]] std::string_view trimmed(std::string_view text);

/// The content of a file.
struct SettingsFile {
  std::string text;  ///< in heap memory; cut after `LargestSettingsFile` + 1 bytes
  bool isPrivate = false;
};

/// Reads a file. Throws `ProfileError` if it cannot be read or is not a regular file. Never waits
/// for the other end of a named pipe.
[[nodiscard]] SettingsFile loadSettingsFile(const std::string& path);

/// Returns true if `mode` gives no permission to the group or to others, and `owner` is `user` or,
/// if `user` is root, the user who called sudo. `sudoUser` is the value of SUDO_UID, or null.
[[nodiscard]] bool isPrivateFile(mode_t mode, uid_t owner, uid_t user, const char* sudoUser);

}  // namespace session
