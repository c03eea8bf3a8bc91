// zvkwifi with several printers at the same time.

#include <algorithm>
#include <csignal>
#include <deque>
#include <filesystem>
#include <gtest/gtest.h>
#include <sstream>
#include <string>
#include <vector>

#include "e2e/wifi_document.h"
#include "testing/files.h"
#include "testing/printer_run.h"
#include "testing/process.h"

namespace {

using support::ProcessResult;
using Json = nlohmann::json;
using Words = std::vector<std::string>;

/// Printers that run at the same time as the test.
class Printers {
 public:
  /// Starts a printer with these options.
  void add(const Words& options) {
    const std::string number = std::to_string(m_Paths.size());
    m_Paths.push_back(m_Folder.path("lp" + number));
    m_Logs.push_back(m_Folder.path("log" + number));
    Words command = {ZVKPRINTER, "serve", "--show-secrets", "--link=" + m_Paths.back(),
                     "--log=" + m_Logs.back()};
    command.insert(command.end(), options.begin(), options.end());
    m_Processes.emplace_back(support::withFasterClock(command));
    EXPECT_TRUE(support::eventually([&] { return std::filesystem::exists(m_Paths.back()); }));
  }

  /// Returns a command line of zvkwifi with all printers at its end.
  Words command(Words arguments) const {
    arguments.insert(arguments.begin(), ZVKWIFI);
    arguments.insert(arguments.end(), m_Paths.begin(), m_Paths.end());
    return support::withFasterClock(support::supervised(arguments));
  }

  /// Sets all printers up for the network "home".
  ProcessResult setHome(Words options) const {
    options.insert(options.begin(),
                   {"set", "--ssid=home", "--security=wpa", "--password-from=fd:0", "--quiet"});
    return support::runProcess(command(options), "a secret key\n");
  }

  const std::string& path(std::size_t index) const { return m_Paths.at(index); }
  std::string log(std::size_t index) const { return support::fileContent(m_Logs.at(index)); }

 private:
  support::TemporaryFolder m_Folder;
  Words m_Paths;
  Words m_Logs;
  std::deque<support::BackgroundProcess> m_Processes;
};

std::vector<Json> documentsIn(const std::string& text) {
  std::vector<Json> documents;
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) {
    documents.push_back(parsedDocument(line + "\n"));
  }
  return documents;
}

TEST(SeveralPrinters, AreInOneDocumentInTheOrderOfTheArguments) {
  Printers printers;
  printers.add({"--silent"});
  printers.add({"--ssid=old"});
  printers.add({"--refuse-all"});
  const ProcessResult result = printers.setHome({"--json"});
  EXPECT_EQ(result.status, 9);
  EXPECT_EQ(result.err, "");
  const Json entries = parsedDocument(result.out).at("printers");
  ASSERT_EQ(entries.size(), 3U);
  constexpr const char* results[] = {"no-answer", "confirmed", "refused"};
  for (std::size_t i = 0; i < entries.size(); ++i) {
    EXPECT_EQ(entries[i].at("device"), printers.path(i));
    EXPECT_EQ(entries[i].at("result"), results[i]);
    EXPECT_EQ(entries[i].at("error").is_null(), i == 1) << i;
  }
}

TEST(SeveralPrinters, HaveADocumentEachWhenTheyAreDone) {
  Printers printers;
  printers.add({"--silent"});
  printers.add({"--ssid=home"});
  const ProcessResult result = printers.setHome({"--json-lines"});
  EXPECT_EQ(result.status, 9);
  const std::vector<Json> documents = documentsIn(result.out);
  ASSERT_EQ(documents.size(), 2U);
  EXPECT_EQ(documents[0].at("printers").size(), 1U);
  EXPECT_EQ(documents[0].at("printers").at(0).at("result"), "unchanged");
  EXPECT_EQ(documents[1].at("printers").at(0).at("result"), "no-answer");
}

TEST(SeveralPrinters, GetTheSameSecret) {
  Printers printers;
  printers.add({"--ssid=old"});
  printers.add({"--ssid=old"});
  printers.add({"--refuse-wrapped"});
  const ProcessResult result = printers.setHome({});
  EXPECT_EQ(result.status, 0) << result.err;
  for (std::size_t i = 0; i < 3; ++i) {
    EXPECT_NE(printers.log(i).find("pre-shared key = \"a secret key\""), std::string::npos) << i;
    EXPECT_NE(result.out.find(printers.path(i) + " is in the network \"home\""), std::string::npos)
        << result.out;
  }
  EXPECT_EQ(std::ranges::count(result.out, '\n'), 3);
}

