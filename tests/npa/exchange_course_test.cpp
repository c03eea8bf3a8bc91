// The course of each exchange that checks its reply: calls, pauses, buffer sizes and attempts.

#include <cerrno>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "testing/checked_exchange.h"
#include "testing/rows.h"

using support::Bytes;
using support::bytes;
using support::CheckedExchange;
using virtual_system::Second;
using Events = std::vector<std::string>;

namespace {

struct CourseRow : support::Row {
  int (sendConfig::*operation)(unsigned char*, int);
  std::size_t bufferSize;
  std::vector<std::string> attempt;  ///< the events of each attempt
  int attempts;
  std::vector<std::string> between;  ///< the events between two attempts
  const char* good;                  ///< a reply for which the exchange returns 0
  int resultOfSilence;
};

class ExchangeCourse : public CheckedExchange, public testing::WithParamInterface<CourseRow> {
 protected:
  /// Returns the events of `count` attempts.
  static Events attempts(int count) {
    Events events;
    for (int attempt = 1; attempt <= count; ++attempt) {
      const CourseRow& row = GetParam();
      events.insert(events.end(), row.attempt.begin(), row.attempt.end());
      if (attempt < count) {
        events.insert(events.end(), row.between.begin(), row.between.end());
      }
    }
    return events;
  }
};

}  // namespace

TEST_P(ExchangeCourse, MakesOneAttemptIfItSucceeds) {
  answer({bytes(GetParam().good)});
  EXPECT_EQ(run(GetParam().operation), 0);
  EXPECT_EQ(system.events, attempts(1));
  EXPECT_EQ(device.writes, std::vector<Bytes>{bytes("A5 00 06")});
}

TEST_P(ExchangeCourse, MakesEveryAttemptIfThePrinterIsSilent) {
  EXPECT_EQ(run(GetParam().operation), GetParam().resultOfSilence);
  EXPECT_EQ(system.events, attempts(GetParam().attempts));
  EXPECT_EQ(device.writes,
            std::vector<Bytes>(static_cast<std::size_t>(GetParam().attempts), bytes("A5 00 06")));
  EXPECT_EQ(device.opens, device.closes);
  EXPECT_EQ(printed, "");
}

TEST_P(ExchangeCourse, SucceedsInTheLastAttempt) {
  std::vector<Bytes> replies(static_cast<std::size_t>(GetParam().attempts) - 1);
  replies.push_back(bytes(GetParam().good));
  answer(replies);
  EXPECT_EQ(run(GetParam().operation), 0);
  EXPECT_EQ(system.events, attempts(GetParam().attempts));
}

TEST_P(ExchangeCourse, ReadsOnceInEachAttempt) {
  run(GetParam().operation);
  EXPECT_EQ(device.readSizes,
            std::vector<std::size_t>(static_cast<std::size_t>(GetParam().attempts),
                                     GetParam().bufferSize));
}

TEST_P(ExchangeCourse, ContinuesIfTheDeviceCannotBeOpened) {
  for (const int error : {ENOENT, EACCES, EBUSY}) {
    system.sleeps.clear();
    device.opens = 0;
    device.openErrno = error;
    const auto start = system.now();
    EXPECT_EQ(run(GetParam().operation), GetParam().resultOfSilence);
    EXPECT_EQ(device.opens, GetParam().attempts);
    // The exchange still pauses, but its reads fail immediately.
    virtual_system::Microseconds paused = 0;
    for (const unsigned int pause : system.sleeps) {
      paused += pause * Second;
    }
    EXPECT_EQ(system.now() - start, paused);
  }
  EXPECT_EQ(system.selects, 0);
}

TEST_P(ExchangeCourse, WritesTheRestOfARequestAfterAShortWrite) {
  answer({bytes(GetParam().good)});
  device.onWrite = [this](const Bytes& piece) {
    if (piece == bytes("06")) {
      device.reply(bytes(GetParam().good));
    }
  };
  device.writeResult = [](std::size_t) {
    return 1;
  };
  EXPECT_EQ(run(GetParam().operation), 0);
  EXPECT_EQ(device.writes, (std::vector<Bytes>{bytes("A5"), bytes("00"), bytes("06")}));
}

INSTANTIATE_TEST_SUITE_P(Operations, ExchangeCourse,
                         testing::Values(CourseRow{{"SetConfig"},
                                                   &sendConfig::setConfig,
                                                   1000,
                                                   {"open", "write", "sleep 5", "read", "close"},
                                                   1,
                                                   {},
                                                   "01",
                                                   -1},
                                         CourseRow{{"ResetIna"},
                                                   &sendConfig::resetINA,
                                                   255,
                                                   {"open", "write", "sleep 5", "read", "close"},
                                                   2,
                                                   {"sleep 50"},
                                                   "01",
                                                   1},
                                         CourseRow{{"GetAdapterDescriptor"},
                                                   &sendConfig::getAdapterDescriptor,
                                                   255,
                                                   {"open", "write", "read", "close"},
                                                   6,
                                                   {"sleep 10"},
                                                   "2D",
                                                   1},
                                         CourseRow{{"GetTroubleCode"},
                                                   &sendConfig::getTroubleCode,
                                                   255,
                                                   {"open", "write", "sleep 2", "read", "close"},
                                                   4,
                                                   {},
                                                   "00",
                                                   1},
                                         CourseRow{{"GetSsid"},
                                                   &sendConfig::getSSID,
                                                   512,
                                                   {"open", "write", "sleep 2", "read", "close"},
                                                   7,
                                                   {},
                                                   "A5 00 06 50 E0 00",
                                                   1},
                                         CourseRow{{"GetIp"},
                                                   &sendConfig::getIP,
                                                   255,
                                                   {"open", "write", "sleep 3", "read", "close"},
                                                   7,
                                                   {},
                                                   "C0 A8 01 14",
                                                   1}),
                         support::rowName);
