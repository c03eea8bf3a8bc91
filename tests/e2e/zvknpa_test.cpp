#include <fcntl.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <vector>

#include "testing/bytes.h"
#include "testing/files.h"
#include "testing/printer_run.h"
#include "testing/process.h"
#include "testing/usb_capture.h"

// The real zvknpa reads what the real zvkconfig and the emulated printer have said.

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

/// The standard error of a run, as "zvkconfig ... 2>log" keeps it.
std::string keptLog(const Words& options, const Words& arguments) {
  Words command = {"faketime", "-f", "+0 x10"};
  for (const std::string& word : support::printerCommand(options, arguments)) {
    command.push_back(word);
  }
  return runProcess(command).err;
}

/// The same without the printer's log, nor its word on where it is: what the program itself dumps.
std::string ownLog(Words options, const Words& arguments) {
  options.insert(options.begin(), "--log=/dev/null");
  std::istringstream log(keptLog(options, arguments));
  std::string own;
  for (std::string line; std::getline(log, line);) {
    if (!line.starts_with("zvkprinter: ")) {
      own += line + "\n";
    }
  }
  return own;
}

/// What is said of packets, without the lines that they stand in.
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
      keptLog({}, {"-c", "--ssid=home", "--security=WPA", "--passwd=secret88", "{}"});
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

TEST(Zvknpa, DecodesAQueryThatIsRefusedInAWrapper) {
  EXPECT_EQ(wordsOf(keptLog({"--refuse-wrapped", "--ssid=My Net"}, {"-s", "{}"})),
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
  EXPECT_EQ(wordsOf(keptLog(options, {"-802s", "{}"})),
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

/// A CA certificate is not needed for a call that is answered with a status.
TEST(Zvknpa, DecodesMethodCallsAndTheirReplies) {
  const support::TemporaryFolder folder;
  const std::string file = folder.write("ca.pem", "none");
  const std::string log =
      keptLog({"--object-status=19", "--packets=3"}, {"-icer", "--802-CA-cer-file=" + file, "{}"});
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

TEST(Zvknpa, WritesOneJsonDocumentWhateverTheInputs) {
  const support::TemporaryFolder folder;
  const std::string empty = folder.write("empty", "");
  const std::string refused = folder.write("refused", "A5 00 02 D4 E0 FF");
  const ProcessResult result =
      zvknpa({"--json", empty, folder.path("missing"), refused, "-"}, "A5");
  EXPECT_EQ(result.status, 2);
  EXPECT_EQ(result.err, "zvknpa: " + folder.path("missing") + ": No such file or directory\n");
  const auto inputs = nlohmann::json::parse(result.out)["inputs"];
  ASSERT_EQ(inputs.size(), 4U);
  EXPECT_TRUE(inputs[0]["packets"].empty());
  EXPECT_EQ(inputs[1]["unreadable"], "No such file or directory");
  EXPECT_EQ(inputs[2]["packets"].size(), 1U);
  EXPECT_EQ(inputs[2]["problems"][0]["text"], "1 byte outside any packet");
  EXPECT_EQ(inputs[3]["problems"][0]["text"], "a packet that is cut: 1 byte");
}

TEST(Zvknpa, ReadsFilesTextsAndCapturesAlike) {
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
  EXPECT_EQ(zvknpa({"--device=1:6", pcap}).out, "no packets\n");
  const ProcessResult forced = zvknpa({"--form=capture", log});
  EXPECT_EQ(forced.status, 2);
  EXPECT_EQ(forced.err, "zvknpa: " + log + ": unknown file format\n");
}

TEST(Zvknpa, EndsWithTheStatusOfWhatItFound) {
  EXPECT_EQ(zvknpa({}, "").status, 0);
  EXPECT_EQ(zvknpa({}, "A5 00 02 D4 E0").status, 0);
  EXPECT_EQ(zvknpa({}, "A5 00 02 D4").status, 1);
  EXPECT_EQ(zvknpa({}, "A5 00 02 50 E1").status, 1);
  EXPECT_EQ(zvknpa({"/nonexistent"}).status, 2);
  EXPECT_EQ(zvknpa({"/"}).err, "zvknpa: /: Is a directory\n");
  const ProcessResult wrong = zvknpa({"--none"});
  EXPECT_EQ(wrong.status, 2);
  EXPECT_EQ(wrong.err, "zvknpa: --none: no such option\nTry 'zvknpa --help'.\n");
  EXPECT_EQ(zvknpa({"--help"}).status, 0);
  EXPECT_EQ(runProcess({"sh", "-c", std::string(ZVKNPA) + " --objects >/dev/full"}).status, 2);
}

}  // namespace
