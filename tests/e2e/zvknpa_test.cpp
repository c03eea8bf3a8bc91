#include <fcntl.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <vector>

#include "npa/packet.h"
#include "testing/bytes.h"
#include "testing/files.h"
#include "testing/printer_run.h"
#include "testing/process.h"
#include "testing/rows.h"
#include "testing/usb_capture.h"

// The real zvknpa decodes logs of the real zvkconfig and of the emulated printer.

namespace {

using support::lines;
using support::ProcessResult;
using support::runProcess;
using Words = std::vector<std::string>;

ProcessResult zvknpa(const Words& arguments, std::string_view input = {}) {
  Words command = {ZVKNPA};
  command.insert(command.end(), arguments.begin(), arguments.end());
  return runProcess(support::supervised(command), input);
}

/// Returns the standard error of a run: the logs of both programs.
std::string bothLogs(const Words& options, const Words& arguments) {
  const ProcessResult result =
      runProcess(support::withFasterClock(support::printerCommand(options, arguments)));
  EXPECT_NE(result.status, 125) << result.err;
  return result.err;
}

/// Returns the standard error of a run without the lines of the emulated printer.
std::string ownLog(Words options, const Words& arguments) {
  options.insert(options.begin(), "--log=/dev/null");
  std::istringstream log(bothLogs(options, arguments));
  std::string own;
  for (std::string line; std::getline(log, line);) {
    if (!line.starts_with("zvkprinter: ")) {
      own += line + "\n";
    }
  }
  return own;
}

/// Returns the output of zvknpa without the line numbers.
std::string wordsOf(const std::string& log, const Words& arguments = {}) {
  const ProcessResult result = zvknpa(arguments, log);
  EXPECT_EQ(result.status, 0) << result.err;
  EXPECT_EQ(result.err, "");
  std::string words;
  for (std::size_t start = 0; start < result.out.size();) {
    const std::size_t end = result.out.find('\n', start) + 1;
    const std::string line = result.out.substr(start, end - start);
    words += line.starts_with("line") ? line.substr(line.find(": ") + 2) : line;
    start = end;
  }
  return words;
}

TEST(Zvknpa, DecodesABasicConfiguration) {
  const std::string log =
      bothLogs({}, {"-c", "--ssid=home", "--security=WPA", "--passwd=secret88", "{}"});
  const std::string expected =
      "request, wrapped, 67 bytes: store settings\n"
      "    wireless network 28 02: mode = 0 (managed)\n"
      "    wireless network 28 22: security = 2 (WPA (1 or 2))\n"
      "    wireless network 28 05: channel = 6\n"
      "    wireless network 28 08: SSID = \"home\"\n"
      "    wireless network 28 11: pre-shared key = (9 bytes)\n"
      "reply, wrapped, 17 bytes: settings accepted (01)\n";
  EXPECT_EQ(wordsOf(log), expected);
  EXPECT_EQ(wordsOf(log, {"--secrets"}), expected);
}

TEST(Zvknpa, DecodesTheDumpOfAnAdvancedConfiguration) {
  const std::string log = ownLog({}, {"-ca", "--security=WPA-PER", "--ssid=home",
                                      "--psk=correct-horse", "--encryption=AES", "{}"});
  const auto expected = [](const std::string& key) {
    return "request, wrapped, 80 bytes: store settings\n"
           "    wireless network 28 11: pre-shared key = " +
           key +
           "\n"
           "    wireless network 28 26: encryption = 4 (AES)\n"
           "    wireless network 28 02: mode = 0 (managed)\n"
           "    wireless network 28 22: security = 2 (WPA (1 or 2))\n"
           "    wireless network 28 05: channel = 6\n"
           "    wireless network 28 08: SSID = \"home\"\n";
  };
  EXPECT_EQ(wordsOf(log), expected("(13 bytes)"));
  EXPECT_EQ(wordsOf(log, {"--secrets"}), expected("\"correct-horse\""));
}

TEST(Zvknpa, DecodesTheBytesOfTheDefaultRun) {
  const std::string words = wordsOf(ownLog({}, {"-x", "{}"}));
  EXPECT_EQ(words,
            "request, wrapped, 43 bytes: store settings\n"
            "    wireless network 28 02: mode = 0 (managed)\n"
            "    wireless network 28 22: security = 0 (none)\n"
            "    wireless network 28 05: channel = 6\n");
}

/// Standard output and standard error are mixed, as on a terminal.
TEST(Zvknpa, DecodesTheDefaultRunWithItsProgress) {
  const ProcessResult result = runProcess(support::withFasterClock(
      {ZVKPRINTER, "run", "--log=/dev/null", "--", "sh", "-c", "exec " ZVKCONFIG " -x {} 2>&1"}));
  ASSERT_NE(result.out.find(" 0 6 Configuring the printer....\n"), std::string::npos)
      << result.out << result.err;
  EXPECT_EQ(wordsOf(result.out),
            "request, wrapped, 43 bytes: store settings\n"
            "    wireless network 28 02: mode = 0 (managed)\n"
            "    wireless network 28 22: security = 0 (none)\n"
            "    wireless network 28 05: channel = 6\n");
}

TEST(Zvknpa, DecodesTheDumpInALogWithTimes) {
  std::istringstream log(ownLog({}, {"-ca", "--security=OPEN", "--ssid=home", "{}"}));
  std::string dated;
  for (std::string line; std::getline(log, line);) {
    dated += "Nov 22 12:34:56 host zvkconfig[7]: " + line + "\n";
  }
  EXPECT_EQ(wordsOf(dated),
            "request, wrapped, 53 bytes: store settings\n"
            "    wireless network 28 02: mode = 0 (managed)\n"
            "    wireless network 28 22: security = 0 (none)\n"
            "    wireless network 28 05: channel = 6\n"
            "    wireless network 28 08: SSID = \"home\"\n");
}

struct DumpRow : support::Row {
  const char* command;
};

class ZvknpaDump : public testing::TestWithParam<DumpRow> {};

TEST_P(ZvknpaDump, IsDecoded) {
  const std::string command = GetParam().command;
  const std::string tool = command.substr(0, command.find(' '));
  if (runProcess({"sh", "-c", "command -v " + tool}).status != 0) {
    GTEST_SKIP() << "there is no " << tool;
  }
  const npa::Bytes packets =
      support::joined({support::bytes("A5 00 54 50 E0 DA 01 28 08 00 00 4B"), npa::Bytes(75, 0),
                       support::bytes("A5 00 0D 50 E0 D8 00 28 08 00 05 68 20 7C 65 20")});
  const ProcessResult dump =
      runProcess({"sh", "-c", command}, std::string(packets.begin(), packets.end()));
  ASSERT_EQ(dump.status, 0) << dump.err;
  EXPECT_EQ(wordsOf("$ " + command + "\n" + dump.out + "$\n"),
            "request, bare, 87 bytes: store settings\n"
            "    wireless network 28 08: SSID = \"\"\n"
            "reply, bare, 16 bytes: value\n"
            "    wireless network 28 08: SSID = \"h |e \"\n");
}

INSTANTIATE_TEST_SUITE_P(
    Tools, ZvknpaDump,
    testing::Values(
        DumpRow{{"Xxd"}, "xxd"}, DumpRow{{"XxdInEightColumns"}, "xxd -c 8"},
        DumpRow{{"XxdInUpperCase"}, "xxd -u"}, DumpRow{{"XxdOfSingleBytes"}, "xxd -g 1"},
        DumpRow{{"XxdInOneGroup"}, "xxd -g 0 -c 32"}, DumpRow{{"XxdWithoutZeros"}, "xxd -a"},
        DumpRow{{"XxdFromAnotherOffset"}, "xxd -o 4294967280"},
        DumpRow{{"XxdWithoutOffsets"}, "xxd -p"},
        DumpRow{{"XxdWithColons"}, "xxd -p | sed 's/../&:/g'"}, DumpRow{{"Hexdump"}, "hexdump -C"},
        DumpRow{{"HexdumpOfAllLines"}, "hexdump -Cv"},
        DumpRow{{"HexdumpInEightColumns"},
                "hexdump -v -e '\"%08.8_ax  \" 8/1 \"%02x \"' -e '\"  |\" 8/1 \"%_p\" "
                "\"|\\n\"'"}),
    support::rowName);

TEST(Zvknpa, DecodesAQueryThatIsRefusedInAWrapper) {
  EXPECT_EQ(wordsOf(bothLogs({"--refuse-wrapped", "--ssid=My Net"}, {"-s", "{}"})),
            "request, wrapped, 18 bytes: query\n"
            "    wireless network 28 08: SSID\n"
            "reply, bare, 5 bytes: refused\n"
            "request, bare, 9 bytes: query\n"
            "    wireless network 28 08: SSID\n"
            "reply, bare, 18 bytes: value\n"
            "    wireless network 28 08: SSID = \"My Net\"\n");
}

TEST(Zvknpa, DecodesTheAuthenticationStatus) {
  const Words options = {"--auth-status=2", "--packets=2"};
  const std::string other = "    802.1x 2A 26: object 2A 26 = (4 bytes)\n";
  const std::string status = "    802.1x 2A 1D: 802.1x authentication status = 2 (Authenticated)\n";
  EXPECT_EQ(wordsOf(ownLog(options, {"-802s", "{}"})),
            "reply, wrapped, collected, 37 bytes: value\n" + other + "    and: value\n" + status);
  EXPECT_EQ(wordsOf(bothLogs(options, {"-802s", "{}"})),
            "request, wrapped, 18 bytes: query\n"
            "    802.1x 2A 1D: 802.1x authentication status\n"
            "reply, wrapped, more follows, 24 bytes: value\n" +
                other + "reply, wrapped, 21 bytes: value\n" + status +
                "reply, wrapped, collected, 37 bytes: value\n" + other + "    and: value\n" +
                status);
}

TEST(Zvknpa, DecodesTheCertificateSettings) {
  EXPECT_EQ(wordsOf(ownLog({}, {"-cer", "{}"})),
            "reply, wrapped, collected, 16 bytes: value\n"
            "    802.1x 2A 06: certificate organisation = \"\"\n"
            "reply, wrapped, collected, 16 bytes: value\n"
            "    802.1x 2A 0A: certificate common name = \"\"\n");
}

/// The uploaded file need not be a certificate, because the printer replies with a fixed status.
TEST(Zvknpa, DecodesMethodCallsAndTheirReplies) {
  const support::TemporaryFolder folder;
  const std::string file = folder.write("ca.pem", "none");
  const std::string log =
      bothLogs({"--object-status=19", "--packets=3"}, {"-icer", "--802-CA-cer-file=" + file, "{}"});
  const std::string part = "reply, bare, more follows, ";
  EXPECT_EQ(wordsOf(log),
            "request, bare, 19 bytes: announces a method call\n"
            "request, bare, 473 bytes: method call uploadNewCAFile (400)\n"
            "    <?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
            "    <method name=\"callMethod\" requestID=\"400\">\n"
            "      <arg name=\"objName\">applications.certMgr</arg>\n"
            "      <arg name=\"method\">uploadNewCAFile</arg>\n"
            "      <arg name=\"params\">\n"
            "        <ListElem>\n"
            "          <ListElem>\n"
            "            <MapElem>\n"
            "              <child name=\"ca_file_name\">\n"
            "                <StringElem>ca.pem</StringElem>\n"
            "              </child>\n"
            "              <child name=\"ca_dot_pem_size\">\n"
            "                <IntegerElem>4</IntegerElem>\n"
            "              </child>\n"
            "              <child name=\"ca_dot_pem_file\">\n"
            "                <BinaryElem>bm9uZQ==</BinaryElem>\n"
            "              </child>\n"
            "            </MapElem>\n"
            "          </ListElem>\n"
            "        </ListElem>\n"
            "      </arg>\n"
            "    </method>\n" +
                part + "10 bytes: part of the reply to a method call\n" + part +
                "121 bytes: part of the reply to a method call\n"
                "reply, bare, 122 bytes: reply to a method call, status 19 (the file holds no PEM "
                "certificate)\n"
                "    <?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                "    <response>\n"
                "      <MapElem>\n"
                "        <child name=\"status_code\">\n"
                "          <IntegerElem>19</IntegerElem>\n"
                "        </child>\n"
                "        <child name=\"status_mesg\">\n"
                "          <StringElem>the file holds no PEM certificate</StringElem>\n"
                "        </child>\n"
                "      </MapElem>\n"
                "    </response>\n");
}

TEST(Zvknpa, WritesJson) {
  const std::string log = ownLog({"--auth-status=5"}, {"-802s", "{}"});
  const ProcessResult result = zvknpa({"--json"}, log);
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(nlohmann::json::parse(result.out), nlohmann::json::parse(R"({"inputs": [{"input": "-",
    "packets": [{"line": 3, "last_line": 4, "role": "reply", "size": 17, "wrapped": true,
      "collected": true, "contents": [{"kind": "value", "settings": [{"group": "2A", "object": "1D",
      "group_name": "802.1x", "name": "802.1x authentication status", "size": 1, "value": 5,
      "meaning": "Server Cert Expired"}]}]}],
    "problems": []}]})"));
}

