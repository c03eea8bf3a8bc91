// The station with a double of the monitor, in a tree of files that looks like /sys. The station
// ends with a signal, which stays noted until the process ends, so each station runs in a separate
// process.

#include "wifi/station.h"

#include <cstdio>
#include <cstdlib>
#include <deque>
#include <filesystem>
#include <fstream>
#include <functional>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

#include "testing/files.h"
#include "testing/sysfs_tree.h"
#include "util/unique_fd.h"
#include "wifi/signals.h"

namespace {

using session::Report;
using session::Result;
using wifi::Arguments;
using wifi::PrinterCommand;
using Json = nlohmann::json;

/// One step of a script. Returns false as long as the step is not done.
using Step = std::function<bool()>;
using Steps = std::deque<Step>;

/// A monitor whose events are the steps of a script. It does a step each time the station looks for
/// events. After the last step it ends the station.
class ScriptedMonitor : public wifi::UsbMonitor {
 public:
  explicit ScriptedMonitor(Steps steps) : m_Steps(std::move(steps)) {}

  int descriptor() const override { return -1; }
  bool takeEvents() override {
    if (m_Steps.empty()) {
      ::raise(SIGTERM);
      return false;
    }
    if (m_Steps.front()()) {
      m_Steps.pop_front();
    }
    return true;
  }

 private:
  Steps m_Steps;
};

class Station : public testing::Test {
 protected:
  /// The result of a station.
  struct Ended {
    int status;
    std::string out;
    std::string err;
  };

  /// Runs a station in a separate process. Each printer's work ends as `work` says.
  Ended run(Steps steps, const Arguments& arguments,
            const std::function<Result(const std::string& serial)>& work) const {
    const std::string out = m_Folder.path("out");
    const std::string err = m_Folder.path("err");
    const pid_t process = ::fork();
    if (process == 0) {
      const bool redirected = std::freopen(out.c_str(), "w", stdout) != nullptr &&
                              std::freopen(err.c_str(), "w", stderr) != nullptr;
      ScriptedMonitor monitor(std::move(steps));
      const PrinterCommand command = {.fields = wifi::Fields::Set, .run = {}, .text = wordOf};
      const int status =
          wifi::runStation(arguments, withWork(command, work), monitor, tree.machine());
      std::fflush(nullptr);
      ::_exit(redirected ? status : 99);
    }
    int status = 0;
    ::waitpid(process, &status, 0);
    return {WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status),
            support::fileContent(out), support::fileContent(err)};
  }

  /// Returns a step that plugs in a printer.
  Step plugIn(int n, const std::string& serial) const {
    return [this, n, serial] {
      tree.addUsblpPrinter(n, serial, "");
      return true;
    };
  }

  /// Returns a step that is done when the work on `count` printers has started.
  Step workStarted(std::size_t count) const {
    return [this, count] {
      return support::fileContent(m_Folder.path("started")).size() >= count;
    };
  }

  support::SysfsTree tree;

 private:
  static std::string wordOf(const Report& report) {
    return report.result == Result::Skipped ? "skipped\n" : "confirmed\n";
  }

  /// The worker opens no device: `session::Session` only carries the printer.
  PrinterCommand withWork(PrinterCommand command,
                          const std::function<Result(const std::string&)>& work) const {
    command.run = [this, work](session::Session& session) {
      Report report = session.reset();  // fails: there is no such device
      report.openFailure.reset();
      report.sentReset = false;
      std::ofstream(m_Folder.path("started"), std::ios::app) << "x";
      report.result = work(report.printer.serial.value_or(""));
      return report;
    };
    return command;
  }

  support::TemporaryFolder m_Folder;
};

Result confirmed(const std::string& /*serial*/) {
  return Result::Confirmed;
}

Result failsForB(const std::string& serial) {
  return serial == "B" ? Result::NoAnswer : Result::Confirmed;
}

std::vector<Json> documentsIn(const std::string& text) {
  std::vector<Json> documents;
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) {
    documents.push_back(Json::parse(line));
  }
  return documents;
}

TEST_F(Station, WithoutPrintersPrintsTheSummary) {
  const Ended ended = run({}, {}, confirmed);
  EXPECT_EQ(ended.status, 0);
  EXPECT_EQ(ended.out, "Done: 0, failed: 0, skipped: 0.\n");
  EXPECT_EQ(ended.err, "Plug in the printers, one or several at a time. Ctrl-C ends.\n");
}

TEST_F(Station, SetsUpThePrintersThatArePluggedIn) {
  tree.addUsblpPrinter(1, "old", "");
  const Ended ended =
      run({plugIn(2, "A"), workStarted(1), plugIn(3, "C"), workStarted(2)}, {}, confirmed);
  EXPECT_EQ(ended.status, 0);
  EXPECT_EQ(ended.out, "A: confirmed\nC: confirmed\nDone: 2, failed: 0, skipped: 0.\n");
}

TEST_F(Station, ReportsAFailureAndEndsWithNine) {
  const Ended ended = run({plugIn(2, "A"), plugIn(3, "B"), workStarted(2)}, {}, failsForB);
  EXPECT_EQ(ended.status, 9);
  EXPECT_EQ(ended.out, "A: confirmed\nDone: 1, failed: 1, skipped: 0.\n");
  EXPECT_NE(ended.err.find("zvkwifi: B: The adapter does not answer."), std::string::npos)
      << ended.err;
}

TEST_F(Station, PrintsADocumentALineAndTheSummary) {
  Arguments arguments;
  arguments.json = arguments.jsonLines = arguments.quiet = true;
  const Ended ended =
      run({plugIn(2, "A"), workStarted(1), plugIn(3, "B"), workStarted(2)}, arguments, failsForB);
  EXPECT_EQ(ended.status, 9);
  EXPECT_EQ(ended.err, "");
  const auto documents = documentsIn(ended.out);
  ASSERT_EQ(documents.size(), 3U) << ended.out;
  EXPECT_EQ(documents[0]["printers"][0]["serial"], "A");
  EXPECT_EQ(documents[0]["printers"][0]["result"], "confirmed");
  EXPECT_EQ(documents[1]["printers"][0]["serial"], "B");
  EXPECT_EQ(documents[1]["printers"][0]["result"], "no-answer");
  EXPECT_EQ(documents[2], Json::parse(R"({"schema": 1, "printers": [],
    "summary": {"done": 1, "failed": 1, "skipped": 0}})"));
}

TEST_F(Station, PrintsOneDocumentAtTheEnd) {
  Arguments arguments;
  arguments.json = true;
  const Ended ended =
      run({plugIn(2, "A"), workStarted(1), plugIn(3, "C"), workStarted(2)}, arguments, confirmed);
  const auto documents = documentsIn(ended.out);
  ASSERT_EQ(documents.size(), 1U) << ended.out;
  EXPECT_EQ(documents[0]["printers"].size(), 2U);
  EXPECT_EQ(documents[0]["summary"]["done"], 2);
}

TEST_F(Station, InterruptsTheWorkAtTheEnd) {
  const auto interruptible = [](const std::string& /*serial*/) {
    while (wifi::Interruption::signal() == 0) {
      ::pause();
    }
    return Result::Interrupted;
  };
  Arguments arguments;
  const Ended ended = run({plugIn(2, "A"), workStarted(1)}, arguments, interruptible);
  EXPECT_EQ(ended.status, 9);
  EXPECT_EQ(ended.out, "Done: 0, failed: 1, skipped: 0.\n");
  EXPECT_NE(ended.err.find("zvkwifi: A: Interrupted."), std::string::npos) << ended.err;
}

}  // namespace
