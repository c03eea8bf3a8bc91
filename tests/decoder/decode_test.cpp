#include "decoder/decode.h"

#include <gtest/gtest.h>
#include <string>

#include "decoder/decoded.h"
#include "testing/usb_capture.h"

namespace {

using decoder::nothingFoundText;
using decoder::Options;

TEST(NothingFoundText, ListsTheSupportedInputs) {
  const std::string text =
      "no NPA packet found: looked for hex text, xxd or hexdump -C dumps, logs of zvkconfig and "
      "zvkprinter";
  Options options;
  EXPECT_EQ(nothingFoundText("none", options), text + ", captures (pcap, pcapng)");
  options.form = Options::Form::Text;
  EXPECT_EQ(nothingFoundText("none", options), text);
}

TEST(NothingFoundText, NamesTheDeviceOfTheOptions) {
  const std::string capture = support::UsbCapture().content();
  Options options;
  EXPECT_EQ(nothingFoundText(capture, options),
            "no NPA packet found: looked for bulk transfers of any device in a capture");
  options.device = "1:6";
  EXPECT_EQ(nothingFoundText(capture, options),
            "no NPA packet found: looked for bulk transfers of device 1:6 in a capture");
}

/// A report that discards everything.
class NoReport : public decoder::Report {
 public:
  void beginInput(const std::string& /*name*/) override {}
  void packet(const decoder::Packet& /*packet*/) override {}
  void problem(const decoder::Problem& /*problem*/) override {}
  void unreadable(const std::string& /*reason*/) override {}
};

/// Returns the exit status for inputs. The input "n" has no packet, and the input "u" cannot be
/// read. Every other string is the text of an input.
int statusOf(const std::vector<std::string>& inputs) {
  NoReport none;
  decoder::Tally tally(none);
  for (const std::string& input : inputs) {
    tally.beginInput(input);
    EXPECT_FALSE(tally.hasFound());
    if (input == "u") {
      tally.unreadable("reason");
    } else {
      decoder::decode(input, {}, tally);
    }
    EXPECT_EQ(tally.hasFound(), input != "n") << input;
  }
  return tally.status();
}

TEST(Tally, HasTheStatusOfTheWorstInput) {
  const std::string good = "A5 00 02 D4 E0";
  const std::string cut = "A5 00 02 D4";
  EXPECT_EQ(statusOf({}), 0);
  EXPECT_EQ(statusOf({good, good}), 0);
  EXPECT_EQ(statusOf({good, cut}), 1);
  EXPECT_EQ(statusOf({"u", cut, "n"}), 2);
  EXPECT_EQ(statusOf({"n"}), 3);
  EXPECT_EQ(statusOf({good, "n", good}), 3);
  EXPECT_EQ(statusOf({good + " " + good, "n"}), 3);
  EXPECT_EQ(statusOf({"n", cut}), 1);
}

}  // namespace
