// The station with a double of the monitor, in a tree of files that looks like /sys. The station
// ends with a signal, which stays noted until the process ends, so each station runs in a separate
// process.

#include "wifi/station.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <deque>
#include <fcntl.h>
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
#include "wifi/console.h"
#include "wifi/results.h"
#include "wifi/signals.h"

namespace {
/// While this is true, no pipe can be created.
bool pipesFail = false;
}  // namespace

// NOLINTBEGIN(bugprone-reserved-identifier,cert-dcl37-c)
extern "C" {
int __real_pipe2(int* ends, int flags);

int __wrap_pipe2(int* ends, int flags) {
  if (pipesFail) {
    errno = EMFILE;
    return -1;
  }
  return __real_pipe2(ends, flags);
}
}
// NOLINTEND(bugprone-reserved-identifier,cert-dcl37-c)

namespace {

using session::Report;
using session::Result;
using wifi::Arguments;
using wifi::PrinterCommand;
using Json = nlohmann::json;

/// One step of a script.
struct Step {
  std::function<bool()> run;  ///< returns false as long as the step is not done
  bool isEvent = false;       ///< the monitor reports the step
};
using Steps = std::deque<Step>;

/// A monitor whose events are the steps of a script. Each time the station looks for events, it
/// does the next steps, up to an event or a step that is not done. After the last step it ends the
/// station.
class ScriptedMonitor : public wifi::UsbMonitor {
 public:
  explicit ScriptedMonitor(Steps steps) : m_Steps(std::move(steps)) {}

  int descriptor() const override { return -1; }
  bool takeEvents() override {
    while (!m_Steps.empty() && m_Steps.front().run()) {
      const bool isEvent = m_Steps.front().isEvent;
      m_Steps.pop_front();
      if (isEvent) {
        return true;
      }
    }
    if (m_Steps.empty()) {
      ::raise(SIGTERM);
    }
    return false;
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
      ::alarm(60);  // ends a station whose script does not end
      const bool redirected = std::freopen(out.c_str(), "w", stdout) != nullptr &&
                              std::freopen(err.c_str(), "w", stderr) != nullptr;
      ScriptedMonitor monitor(std::move(steps));
      const PrinterCommand command = {.fields = wifi::Fields::Set, .run = {}, .text = wordOf};
      const int status = statusOf([&] {
        return wifi::runStation(arguments, withWork(command, work), monitor, tree.machine());
      });
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
    return {[this, n, serial] {
              tree.addUsblpPrinter(n, serial, "");
              return true;
            },
            true};
  }

  /// Returns a step that is done when the work on `count` printers has started.
  Step workStarted(std::size_t count) const {
    return {[this, count] {
      return support::fileContent(m_Folder.path("started")).size() >= count;
    }};
  }

  /// Returns a step that is done when the station has written `text` to standard error.
  Step printed(const std::string& text) const {
    return {[this, text] {
      std::fflush(stderr);
      return support::fileContent(m_Folder.path("err")).find(text) != std::string::npos;
    }};
  }

  support::SysfsTree tree;

 private:
  static std::string wordOf(const Report& report) {
    return report.result == Result::Skipped ? "skipped\n" : "confirmed\n";
  }

  static int statusOf(const std::function<int()>& station) {
    try {
      return station();
    } catch (const wifi::OutputError&) {
      return wifi::StatusInternalError;
    }
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

TEST_F(Station, StartsTheWorkAsSoonAsThePrinterIsReady) {
  using Clock = std::chrono::steady_clock;
  const support::TemporaryFolder folder;
  const std::string times = folder.path("times");
  const auto noteTime = [times] {
    std::ofstream(times, std::ios::app) << Clock::now().time_since_epoch().count() << "\n";
    return true;
  };
  Steps steps;
  constexpr int count = 5;
  for (int n = 1; n <= count; ++n) {
    steps.push_back({.run = noteTime});
    steps.push_back(plugIn(n, std::to_string(n)));
    steps.push_back(workStarted(static_cast<std::size_t>(n)));
  }
  const Ended ended = run(steps, {}, [&](const std::string& /*serial*/) {
    noteTime();
    return Result::Confirmed;
  });
  EXPECT_EQ(ended.status, 0);
  std::istringstream lines(support::fileContent(times));
  Clock::duration shortest = std::chrono::hours(1);
  int pairs = 0;
  for (Clock::rep plugged = 0, started = 0; lines >> plugged >> started; ++pairs) {
    shortest = std::min(shortest, Clock::duration(started - plugged));
  }
  EXPECT_EQ(pairs, count);
  // The station looks for signals once a second. It must not wait that long here. On a busy machine
  // some of the starts may be late, but not all.
  EXPECT_GE(shortest, std::chrono::milliseconds(500));
  EXPECT_LT(shortest, std::chrono::milliseconds(1000));
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

TEST_F(Station, GoesOnIfTheWorkOnAPrinterCannotStart) {
  const auto setPipes = [](bool fail) {
    return Step{.run = [fail] {
      pipesFail = fail;
      return true;
    }};
  };
  const Ended ended = run({setPipes(true), plugIn(2, "A"), printed("zvkwifi: A"), setPipes(false),
                           plugIn(3, "B"), workStarted(1)},
                          {}, confirmed);
  EXPECT_EQ(ended.status, 9);
  EXPECT_EQ(ended.out, "B: confirmed\nDone: 1, failed: 1, skipped: 0.\n");
  EXPECT_NE(ended.err.find("zvkwifi: A: pipe: Too many open files\nNothing was sent.\n"),
            std::string::npos)
      << ended.err;
}

TEST_F(Station, EndsWithAllResultsIfStandardOutputIsFull) {
  const Step fillUp = {.run = [] {
    const util::UniqueFd full(::open("/dev/full", O_WRONLY | O_CLOEXEC));
    return ::dup2(full.get(), STDOUT_FILENO) == STDOUT_FILENO;
  }};
  // The work on A ends after the work on B has started. The work on B ends with the station.
  const auto together = [this](const std::string& serial) {
    const Step bothStarted = workStarted(2);
    while (serial == "A" ? !bothStarted.run() : wifi::Interruption::signal() == 0) {
      ::usleep(1000);
    }
    return serial == "A" ? Result::Confirmed : Result::Interrupted;
  };
  const Step never = {.run = [] {
    return false;
  }};
  const Ended ended = run({plugIn(2, "A"), plugIn(3, "B"), fillUp, never}, {}, together);
  EXPECT_EQ(ended.status, 1);
  EXPECT_EQ(ended.out, "");
  EXPECT_NE(ended.err.find("A: confirmed\n"), std::string::npos) << ended.err;
  EXPECT_NE(ended.err.find("zvkwifi: B: Interrupted."), std::string::npos) << ended.err;
  EXPECT_NE(ended.err.find("Done: 1, failed: 1, skipped: 0.\n"), std::string::npos) << ended.err;
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