TEST(Zvknpa, WritesOneJsonDocumentForAnyInputs) {
  const support::TemporaryFolder folder;
  const std::string empty = folder.write("empty", "");
  const std::string refused = folder.write("refused", "A5 00 02 D4 E0 FF");
  const ProcessResult result =
      zvknpa({"--json", empty, folder.path("missing"), refused, "-"}, "A5");
  EXPECT_EQ(result.status, 2);
  EXPECT_TRUE(
      result.err.ends_with("zvknpa: " + folder.path("missing") + ": No such file or directory\n"))
      << result.err;
  const auto inputs = nlohmann::json::parse(result.out)["inputs"];
  ASSERT_EQ(inputs.size(), 4U);
  EXPECT_TRUE(inputs[0]["packets"].empty());
  EXPECT_EQ(inputs[1]["unreadable"], "No such file or directory");
  EXPECT_EQ(inputs[2]["packets"].size(), 1U);
  EXPECT_EQ(inputs[2]["problems"][0]["text"], "1 byte outside any packet");
  EXPECT_EQ(inputs[3]["problems"][0]["text"], "cut packet: 1 byte");
}

TEST(Zvknpa, ReadsTextFilesAndCaptures) {
  const support::TemporaryFolder folder;
  support::UsbCapture capture;
  capture.out(support::bytes("A5 00 06 50 E0 D8 00 28 08"));
  const std::string log = folder.write("log", "A5 00 02 D4 E0\n");
  const std::string pcap = folder.write("pcap", capture.content());
  const std::string query = "request, bare, 9 bytes: query\n    wireless network 28 08: SSID\n";
  const std::string both = zvknpa({log, pcap}).out;
  EXPECT_EQ(both, log + ":\nline 1: reply, bare, 5 bytes: refused\n" + pcap +
                      ":\nframe 1 (1:5): " + query);
  EXPECT_EQ(zvknpa({}, capture.content()).out, "frame 1 (1:5): " + query);
  const ProcessResult other = zvknpa({"--device=1:6", pcap});
  EXPECT_EQ(other.status, 3);
  EXPECT_EQ(other.out, "no packets\n");
  EXPECT_EQ(other.err, "zvknpa: " + pcap +
                           ": no NPA packet found: looked for bulk transfers of device 1:6 in a "
                           "capture\n");
  const ProcessResult forced = zvknpa({"--form=capture", log});
  EXPECT_EQ(forced.status, 2);
  EXPECT_EQ(forced.err, "zvknpa: " + log + ": unknown file format\n");
}

