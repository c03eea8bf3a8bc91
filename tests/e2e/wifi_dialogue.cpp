#include "e2e/wifi_dialogue.h"

#include <clocale>
#include <cstdlib>
#include <sys/stat.h>
#include <utility>

#include "testing/printer_run.h"

namespace e2e {

bool isHidden(std::string_view question) {
  return question.starts_with("Passphrase") || question.starts_with("Password") ||
         question.starts_with("WEP key");
}

std::string utf8Locale() {
  constexpr const char* other = "en_US.UTF-8";
  const locale_t locale = ::newlocale(LC_ALL_MASK, other, nullptr);
  if (locale == nullptr) {
    return "C.UTF-8";
  }
  ::freelocale(locale);
  return other;
}

Dialogue::Dialogue(const Words& options, const std::string& nmcli, const Words& program,
                   const Words& variables) {
  const std::string script = m_Folder.write("nmcli", "#!/bin/sh\n" + nmcli);
  ::chmod(script.c_str(), S_IRWXU);
  // When the first process on the terminal ends, the terminal drops the output that has not been
  // read yet. So the first process is a shell that waits for a last line of input.
  Words command = {"sh",
                   "-c",
                   "trap : INT; \"$@\"; status=$?; echo '(ended)'; read x; exit $status",
                   "sh",
                   "env",
                   "LC_ALL=" + utf8Locale(),
                   "PATH=" + m_Folder.path("") + ":" + std::getenv("PATH")};
  const auto add = [&command](const Words& words) {
    command.insert(command.end(), words.begin(), words.end());
  };
  add(variables);
  Words printer = {ZVKPRINTER, "run", "--show-secrets", "--ssid=old",
                   "--log=" + m_Folder.path("log")};
  printer.insert(printer.end(), options.begin(), options.end());
  printer.push_back("--");
  printer.insert(printer.end(), program.begin(), program.end());
  add(support::withFasterClock(printer));
  m_Terminal.emplace(command);
}

bool Dialogue::waitFor(const char* question) {
  return m_Terminal->waitForNext(question) &&
         (!isHidden(question) || support::eventually([&] { return !m_Terminal->echoes(); }));
}

int Dialogue::waitForEnd() {
  EXPECT_TRUE(m_Terminal->waitForNext("(ended)"));
  m_Terminal->type("\n");
  return m_Terminal->waitForEnd();
}

testing::AssertionResult Dialogue::answer(const Lines& lines) {
  for (const Line& line : lines) {
    if (!waitFor(line.question)) {
      return testing::AssertionFailure() << "no \"" << line.question << "\" in:\n"
                                         << m_Terminal->shown();
    }
    if (line.answer) {
      m_Terminal->type(*line.answer + "\n");
    }
  }
  return testing::AssertionSuccess();
}

bool Dialogue::hasShown(std::string_view text) const {
  return m_Terminal->shown().find(text) != std::string::npos;
}

Lines joined(Lines first, const Lines& second) {
  first.insert(first.end(), second.begin(), second.end());
  return first;
}

}  // namespace e2e
