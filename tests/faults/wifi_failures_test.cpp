// Runs commands of the whole zvkwifi program many times. In each run the n-th call of one kind
// fails, or the printer is disconnected at another byte. Every command runs both with text and with
// JSON as its output.

#include <CLI/Version.hpp>
#include <algorithm>
#include <array>
#include <cerrno>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include "faults/disconnecting_printer.h"
#include "testing/rows.h"
#include "util/output.h"

/// The program's `main`. The build renames it for the tests.
int wifiMain(int argc, char** argv);

namespace faults {
namespace {

using support::Fault;
using Json = nlohmann::json;
using Plan = support::FaultInjection::Plan;
using Words = std::vector<std::string>;

/// A command of zvkwifi.
struct WifiCommand : support::Row {
  Words arguments;
  std::vector<int> statuses;  ///< every exit status that the command may end with
  double longestSeconds;
};

// A command may end with 1 only if memory runs out. It never ends with 9, because it works on one
// printer.
const std::vector<WifiCommand>& wifiCommands() {
  static const std::vector<WifiCommand> all = {
      {{"Status"}, {"status"}, {0, 3, 4, 5, 6, 7}, 120},
      // If the secret cannot be read, the status is 2.
      {{"Set"},
       {"set", "--ssid=hall", "--security=wpa", "--password-from=fd:0", "--wait=20"},
       {0, 2, 3, 4, 5, 6, 7, 8},
       200},
      {{"Reset"}, {"reset"}, {0, 3, 4, 5, 6, 7}, 120},
      {{"CertList"}, {"cert", "list"}, {0, 3, 4, 5, 6, 7}, 120},
  };
  return all;
}

enum class Form { AsText, AsJson };

constexpr std::array Calls = {"open", "close", "read", "write", "select"};
constexpr std::array Faults = {
    Fault{"EINTR", EINTR},   Fault{"EAGAIN", EAGAIN}, Fault{"EIO", EIO},
    Fault{"ENODEV", ENODEV}, Fault{"EACCES", EACCES}, Fault{"EBUSY", EBUSY},
    Fault{"nothing", 0, 0},  Fault{"one byte", 0, 1},
};

class WifiFailures : public testing::TestWithParam<std::tuple<WifiCommand, Form>> {
 protected:
  ~WifiFailures() override { RecordProperty("runs", m_Runs); }

  const WifiCommand& command() const { return std::get<0>(GetParam()); }
  bool isJson() const { return std::get<1>(GetParam()) == Form::AsJson; }

  Outcome run(FailureRig& rig, const Plan& plan = FailureRig::NoFailure) {
    Words words = {"zvkwifi"};
    words.insert(words.end(), command().arguments.begin(), command().arguments.end());
    words.insert(words.end(), {isJson() ? "--json" : "--quiet", "--quiet", "/dev/usb/lp0"});
    const Outcome outcome = rig.run(wifiMain, words, "long enough\n", plan);
    // The program has set the library's output to an object that no longer exists.
    util::setOutput(nullptr);
    ++m_Runs;
    return outcome;
  }

  /// Expects that the run ended by itself, in time, with a status of the command, with nothing left
  /// open, and with either a result or one error.
  void expectOrderlyEnd(const FailureRig& rig, const Outcome& outcome) const {
    EXPECT_TRUE(outcome.ended);
    EXPECT_LE(outcome.seconds, command().longestSeconds);
    EXPECT_EQ(std::ranges::count(command().statuses, outcome.status), 1) << outcome.status;
    EXPECT_EQ(outcome.openDevices, 0);
    EXPECT_EQ(outcome.openDescriptors, 0);
    expectOneMessage(outcome);
    const std::string all = outcome.output.out + outcome.output.err;
    if (outcome.status == 2 || all.find("Nothing was stored") != std::string::npos) {
      EXPECT_TRUE(rig.printer.adapter.settings().stored().empty()) << all;
    }
  }

 private:
  void expectOneMessage(const Outcome& outcome) const {
    const auto& [out, err] = outcome.output;
    const bool succeeded = outcome.status == 0;
    if (isJson()) {
      EXPECT_EQ(err, "");
      ASSERT_TRUE(Json::accept(out)) << out;
      const Json document = Json::parse(out);
      const Json& printers = document.at("printers");
      const Json& entry = printers.empty() ? document : printers.at(0);
      ASSERT_EQ(entry.at("error").is_null(), succeeded) << out;
      EXPECT_TRUE(succeeded || !entry.at("error").at("remedy").get<std::string>().empty()) << out;
      return;
    }
    EXPECT_EQ(out.empty(), !succeeded) << out;
    if (succeeded) {
      EXPECT_EQ(err, "");
    } else {
      // The message and the remedy.
      EXPECT_TRUE(err.starts_with("zvkwifi: ")) << err;
      EXPECT_EQ(std::ranges::count(err, '\n'), 2) << err;
    }
  }

