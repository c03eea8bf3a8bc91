// zvkwifi with several printers at the same time.

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "e2e/wifi_document.h"
#include "testing/files.h"
#include "testing/printer_run.h"
#include "testing/process.h"

namespace {

using support::ProcessResult;
using Json = nlohmann::json;
using Words = std::vector<std::string>;

/// The script that starts all printers but the first, runs a command and stops these printers. Its
/// arguments are the options of each printer, each ended by "--", and then "++" and the command.
constexpr const char* Script = R"(
number=0
while [ "$1" != ++ ]; do
  number=$((number + 1))
  options=
  while [ "$1" != -- ]; do
    options="$options $1"
    shift
  done
  shift
  "$ZVKPRINTER" serve --show-secrets --link=/dev/usb/lp$number $options >/dev/null &
  printers="$printers $!"
  while ! [ -e /dev/usb/lp$number ]; do sleep 0.1; done
done
shift
"$@"
status=$?
kill $printers
exit $status)";

/// Several emulated printers at /dev/usb/lp0, /dev/usb/lp1 and so on.
class Printers {
 public:
  /// `options` has the options of each printer. The constructor adds --log to them.
  explicit Printers(const std::vector<Words>& options) {
    for (const Words& words : options) {
      const std::string number = std::to_string(m_Paths.size());
      m_Paths.push_back("/dev/usb/lp" + number);
      m_Options.push_back(words);
      m_Options.back().push_back("--log=" + m_Folder.path("log" + number));
    }
  }

  /// Returns a command line that starts the printers and runs `program` with `arguments` and the
  /// paths of all printers.
  Words command(const Words& arguments, const Words& program = {ZVKWIFI}) const {
    Words words = {ZVKPRINTER, "run", "--show-secrets"};
    append(words, m_Options.front());
    append(words, {"--", "env", "ZVKPRINTER=" ZVKPRINTER, "sh", "-c", Script, "sh"});
    for (auto options = m_Options.begin() + 1; options != m_Options.end(); ++options) {
      append(words, *options);
      words.emplace_back("--");
    }
    words.emplace_back("++");
    append(words, program);
    append(words, arguments);
    append(words, m_Paths);
    return support::withFasterClock(words);
  }

  /// Sets all printers up for the network "home".
  ProcessResult setHome(Words options) const {
    options.insert(options.begin(),
                   {"set", "--ssid=home", "--security=wpa", "--password-from=fd:0", "--quiet"});
    return support::runProcess(command(options), "a secret key\n");
  }

  const std::string& path(std::size_t index) const { return m_Paths.at(index); }
  std::string log(std::size_t index) const {
    return support::fileContent(m_Folder.path("log" + std::to_string(index)));
  }

 private:
  static void append(Words& words, const Words& more) {
    words.insert(words.end(), more.begin(), more.end());
  }

  support::TemporaryFolder m_Folder;
  Words m_Paths;
  std::vector<Words> m_Options;
};

/// Skips the tests if the system does not permit a private /dev/usb, in which the test can create
/// several printers.
class SeveralPrinters : public testing::Test {
 protected:
  void SetUp() override {
    const auto run =
        support::runProcess({ZVKPRINTER, "run", "--log=/dev/null", "--", "echo", "{}"});
    if (run.out != "/dev/usb/lp0\n") {
      GTEST_SKIP() << "The system permits no private devices.";
    }
  }
};

/// Returns the process IDs of the children of a process. Returns an empty list if the process has
/// ended.
std::vector<pid_t> childrenOf(pid_t parent) {
  const std::string id = std::to_string(parent);
  std::ifstream text("/proc/" + id + "/task/" + id + "/children");
  std::vector<pid_t> children;
  for (pid_t child = 0; text >> child;) {
    children.push_back(child);
  }
  return children;
}

/// Returns the process of zvkwifi that has the argument `word` and has workers, or 0 if there is
/// none. A worker has the same arguments but no children.
pid_t programWith(std::string_view word) {
  for (const auto& entry : std::filesystem::directory_iterator("/proc")) {
    std::ifstream file(entry.path() / "cmdline", std::ios::binary);
    std::string argument;
    bool found = false;
    const bool isProgram = std::getline(file, argument, '\0') && argument == ZVKWIFI;
    while (isProgram && std::getline(file, argument, '\0')) {
      found = found || argument == word;
    }
    if (found) {
      const pid_t process = std::stoi(entry.path().filename());
      if (!childrenOf(process).empty()) {
        return process;
      }
    }
  }
  return 0;
}

std::vector<Json> documentsIn(const std::string& text) {
  std::vector<Json> documents;
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) {
    documents.push_back(parsedDocument(line + "\n"));
  }
  return documents;
}