TEST(Zvknpa, ListsTheSupportedInputsForEachInputWithoutPackets) {
  const support::TemporaryFolder folder;
  const std::string text = folder.write("text", "D [ZVK] SSID = home\n");
  const std::string good = folder.write("good", "A5 00 02 D4 E0\n");
  const std::string looked =
      ": no NPA packet found: looked for hex text, xxd or hexdump -C dumps, logs of zvkconfig and "
      "zvkprinter, captures (pcap, pcapng)\n";
  const ProcessResult words = zvknpa({text});
  EXPECT_EQ(words.status, 3);
  EXPECT_EQ(words.err, "zvknpa: " + text + looked);
  EXPECT_EQ(words.out, "no packets\n");
  const ProcessResult json = zvknpa({"--json", text, good, "-"});
  EXPECT_EQ(json.status, 3);
  EXPECT_EQ(json.err, "zvknpa: " + text + looked + "zvknpa: -" + looked);
  const auto inputs = nlohmann::json::parse(json.out)["inputs"];
  ASSERT_EQ(inputs.size(), 3U);
  EXPECT_TRUE(inputs[0]["packets"].empty());
  EXPECT_EQ(inputs[1]["packets"].size(), 1U);
  EXPECT_EQ(zvknpa({good}).err, "");
}

