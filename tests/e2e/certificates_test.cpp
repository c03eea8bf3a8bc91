#include <ctime>
#include <filesystem>
#include <gtest/gtest.h>
#include <regex>
#include <string>
#include <vector>

#include "testing/files.h"
#include "testing/output.h"
#include "testing/printer_run.h"
#include "testing/process.h"

// The work of an administrator of an 802.1x network, with a real certificate authority (CA): the
// printer creates a request, openssl(1) signs it, and both certificates are installed in the
// printer.

namespace {

using support::lines;
using support::PrinterRun;
using support::runProcess;
using support::TransportReleased;
using Words = std::vector<std::string>;

class Certificates : public testing::Test {
 protected:
  Certificates() { std::filesystem::create_directory(path("printer")); }

  std::string path(std::string_view name) const { return m_Folder.path(name); }

  /// Runs zvkconfig with the printer, which keeps its certificates between runs.
  PrinterRun run(const Words& arguments, const Words& options = {}) const {
    Words all = {"--state=" + path("printer")};
    all.insert(all.end(), options.begin(), options.end());
    return support::runWithPrinter(all, arguments);
  }

  /// Runs openssl(1) with the arguments in `command`. "@" stands for `folder`, the path of the
  /// test's folder. Expects success. Stores the output in `opensslOutput`.
  static void openssl(const std::string& folder, const std::string& command) {
    Words words = {"openssl"};
    const std::regex space(" ");
    for (std::sregex_token_iterator word(command.begin(), command.end(), space, -1), end;
         word != end; ++word) {
      words.push_back(std::regex_replace(word->str(), std::regex("@"), folder));
    }
    const auto result = runProcess(words);
    EXPECT_EQ(result.status, 0) << command << "\n" << result.err;
    opensslOutput = result.out + result.err;
  }
  void openssl(const std::string& command) const { openssl(path(""), command); }

  /// Returns the printer's stored data in words.
  std::string stored() const {
    return runProcess({ZVKPRINTER, "show", "--state=" + path("printer")}).out;
  }

  /// Creates a CA: ca.pem and ca.key.
  void createCa() const {
    openssl(
        "req -x509 -newkey ec -pkeyopt ec_paramgen_curve:P-256 -nodes -keyout @ca.key "
        "-out @ca.pem -subj /O=Example/CN=TestCA -days 3650");
  }

  /// Returns the printer's name for the CA certificate.
  std::string caName() const {
    openssl("x509 -in @ca.pem -noout -dates -dateopt iso_8601");
    const std::regex dates(R"(notBefore=(\d+)-(\d+)-(\d+) .*\nnotAfter=(\d+)-(\d+)-(\d+) )");
    std::smatch match;
    EXPECT_TRUE(std::regex_search(opensslOutput, match, dates)) << opensslOutput;
    const auto date = [&match](std::size_t first) {
      const Words months = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                            "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
      std::string day = match[first + 2];
      if (day[0] == '0') {
        day[0] = '_';
      }
      return months.at(std::stoul(match[first + 1]) - 1) + "_" + day + "_" + match[first].str();
    };
    return "TestCA_" + date(1) + "_To_" + date(4);
  }

  static inline std::string opensslOutput;