  int m_Runs = 0;
};

TEST_P(WifiFailures, OfASystemCallEndTheRunInOrder) {
  for (const char* call : Calls) {
    for (const Fault& fault : Faults) {
      for (const bool lasting : {false, true}) {
        if (lasting && fault.error == EINTR && std::string_view(command().name) == "Set") {
          continue;  // The program repeats an interrupted read of the secret until it succeeds.
        }
        bool reached = true;
        for (int n = 1; reached && !HasFailure(); ++n) {
          SCOPED_TRACE(std::string(call) + (lasting ? " from call " : " at call ") +
                       std::to_string(n) + ": " + fault.name);
          FailureRig rig(Wiring::Usblp);
          const Outcome outcome =
              run(rig, {.call = call, .fault = fault, .first = n, .lasting = lasting});
          expectOrderlyEnd(rig, outcome);
          reached = rig.wasReached;
        }
      }
    }
  }
}

// These tests run only with text as output. With JSON, the destructor of nlohmann-json allocates
// memory, and a failure of this allocation would abort the program.
class WifiAllocations : public WifiFailures {};

TEST_P(WifiAllocations, ThatFailEndTheRunWithAMessage) {
  FailureRig faultless(Wiring::Usblp);
  const Outcome usual = run(faultless, {.call = "new", .fault = {"", 0}, .first = 0});
  const int total = faultless.callCount;
  int unnoticed = 0;
  // Reading the command line makes thousands of similar allocations. The test lets only a sample of
  // them fail, but each of the last 500 allocations of the run.
  constexpr int later = 500;
  constexpr int step = 29;
  // CLI11 2.4 allocates memory in functions that must not throw, so there a failure aborts. The
  // last allocations of the run are after the command line has been read.
  constexpr bool abortsInParser = CLI11_VERSION_MAJOR > 2 || CLI11_VERSION_MINOR >= 4;
  constexpr int afterParser = 60;
  for (int n = abortsInParser ? total - afterParser : 1; n <= total && !HasFailure();
       n += n < total - later ? step : 1) {
    SCOPED_TRACE(std::to_string(n) + " of " + std::to_string(total));
    FailureRig rig(Wiring::Usblp);
    const Outcome outcome = run(rig, {.call = "new", .fault = {"no memory", ENOMEM}, .first = n});
    EXPECT_EQ(outcome.openDevices, 0);
    EXPECT_EQ(outcome.openDescriptors, 0);
    if (outcome.status == usual.status && outcome.output.out == usual.output.out) {
      ++unnoticed;
      continue;
    }
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.output.out, "");
    EXPECT_EQ(outcome.output.err, "zvkwifi: Out of memory.\n");
  }
  // CLI11 can do without a few of its allocations.
  EXPECT_LE(unnoticed, 3);
}

TEST_P(WifiFailures, OfThePrinterAtAnyByteEndTheRunInOrder) {
  DisconnectingPrinter faultless(Wiring::Usblp, {});
  EXPECT_EQ(run(faultless.rig).status, 0);
  for (std::size_t i = 0; i < faultless.sizes.size(); ++i) {
    const Size& size = faultless.sizes[i];
    if (size.request == 0) {
      continue;  // The program only checked whether the printer can be opened.
    }
    for (const bool inRequest : {true, false}) {
      for (const std::size_t bytes : positions(inRequest ? size.request - 1 : size.reply)) {
        for (const bool returns : {false, true}) {
          const Moment moment{static_cast<int>(i) + 1, inRequest, bytes, returns};
          SCOPED_TRACE(describe(moment));
          DisconnectingPrinter printer(Wiring::Usblp, moment);
          const Outcome outcome = run(printer.rig);
          expectOrderlyEnd(printer.rig, outcome);
          if (HasFailure()) {
            return;
          }
        }
      }
    }
  }
}

constexpr auto commandAndForm = [](const auto& test) {
  return commandName(test) + (std::get<1>(test.param) == Form::AsJson ? "Json" : "Text");
};

INSTANTIATE_TEST_SUITE_P(Usblp, WifiFailures,
                         testing::Combine(testing::ValuesIn(wifiCommands()),
                                          testing::Values(Form::AsText, Form::AsJson)),
                         commandAndForm);

INSTANTIATE_TEST_SUITE_P(Usblp, WifiAllocations,
                         testing::Combine(testing::ValuesIn(wifiCommands()),
                                          testing::Values(Form::AsText)),
                         commandAndForm);

}  // namespace
}  // namespace faults