TEST_F(SeveralPrinters, AreInOneDocumentInTheOrderOfTheArguments) {
  const Printers printers({{"--silent"}, {"--ssid=old"}, {"--result=00"}});
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

TEST_F(SeveralPrinters, HaveADocumentEachWhenTheyAreDone) {
  const Printers printers({{"--silent"}, {"--ssid=home"}});
  const ProcessResult result = printers.setHome({"--json-lines"});
  EXPECT_EQ(result.status, 9);
  const std::vector<Json> documents = documentsIn(result.out);
  ASSERT_EQ(documents.size(), 2U);
  EXPECT_EQ(documents[0].at("printers").size(), 1U);
  EXPECT_EQ(documents[0].at("printers").at(0).at("result"), "unchanged");
  EXPECT_EQ(documents[1].at("printers").at(0).at("result"), "no-answer");
}

TEST_F(SeveralPrinters, GetTheSameSecret) {
  const Printers printers({{"--ssid=old"}, {"--ssid=old"}, {"--refuse-wrapped"}});
  const ProcessResult result = printers.setHome({});
  EXPECT_EQ(result.status, 0) << result.err;
  for (std::size_t i = 0; i < 3; ++i) {
    EXPECT_NE(printers.log(i).find("pre-shared key = \"a secret key\""), std::string::npos) << i;
    EXPECT_NE(result.out.find(printers.path(i) + " is in the network \"home\""), std::string::npos)
        << result.out;
  }
  EXPECT_EQ(std::ranges::count(result.out, '\n'), 3);
}

TEST(DryRun, PrintsADocumentForEachPrinterWithJsonLines) {
  const ProcessResult result =
      support::runProcess({ZVKWIFI, "set", "--dry-run", "--json-lines", "--ssid=home",
                           "--security=open", "/dev/usb/lp0", "/dev/usb/lp1"});
  EXPECT_EQ(result.status, 0) << result.err;
  const std::vector<Json> documents = documentsIn(result.out);
  ASSERT_EQ(documents.size(), 2U) << result.out;
  for (std::size_t i = 0; i < documents.size(); ++i) {
    ASSERT_EQ(documents[i].at("printers").size(), 1U);
    EXPECT_EQ(documents[i].at("printers").at(0).at("device"), "/dev/usb/lp" + std::to_string(i));
    EXPECT_EQ(documents[i].at("printers").at(0).at("result"), "dry-run");
  }
}

TEST_F(SeveralPrinters, AreNamedInTheirErrors) {
  const Printers printers({{"--silent"}, {"--ssid=home"}});
  const ProcessResult result = support::runProcess(printers.command({"status", "--quiet"}));
  EXPECT_EQ(result.status, 9);
  EXPECT_TRUE(result.err.starts_with("zvkwifi: " + printers.path(0) + ": The adapter does not"))
      << result.err;
  EXPECT_TRUE(result.out.starts_with("Printer:         " + printers.path(1) + "\n")) << result.out;
  EXPECT_TRUE(result.out.ends_with("\n\n")) << result.out;
}

TEST_F(SeveralPrinters, AreAllDoneIfNoneFails) {
  const Printers printers({{"--ssid=home"}, {"--ssid=home"}});
  const ProcessResult result = support::runProcess(printers.command({"status", "--json"}));
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.err, "");
  EXPECT_EQ(parsedDocument(result.out).at("printers").size(), 2U);
}

TEST_F(SeveralPrinters, EndInOrderAfterASignal) {
  for (const int signal : {SIGTERM, SIGHUP}) {
    const Printers printers({{"--ssid=old", "--ip-after=1000"}, {"--ssid=old", "--ip-after=1000"}});
    support::TerminalProcess program(
        printers.command({"set", "--ssid=home", "--security=open", "--wait=601", "--json-lines"}));
    ASSERT_TRUE(program.waitFor("0 of 2 printers are done"));
    ASSERT_TRUE(support::eventually([&] {
      return printers.log(0).find("query, wrapped: IP address") != std::string::npos &&
             printers.log(1).find("query, wrapped: IP address") != std::string::npos;
    }));
    pid_t parent = 0;
    ASSERT_TRUE(support::eventually([&] { return (parent = programWith("--wait=601")) > 0; }));
    ::kill(parent, signal);
    EXPECT_EQ(program.waitForEnd(), 128 + signal);
    const std::string shown = program.shown();
    const std::size_t first = shown.find("\"result\":\"interrupted\"");
    ASSERT_NE(first, std::string::npos) << shown;
    EXPECT_NE(shown.find("\"result\":\"interrupted\"", first + 1), std::string::npos) << shown;
  }
}

TEST_F(SeveralPrinters, DoNotSufferIfAWorkerDies) {
  const Printers printers({{"--ssid=old", "--ip-after=1000"}, {"--ssid=home"}});
  support::TerminalProcess program(
      printers.command({"set", "--ssid=home", "--security=open", "--wait=602", "--json-lines"}));
  ASSERT_TRUE(program.waitFor("\"result\":\"unchanged\"")) << program.shown();
  std::vector<pid_t> workers;
  ASSERT_TRUE(support::eventually([&] {
    const pid_t parent = programWith("--wait=602");
    workers = parent > 0 ? childrenOf(parent) : std::vector<pid_t>();
    return workers.size() == 1;
  }));
  ::kill(workers.front(), SIGKILL);
  EXPECT_EQ(program.waitForEnd(), 9);
  EXPECT_NE(program.shown().find("\"result\":\"failed\""), std::string::npos) << program.shown();
}

TEST_F(SeveralPrinters, AreAllServedAndReportedIfStandardOutputIsFull) {
  const Printers printers({{"--ssid=home"}, {"--ssid=old"}});
  const ProcessResult result =
      support::runProcess(printers.command({"set", "--ssid=home", "--security=open", "--quiet"},
                                           {"sh", "-c", "exec \"$0\" \"$@\" >/dev/full", ZVKWIFI}));
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.out, "");
  for (const char* const text : {"/dev/usb/lp0 was in the network \"home\" already",
                                 "/dev/usb/lp1 is in the network \"home\"",
                                 "zvkwifi: standard output: No space left on device\n"}) {
    EXPECT_NE(result.err.find(text), std::string::npos) << result.err;
  }
}

TEST_F(SeveralPrinters, AreNotServedIfOneIsNamedTwice) {
  const Printers printers({{"--ssid=old"}});
  const ProcessResult result = printers.setHome({printers.path(0)});
  EXPECT_EQ(result.status, 2);
  EXPECT_NE(result.err.find("was named already"), std::string::npos) << result.err;
  EXPECT_EQ(printers.log(0), "");
}

TEST_F(SeveralPrinters, AreNotServedWithOptionsForOne) {
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