 private:
  support::TemporaryFolder m_Folder;
};

/// Replaces the printer's path by "/dev/usb/lp0". The path has another number if the system permits
/// no private device, which only the command of zvkprinter can see.
std::string withoutPath(const std::string& text) {
  return std::regex_replace(text, std::regex(R"(/dev/usb/lp\d+)"), "/dev/usb/lp0");
}

TEST_F(Certificates, AreRequestedSignedAndInstalled) {
  // The printer proposes a subject.
  const PrinterRun defaults = run({"-rcerdefs", "{}"}, {"--cert-default=O=Example & Sons"});
  EXPECT_EQ(defaults.status, 0);
  EXPECT_EQ(defaults.out, lines({"cer-org=Example & Sons", "cer-unit=Printing", "cer-state=State",
                                 "cer-country=US", "cer-city=City", "cer-altname=printer.example",
                                 "cer-common=printer"}));
  EXPECT_EQ(defaults.err, TransportReleased);
  EXPECT_EQ(defaults.calls, Words{"readCertDefaults"});

  // The printer creates a key pair and a request.
  const std::string request = path("request.pem");
  const PrinterRun made = run({"-csr", "--cer-org=Example & <Sons>", "--cer-unit=\"100 %s\"",
                               "--cer-country=DE", "--cer-common=printer.example",
                               "--cer-altname=printer.example", "--cer-path=" + request, "{}"});
  EXPECT_EQ(made.status, 0);
  EXPECT_EQ(made.out, "");
  EXPECT_EQ(
      withoutPath(made.err),
      lines({R"(D [ZVK] usb="/dev/usb/lp0")", R"(D [ZVK] --cer-org="Example & <Sons>")",
             R"(D [ZVK] --cer-unit="100 %s")", R"(D [ZVK] --cer-state="")",
             R"(D [ZVK] --cer-country="DE")", R"(D [ZVK] --cer-city="")",
             R"(D [ZVK] --cer-altname="printer.example")",
             R"(D [ZVK] --cer-common="printer.example")", "D [ZVK] --cer-path=\"" + request + "\"",
             "D [ZVK] Delete signed cert error 14", "D [ZVK] nothing has that name",
             "D [ZVK] Certificate Request successfully created! Now saving...",
             "D [ZVK] Certificate Request saved to '" + request + "'!"}) +
          TransportReleased);
  EXPECT_EQ(made.calls, (Words{R"(deleteIndividualCert cert_friendly_name="Quorvanthelisdorm")",
                               R"(generateNewCert cert_friendly_name="Quorvanthelisdorm" )"
                               R"(x509_O="Example & <Sons>" x509_AN="printer.example" x509_C="DE" )"
                               R"(x509_CN="printer.example" x509_L="" x509_OU="100 %s" x509_ST="")",
                               R"(exportPubKey cert_friendly_name="Quorvanthelisdorm")"}));

  // The CA verifies and signs the request.
  createCa();
  openssl("req -in @request.pem -verify -noout -subject -nameopt oneline");
  for (const char* component :
       {R"(O = "Example & <Sons>")", "OU = 100 %s", "C = DE", "CN = printer.example"}) {
    EXPECT_NE(opensslOutput.find(component), std::string::npos) << opensslOutput;
  }
  openssl(
      "x509 -req -in @request.pem -CA @ca.pem -CAkey @ca.key -CAcreateserial -days 90 "
      "-copy_extensions copy -out @signed.pem");
  openssl("verify -CAfile @ca.pem @signed.pem");

  // Install the CA certificate.
  const std::string ca = path("ca.pem");
  const std::string loadingCa = "D [ZVK] Loading file " + ca + ", " +
                                std::to_string(std::filesystem::file_size(ca)) + " bytes";
  const std::string toMatch = "D [ZVK] CA Common name to match: '" + caName() + "'";
  const std::string installed = "D [ZVK] CA/Signed Certificate successfully installed!";
  const PrinterRun caRun = run({"-icer", "--802-CA-cer-file=" + ca, "{}"});
  EXPECT_EQ(caRun.status, 0);
  EXPECT_EQ(caRun.err, lines({loadingCa, toMatch, installed}) + TransportReleased);
  ASSERT_EQ(caRun.calls.size(), 2U);
  EXPECT_EQ(caRun.calls[0], "queryCAList");
  EXPECT_TRUE(caRun.calls[1].starts_with(R"(uploadNewCAFile ca_file_name="ca.pem" )"));

  // Install the signed certificate.
  const std::string signedFile = path("signed.pem");
  const PrinterRun signedRun = run({"-icer", "--802-signed-cer-file=" + signedFile, "{}"});
  EXPECT_EQ(signedRun.status, 0);
  EXPECT_EQ(signedRun.err,
            lines({"D [ZVK] Loading file " + signedFile + ", " +
                       std::to_string(std::filesystem::file_size(signedFile)) + " bytes",
                   installed}) +
                TransportReleased);
  EXPECT_EQ(signedRun.out, "");

  // Install the same CA certificate again: the old one is deleted first.
  const PrinterRun again = run({"-icer", "--802-CA-cer-file=" + ca, "{}"});
  EXPECT_EQ(again.status, 0);
  EXPECT_EQ(again.err,
            lines({loadingCa, toMatch, "D [ZVK] CA cert exist! Removing...", installed}) +
                TransportReleased);
  ASSERT_EQ(again.calls.size(), 3U);
  EXPECT_EQ(again.calls[1], "deleteIndividualCA ca_common_name=\"" + caName() + "\"");

  // The printer has both certificates.
  EXPECT_NE(stored().find("CA certificate = \"" + caName() + "\", file \"ca.pem\"\n"),
            std::string::npos)
      << stored();
  EXPECT_NE(stored().find("device certificate = \"Quorvanthelisdorm\", subject \"/O=Example & "
                          "<Sons>/OU=100 %s/C=DE/CN=printer.example\", issuer "
                          "\"/O=Example/CN=TestCA\"\n"),
            std::string::npos)
      << stored();
}

TEST_F(Certificates, ReadTheirOptionsFromAFile) {
  const std::string request = path("request.pem");
  const support::TemporaryFolder folder;
  const std::string options = folder.write("options",
                                           "# for the printer in the hall\n"
                                           "--cer-common=\"hall\"\n"
                                           "--cer-path=\"" +
                                               request + "\"\n");
  EXPECT_EQ(run({"-csr", "-file", options, "{}"}).status, 0);
  openssl("req -in @request.pem -verify -noout -subject -nameopt oneline");
  EXPECT_NE(opensslOutput.find("subject=CN = hall\n"), std::string::npos) << opensslOutput;

  createCa();
  const std::string caOptions =
      folder.write("ca", "--802-CA-cer-file=\"" + path("ca.pem") + "\"\n");
  EXPECT_EQ(run({"-icer", "-file", caOptions, "{}"}).status, 0);
  EXPECT_NE(stored().find("CA certificate = \"" + caName()), std::string::npos) << stored();

  const PrinterRun defaults = run({"-rcerdefs", "-file", "/dev/null", "{}"});
  EXPECT_EQ(defaults.status, 0);
  EXPECT_EQ(defaults.out.substr(0, 8), "cer-org=");
}

TEST_F(Certificates, AreRejectedIfTheyHaveAnotherKey) {
  const std::string request = path("request.pem");
  EXPECT_EQ(run({"-csr", "--cer-common=x", "--cer-path=" + request, "{}"}).status, 0);
  createCa();
  const PrinterRun wrong = run({"-icer", "--802-signed-cer-file=" + path("ca.pem"), "{}"});
  EXPECT_EQ(wrong.status, 1);
  EXPECT_NE(wrong.err.find("D [ZVK] Install Signed Cert error "), std::string::npos) << wrong.err;
  EXPECT_TRUE(wrong.err.ends_with(lines({"D [ZVK] Error installing CA/Signed Certificate!"}) +
                                  TransportReleased))
      << wrong.err;
}

TEST_F(Certificates, AreReadFromRepliesOfSeveralPacketsInPieces) {
  const PrinterRun whole = run({"-rcerdefs", "{}"});
  const PrinterRun pieces = run({"-rcerdefs", "{}"}, {"--packets=5", "--pieces=7"});
  EXPECT_EQ(pieces.status, 0);
  EXPECT_EQ(pieces.out, whole.out);
  EXPECT_EQ(pieces.err, whole.err);
}

TEST_F(Certificates, AreReplacedByANewRequest) {
  const std::string request = path("request.pem");
  const Words command = {"-csr", "--cer-common=x", "--cer-path=" + request, "{}"};
  EXPECT_EQ(run(command).status, 0);
  const std::string first = support::fileContent(request);
  const PrinterRun again = run(command);
  EXPECT_EQ(again.status, 0);
  EXPECT_EQ(again.err.find("error"), std::string::npos) << again.err;
  EXPECT_NE(support::fileContent(request), first);
}

}  // namespace
