#pragma once

#include <gtest/gtest.h>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "testing/files.h"
#include "testing/process.h"

// Dialogues with zvkwifi on a terminal, with the emulated printer and a script in place of nmcli.

namespace e2e {

using Words = std::vector<std::string>;

// Exit statuses of zvkwifi.
inline constexpr int NothingSent = 2;
inline constexpr int NotConfirmed = 8;

/// The script in place of nmcli. It offers these networks.
inline constexpr const char* Networks =
    "echo ' :neighbour:WPA2:90'\n"
    "echo '*:home:WPA2:60'\n"
    "echo ' :new:WPA3:50'\n"
    "echo ' :office:WPA2 802.1X:40'\n"
    "echo ' :cafe::30'\n";

/// A text that zvkwifi shows, and the answer to it. A text that is not a question has no answer.
struct Line {
  const char* question;
  std::optional<std::string> answer = std::nullopt;
};
using Lines = std::vector<Line>;

/// Returns true if zvkwifi does not show the answer to this question.
bool isHidden(std::string_view question);

/// Returns the name of a locale with UTF-8 in which the C library translates. From glibc 2.41 on it
/// does not translate in C.UTF-8, so this is another locale if the system has one.
std::string utf8Locale();

/// A dialogue with zvkwifi about the printer /dev/usb/lp0.
class Dialogue {
 public:
  /// Starts zvkprinter with these options, and `program` in it. `variables` are settings of the
  /// environment, such as "TERM=dumb".
  explicit Dialogue(const Words& options = {}, const std::string& nmcli = Networks,
                    const Words& program = {ZVKWIFI}, const Words& variables = {});

  support::TerminalProcess& terminal() { return *m_Terminal; }

  /// Waits for a question. If the answer is a secret, also waits until the echo is off.
  bool waitFor(const char* question);

  /// Waits for the end of the program and returns its exit status.
  int waitForEnd();

  /// Waits for each question, and types its answer and the Enter key. Fails if a question is not
  /// asked.
  testing::AssertionResult answer(const Lines& lines);

  /// Returns true if the dialogue has shown the text.
  bool hasShown(std::string_view text) const;

  /// Returns the packets in the printer's log.
  std::string packets() const { return support::fileContent(m_Folder.path("log")); }

  /// Returns true if the printer got settings, and not only queries.
  bool gotSettings() const { return packets().find("store settings") != std::string::npos; }

 private:
  support::TemporaryFolder m_Folder;
  std::optional<support::TerminalProcess> m_Terminal;
};

/// Returns the lines of both dialogues, in order.
Lines joined(Lines first, const Lines& second);

/// The questions before the secret of the offered network "home".
inline const Lines ToSecret = {
    {"Device [/dev/usb/lp0]: ", ""}, {"Number [1]: ", ""}, {"Number [1]: ", ""}};

/// The dialogue that puts the printer into the network "home".
inline const Lines WholeDialogue =
    joined(ToSecret, {{"Passphrase or key: ", "a secret 1"}, {"Send now? [y/N] ", "y"}});

}  // namespace e2e