TEST(SeveralPrinters, AreNamedInTheirErrors) {
  Printers printers;
  printers.add({"--silent"});
  printers.add({"--ssid=home"});
  const ProcessResult result = support::runProcess(printers.command({"status", "--quiet"}));
  EXPECT_EQ(result.status, 9);
  EXPECT_TRUE(result.err.starts_with("zvkwifi: " + printers.path(0) + ": The adapter does not"))
      << result.err;
  EXPECT_TRUE(result.out.starts_with("Printer:         " + printers.path(1) + "\n")) << result.out;
  EXPECT_TRUE(result.out.ends_with("\n\n")) << result.out;
}

TEST(SeveralPrinters, AreAllDoneIfNoneFails) {
  Printers printers;
  printers.add({"--ssid=home"});
  printers.add({"--ssid=home"});
  const ProcessResult result = support::runProcess(printers.command({"status", "--json"}));
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.err, "");
  EXPECT_EQ(parsedDocument(result.out).at("printers").size(), 2U);
}

TEST(SeveralPrinters, EndInOrderAfterASignal) {
  Printers printers;
  printers.add({"--ssid=old", "--ip-after=1000"});
  printers.add({"--ssid=old", "--ip-after=1000"});
  support::TerminalProcess program(
      printers.command({"set", "--ssid=home", "--security=open", "--wait=600", "--json-lines"}));
  ASSERT_TRUE(program.waitFor("0 of 2 printers are done"));
  ASSERT_TRUE(support::eventually([&] {
    return printers.log(0).find("query, wrapped: IP address") != std::string::npos &&
           printers.log(1).find("query, wrapped: IP address") != std::string::npos;
  }));
  ::kill(program.pid(), SIGTERM);
  EXPECT_EQ(program.waitForEnd(), 128 + SIGTERM);
  const std::string shown = program.shown();
  const std::size_t first = shown.find("\"result\":\"interrupted\"");
  ASSERT_NE(first, std::string::npos) << shown;
  EXPECT_NE(shown.find("\"result\":\"interrupted\"", first + 1), std::string::npos) << shown;
}

/// Returns the processes whose parent is `parent`.
std::vector<pid_t> childrenOf(pid_t parent) {
  const std::string id = std::to_string(parent);
  std::istringstream text(support::fileContent("/proc/" + id + "/task/" + id + "/children"));
  std::vector<pid_t> children;
  for (pid_t child = 0; text >> child;) {
    children.push_back(child);
  }
  return children;
}

TEST(SeveralPrinters, DoNotSufferIfAWorkerDies) {
  Printers printers;
  printers.add({"--ssid=old", "--ip-after=1000"});
  printers.add({"--ssid=home"});
  support::TerminalProcess program(
      printers.command({"set", "--ssid=home", "--security=open", "--wait=600", "--json-lines"}));
  ASSERT_TRUE(program.waitFor("\"result\":\"unchanged\"")) << program.shown();
  const std::vector<pid_t> workers = childrenOf(program.pid());
  ASSERT_EQ(workers.size(), 1U);
  ::kill(workers.front(), SIGKILL);
  EXPECT_EQ(program.waitForEnd(), 9);
  EXPECT_NE(program.shown().find("\"result\":\"failed\""), std::string::npos) << program.shown();
}

TEST(SeveralPrinters, AreNotServedIfOneIsNamedTwice) {
  Printers printers;
  printers.add({"--ssid=old"});
  const ProcessResult result = printers.setHome({printers.path(0)});
  EXPECT_EQ(result.status, 2);
  EXPECT_NE(result.err.find("was named already"), std::string::npos) << result.err;
  EXPECT_EQ(printers.log(0), "");
}

TEST(SeveralPrinters, AreNotServedWithOptionsForOne) {
  for (const Words& words : {Words{"--trace=/dev/null", "/dev/usb/lp0", "/dev/usb/lp1"},
                             Words{"--verbose", "--all"}, Words{"--all", "/dev/usb/lp0"}}) {
    Words command = {ZVKWIFI, "status"};
    command.insert(command.end(), words.begin(), words.end());
    const ProcessResult result = support::runProcess(command);
    EXPECT_EQ(result.status, 2) << words.front();
    EXPECT_NE(result.err.find("expected"), std::string::npos) << result.err;
  }
}

}  // namespace
