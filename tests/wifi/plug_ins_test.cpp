#include "wifi/plug_ins.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace {

using namespace std::chrono_literals;

using session::Printer;
using wifi::PlugIns;
using End = PlugIns::End;
using Names = std::vector<std::string>;

const PlugIns::Time Start = PlugIns::Time() + 1000h;

Printer printer(const std::string& serial, const std::string& address, int lp = 0) {
  return {.device = "/dev/usb/lp" + std::to_string(lp),
          .node = {},
          .address = address,
          .serial = serial};
}

Printer withoutSerial(const std::string& address, const std::string& port = "1-1") {
  Printer result = printer("", address);
  result.serial.reset();
  result.port = port;
  return result;
}

Printer withoutSerialOrDriver(const std::string& address, const std::string& port = "1-1") {
  Printer result = withoutSerial(address, port);
  result.device = address;
  return result;
}

Names namesOf(const std::vector<Printer>& printers) {
  Names names;
  for (const Printer& printer : printers) {
    names.push_back(printer.serial.value_or(printer.device));
  }
  return names;
}

/// A station and its clock.
class Bench {
 public:
  explicit Bench(const std::vector<Printer>& present = {}, PlugIns::Rules rules = {})
      : m_PlugIns(present, rules, Start) {}

  /// Returns the names of the printers that are ready `after` the last decision.
  Names ready(std::chrono::milliseconds after, const std::vector<Printer>& printers) {
    m_Now += after;
    m_Decision = m_PlugIns.decide(printers, m_Now);
    return namesOf(m_Decision.ready);
  }

  /// Plugs in a printer and sets it up, so that its work ends as `end`.
  void serve(const Printer& printer, End end) {
    EXPECT_EQ(ready(0s, {printer}), Names{});
    EXPECT_EQ(ready(1s, {printer}), namesOf({printer}));
    finish(printer, end);
  }

  void finish(const Printer& printer, End end) { m_PlugIns.finish(printer, end, m_Now); }

  const PlugIns& plugIns() const { return m_PlugIns; }
  const PlugIns::Decision& decision() const { return m_Decision; }
  PlugIns::Time now() const { return m_Now; }

 private:
  PlugIns::Time m_Now = Start;
  PlugIns m_PlugIns;
  PlugIns::Decision m_Decision;
};

TEST(PlugIns, AreReadyAfterHalfASecondWithTheDriver) {
  Bench bench;
  const Printer a = printer("A", "1:2");
  EXPECT_EQ(bench.ready(1h, {a}), Names{});
  EXPECT_EQ(bench.decision().next, bench.now() + 500ms);
  EXPECT_EQ(bench.ready(499ms, {a}), Names{});
  EXPECT_EQ(bench.ready(1ms, {a}), Names{"A"});
  EXPECT_EQ(bench.decision().next, std::nullopt);
  EXPECT_EQ(bench.ready(1h, {a}), Names{});
}

TEST(PlugIns, WaitForTheDriver) {
  Bench bench;
  Printer a = printer("A", "1:2");
  a.device = "1:2";
  EXPECT_EQ(bench.ready(0s, {a}), Names{});
  EXPECT_EQ(bench.ready(2999ms, {a}), Names{});
  a.device = "/dev/usb/lp0";
  EXPECT_EQ(bench.ready(1ms, {a}), Names{});
  EXPECT_EQ(bench.ready(500ms, {a}), Names{"A"});
}

TEST(PlugIns, AreReadyWithoutADriverAfterThreeSeconds) {
  Bench bench;
  Printer a = printer("A", "1:2");
  a.device = "1:2";
  EXPECT_EQ(bench.ready(0s, {a}), Names{});
  EXPECT_EQ(bench.ready(3s, {a}), Names{"A"});
}

TEST(PlugIns, AreNoPrintersThatWereThereBefore) {
  const Printer a = printer("A", "1:2");
  Bench bench({a});
  EXPECT_EQ(bench.ready(1h, {a}), Names{});
  EXPECT_EQ(bench.ready(0s, {}), Names{});
  bench.serve(printer("A", "1:3"), End::Done);
}

TEST(PlugIns, AreIndependentOfEachOther) {
  Bench bench;
  const Printer a = printer("A", "1:2");
  const Printer b = printer("B", "1:3", 1);
  EXPECT_EQ(bench.ready(0s, {a}), Names{});
  EXPECT_EQ(bench.ready(400ms, {a, b}), Names{});
  EXPECT_EQ(bench.ready(100ms, {a, b}), Names{"A"});
  EXPECT_EQ(bench.decision().next, bench.now() + 400ms);
  EXPECT_EQ(bench.ready(400ms, {a, b}), Names{"B"});
}