TEST(Zvknpa, ReportsOutputThatItCannotWrite) {
  for (const std::string arguments : {" --objects", " --help", "", " --json"}) {
    const ProcessResult result =
        runProcess({"sh", "-c", "exec " ZVKNPA + arguments + " >/dev/full"}, "A5 00 02 D4");
    EXPECT_EQ(result.status, 2) << arguments;
    EXPECT_EQ(result.err, "zvknpa: standard output: No space left on device\n") << arguments;
  }
}

TEST(Zvknpa, EndsWithTheStatusOfItsResult) {
  EXPECT_EQ(zvknpa({}, "").status, 3);
  EXPECT_EQ(zvknpa({}, "A5 00 02 D4 E0").status, 0);
  EXPECT_EQ(zvknpa({}, "A5 00 02 D4").status, 1);
  EXPECT_EQ(zvknpa({}, "A5 00 02 50 E1").status, 1);
  EXPECT_EQ(zvknpa({"/nonexistent"}).status, 2);
  EXPECT_EQ(zvknpa({"/"}).err, "zvknpa: /: Is a directory\n");
  const ProcessResult wrong = zvknpa({"--none"});
  EXPECT_EQ(wrong.status, 2);
  EXPECT_EQ(wrong.err, "zvknpa: --none: no such option\nTry 'zvknpa --help'.\n");
  EXPECT_EQ(zvknpa({"--help"}).status, 0);
}

}  // namespace
