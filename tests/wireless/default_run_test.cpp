#include <gtest/gtest.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

#include "testing/basic_batch.h"
#include "testing/generator.h"
#include "testing/packets.h"
#include "testing/standard_input.h"

// Tests of `generate`, which is the default run for an unknown switch, and of `reset`.

namespace {

using support::Bytes;
using support::bytes;

using packets::Accepted;
using packets::QueryIp;
using packets::QueryTrouble;
using packets::Refused;
using packets::wrapped;

/// The reply with the trouble code 0.
const Bytes NoTrouble = bytes("A5 00 03 50 E0 00");
const Bytes Address = bytes("A5 00 06 50 E0 C0 A8 01 14");

const Bytes& BareSettings = basic_batch::Defaults;
const Bytes WrappedSettings = wrapped(BareSettings);

class DefaultRun : public support::Generator {
 protected:
  int run() { return Generator::run(&wnpaGenerator::generate); }
};

TEST_F(DefaultRun, PrintsThePacketConfiguresAndPrintsTheAddress) {
  use({});
  answer({Accepted, NoTrouble, Address});
  EXPECT_EQ(run(), static_cast<int>(WrappedSettings.size()));
  EXPECT_EQ(output.out,
            "Configuring the printer....\n"
            "Resetting the printer....\n"
            "Connecting to wireless network....Acquiring network address....\n"
            "IP-ADDRESS : 192.168.1.20\n");
  EXPECT_EQ(output.err, basic_batch::settingLines({}) + basic_batch::DefaultsDump +
                            basic_batch::attemptLines({}, 0));
  EXPECT_EQ(device.writes,
            (std::vector<Bytes>{WrappedSettings, wrapped(QueryTrouble), wrapped(QueryIp)}));
  EXPECT_EQ(system.sleeps, (std::vector<unsigned int>{5, 2, 3}));
}

TEST_F(DefaultRun, PrintsItsProgressBeforeEachWait) {
  use({});
  // Standard output is a file here. So the file's size shows only the text that is already flushed.
  std::vector<off_t> shown;
  device.onWrite = [&](const Bytes& /*request*/) {
    struct stat standardOutput {};
    ::fstat(STDOUT_FILENO, &standardOutput);
    shown.push_back(standardOutput.st_size);
    device.reply(shown.size() == 1 ? Accepted : shown.size() == 2 ? NoTrouble : Address);
  };
  run();
  const off_t configuring = 88;
  const off_t acquiring = configuring + 43;
  EXPECT_EQ(shown, (std::vector{configuring, configuring, acquiring}));
}

TEST_F(DefaultRun, RepeatsARefusedConfigurationBareAndStaysBare) {
  use({});
  answer({Refused, Accepted, NoTrouble, Address});
  EXPECT_EQ(run(), static_cast<int>(WrappedSettings.size()));
  EXPECT_FALSE(generator->getWrapMode());
  EXPECT_EQ(device.writes,
            (std::vector<Bytes>{WrappedSettings, BareSettings, QueryTrouble, QueryIp}));
}

TEST_F(DefaultRun, ContinuesIfNothingIsAccepted) {
  use({});
  answer({Refused, Refused, Refused, Refused});
  EXPECT_EQ(run(), static_cast<int>(WrappedSettings.size()));
  EXPECT_EQ(device.writes.size(), 4U);
  EXPECT_TRUE(output.out.ends_with("IP-ADDRESS : ")) << output.out;
}

TEST_F(DefaultRun, DoesNotRepeatAConfigurationThatWasNotAccepted) {
  use({});
  answer({NoTrouble, NoTrouble, Address});
  run();
  EXPECT_TRUE(generator->getWrapMode());
  EXPECT_EQ(device.writes.size(), 3U);
}

TEST_F(DefaultRun, AsksTwiceForAMissingPassword) {
  use({"--security=WPA"});
  answer({Accepted, NoTrouble, Address});
  const support::StandardInput input("one\ntwo\n");
  run();
  EXPECT_TRUE(
      output.out.starts_with("Please provide the password:\n\nConfiguring the printer....\n"))
      << output.out;
  EXPECT_NE(output.err.find("28 11 0 0 4 6f 6e 65 0 D [ZVK] Basic config..."), std::string::npos)
      << output.err;
  EXPECT_EQ(Bytes(device.writes.at(0).end() - 9, device.writes.at(0).end()),
            bytes("28 11 00 00 04 74 77 6F 00"));
}

using Reset = support::DefaultGenerator;

TEST_F(Reset, SendsTheWrappedPacket) {
  answer({Accepted});
  EXPECT_EQ(run(&wnpaGenerator::reset), 0);
  EXPECT_EQ(device.writes, std::vector<Bytes>{wrapped(packets::Reset)});
  EXPECT_EQ(system.sleeps, std::vector<unsigned int>{5});
}

TEST_F(Reset, SendsTheBarePacketWithoutWrapMode) {
  generator->setWrapMode(false);
  answer({Accepted});
  EXPECT_EQ(run(&wnpaGenerator::reset), 0);
  EXPECT_EQ(device.writes, std::vector<Bytes>{packets::Reset});
}

TEST_F(Reset, MakesTwoAttemptsFiftySecondsApart) {
  answer({Refused});
  EXPECT_EQ(run(&wnpaGenerator::reset), 1);
  EXPECT_EQ(device.writes.size(), 2U);
  EXPECT_EQ(system.sleeps, (std::vector<unsigned int>{5, 50, 5}));
}

}  // namespace