TEST(PlugIns, StartAgainIfThePrinterWasGoneBeforeItWasReady) {
  Bench bench;
  EXPECT_EQ(bench.ready(0s, {printer("A", "1:2")}), Names{});
  EXPECT_EQ(bench.ready(400ms, {}), Names{});
  EXPECT_EQ(bench.ready(200ms, {printer("A", "1:3")}), Names{});
  EXPECT_EQ(bench.ready(500ms, {printer("A", "1:3")}), Names{"A"});
}

TEST(PlugIns, AreNotNewIfThePrinterRestartsDuringTheWork) {
  for (const End end : {End::Done, End::Unconfirmed}) {
    Bench bench;
    const Printer a = printer("A", "1:2");
    EXPECT_EQ(bench.ready(0s, {a}), Names{});
    EXPECT_EQ(bench.ready(1s, {a}), Names{"A"});
    EXPECT_EQ(bench.ready(5s, {}), Names{});
    EXPECT_EQ(bench.ready(5s, {printer("A", "1:3")}), Names{});
    bench.finish(a, end);
    EXPECT_EQ(bench.ready(1h, {printer("A", "1:3")}), Names{});
    EXPECT_TRUE(bench.decision().done.empty());
  }
}

TEST(PlugIns, AreNotNewIfThePrinterRestartsAfterTheWork) {
  Bench bench({}, {.force = true});
  bench.serve(printer("A", "1:2"), End::Done);
  EXPECT_EQ(bench.ready(1s, {}), Names{});
  EXPECT_EQ(bench.ready(28s, {printer("A", "1:3")}), Names{});
  EXPECT_EQ(bench.ready(1h, {printer("A", "1:3")}), Names{});
}

TEST(PlugIns, OfADonePrinterAreReportedOnceAfterThirtySeconds) {
  Bench bench;
  bench.serve(printer("A", "1:2"), End::Done);
  EXPECT_EQ(bench.ready(1s, {}), Names{});
  const std::vector<Printer> again = {printer("A", "1:3")};
  EXPECT_EQ(bench.ready(29s, again), Names{});
  EXPECT_TRUE(bench.decision().done.empty());
  EXPECT_EQ(bench.ready(1s, again), Names{});
  EXPECT_EQ(namesOf(bench.decision().done), Names{"A"});
  EXPECT_EQ(bench.ready(1s, again), Names{});
  EXPECT_TRUE(bench.decision().done.empty());
}

TEST(PlugIns, OfADonePrinterAreReadyWithForce) {
  Bench bench({}, {.force = true});
  bench.serve(printer("A", "1:2"), End::Done);
  EXPECT_EQ(bench.ready(30s, {}), Names{});
  bench.serve(printer("A", "1:3"), End::Failed);
  EXPECT_EQ(bench.plugIns().doneCount(), 0U);
  EXPECT_EQ(bench.plugIns().failedCount(), 1U);
}

TEST(PlugIns, OfAFailedPrinterAreReadyAtOnce) {
  Bench bench;
  bench.serve(printer("A", "1:2"), End::Failed);
  EXPECT_EQ(bench.plugIns().failedCount(), 1U);
  EXPECT_EQ(bench.ready(1h, {printer("A", "1:2")}), Names{});
  EXPECT_EQ(bench.ready(1s, {}), Names{});
  bench.serve(printer("A", "1:3"), End::Done);
  EXPECT_EQ(bench.plugIns().failedCount(), 0U);
  EXPECT_EQ(bench.plugIns().doneCount(), 1U);
}

TEST(PlugIns, DuringAFailedWorkAreReadyAfterIt) {
  Bench bench;
  const Printer a = printer("A", "1:2");
  EXPECT_EQ(bench.ready(0s, {a}), Names{});
  EXPECT_EQ(bench.ready(1s, {a}), Names{"A"});
  EXPECT_EQ(bench.ready(1s, {}), Names{});
  EXPECT_EQ(bench.ready(1s, {printer("A", "1:3")}), Names{});
  EXPECT_EQ(bench.ready(9s, {printer("A", "1:3")}), Names{});
  bench.finish(a, End::Failed);
  EXPECT_EQ(bench.ready(0s, {printer("A", "1:3")}), Names{"A"});
}

TEST(PlugIns, OfAnUnconfirmedPrinterAreReadyIfItWasWaitedForLongEnough) {
  for (const bool waitedLong : {false, true}) {
    Bench bench({}, {.waited = waitedLong ? 30s : 5s});
    bench.serve(printer("A", "1:2"), End::Unconfirmed);
    EXPECT_EQ(bench.plugIns().failedCount(), 1U);
    EXPECT_EQ(bench.ready(0s, {}), Names{});
    EXPECT_EQ(bench.ready(20s, {printer("A", "1:3")}), Names{});
    EXPECT_EQ(bench.ready(1s, {printer("A", "1:3")}), waitedLong ? Names{"A"} : Names{});
  }
}

TEST(PlugIns, AreNotNewIfOnlyTheInterfacesWereSetUpAgain) {
  Bench bench;
  const Printer a = printer("A", "1:2");
  bench.serve(a, End::Failed);
  EXPECT_EQ(bench.ready(1h, {}), Names{});
  EXPECT_EQ(bench.ready(1999ms, {a}), Names{});
  EXPECT_EQ(bench.ready(1h, {a}), Names{});
  // The kernel has used all addresses once.
  EXPECT_EQ(bench.ready(0s, {}), Names{});
  EXPECT_EQ(bench.ready(2s, {a}), Names{});
  EXPECT_EQ(bench.ready(1s, {a}), Names{"A"});
}

TEST(PlugIns, WithoutASerialNumberAreAlwaysNew) {
  for (const End end : {End::Done, End::Unconfirmed, End::Failed}) {
    Bench bench;
    bench.serve(withoutSerial("1:2"), end);
    EXPECT_EQ(bench.ready(1s, {}), Names{});
    bench.serve(withoutSerial("1:3"), end);
    EXPECT_EQ(bench.plugIns().doneCount() + bench.plugIns().failedCount(), 2U);
  }
}

TEST(PlugIns, WithoutASerialNumberAreNotNewIfThePrinterRestartsDuringTheWork) {
  for (const auto& at : {withoutSerial, withoutSerialOrDriver}) {
    Bench bench;
    EXPECT_EQ(bench.ready(0s, {at("1:2", "1-1")}), Names{});
    EXPECT_EQ(bench.ready(3s, {at("1:2", "1-1")}).size(), 1U);
    EXPECT_EQ(bench.ready(5s, {}), Names{});
    EXPECT_EQ(bench.ready(5s, {at("1:3", "1-1")}), Names{});
    EXPECT_EQ(bench.ready(5s, {at("1:3", "1-1")}), Names{});
    bench.finish(at("1:2", "1-1"), End::Done);
    EXPECT_EQ(bench.ready(1h, {at("1:3", "1-1")}), Names{});
  }
}

TEST(PlugIns, WithoutASerialNumberAreRestartsAtTheSamePortWithForce) {
  for (const auto& at : {withoutSerial, withoutSerialOrDriver}) {
    Bench bench({}, {.force = true});
    EXPECT_EQ(bench.ready(0s, {at("1:2", "1-1")}), Names{});
    EXPECT_EQ(bench.ready(3s, {at("1:2", "1-1")}).size(), 1U);
    bench.finish(at("1:2", "1-1"), End::Done);
    EXPECT_EQ(bench.ready(1s, {}), Names{});
    EXPECT_EQ(bench.ready(28s, {at("1:3", "1-1")}), Names{});
    EXPECT_EQ(bench.ready(3s, {at("1:3", "1-1"), at("1:4", "1-2")}), Names{});
    // The printer at another port is a new one.
    EXPECT_EQ(bench.ready(3s, {at("1:3", "1-1"), at("1:4", "1-2")}), namesOf({at("1:4", "1-2")}));
    EXPECT_EQ(bench.ready(1s, {}), Names{});
    EXPECT_EQ(bench.ready(1s, {at("1:5", "1-1")}), Names{});
    EXPECT_EQ(bench.ready(3s, {at("1:5", "1-1")}).size(), 1U);
  }
}

TEST(PlugIns, WithASerialNumberLikeAPortAreOtherPrinters) {
  Bench bench;
  const Printer a = printer("1-1", "1:2", 1);
  const Printer b = withoutSerial("1:3", "1-1");
  EXPECT_EQ(bench.ready(0s, {a, b}), Names{});
  EXPECT_EQ(bench.ready(1s, {a, b}), (Names{"1-1", "/dev/usb/lp0"}));
}

TEST(PlugIns, WithTheSameSerialNumberAreTheSamePrinter) {
  Bench bench;
  const Printer a = printer("A", "1:2");
  const Printer twin = printer("A", "1:3", 1);
  EXPECT_EQ(bench.ready(0s, {a, twin}), Names{});
  EXPECT_EQ(bench.ready(1s, {a, twin}), Names{"A"});
  EXPECT_EQ(bench.ready(1s, {a, twin}), Names{});
  // After the first is gone, the second is taken for it.
  bench.finish(a, End::Done);
  EXPECT_EQ(bench.ready(1h, {twin}), Names{});
  EXPECT_EQ(bench.ready(1h, {twin}), Names{});
  EXPECT_EQ(namesOf(bench.decision().done), Names{"A"});
}

}  // namespace
