#include <csignal>
#include <filesystem>
#include <gtest/gtest.h>
#include <string>
#include <unistd.h>
#include <vector>

#include "testing/files.h"
#include "testing/object_store.h"
#include "testing/output.h"
#include "testing/printer_run.h"
#include "testing/rows.h"

// Certificate commands with invalid files and replies.

namespace {

using support::binaryChild;
using support::lines;
using support::PrinterRun;
using support::runWithPrinter;
using support::statusChildren;
using support::TransportReleased;
using Words = std::vector<std::string>;

class CertificateCommands : public testing::Test {
 protected:
  support::TemporaryFolder folder;
};

// --- Replies ------------------------------------------------------------------------------------

const std::string Marker(support::ReplyMarker.begin(), support::ReplyMarker.end());

std::string reply(const std::string& children) {
  return Marker + support::replyXml(children);
}

struct ReplyRow : support::Row {
  std::string bytes;  ///< the content of the reply to exportPubKey
  Words lines;        ///< the log lines about the reply
};

class BadReply : public CertificateCommands, public testing::WithParamInterface<ReplyRow> {};

TEST_P(BadReply, LeavesTheRequestFileUnchanged) {
  const std::string request = folder.write("request", "before");
  const std::string file = folder.write("reply", GetParam().bytes);
  const PrinterRun run = runWithPrinter({"--object-reply=exportPubKey:" + file},
                                        {"-csr", "--cer-path=" + request, "{}"});
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.out, "");
  Words expected = {"D [ZVK] Certificate Request successfully created! Now saving..."};
  expected.insert(expected.end(), GetParam().lines.begin(), GetParam().lines.end());
  expected.push_back("D [ZVK] Error saving Certificate Request to '" + request + "'!");
  EXPECT_TRUE(run.err.ends_with(lines(expected) + TransportReleased)) << run.err;
  EXPECT_EQ(support::fileContent(request), "before");
}

/// Returns the log lines for a reply without a status.
Words missing() {
  return {"D [ZVK] Save Cert Request error 0", "", "D [ZVK] ", ""};
}

std::vector<ReplyRow> badReplies() {
  const std::string whole = reply(statusChildren("1") + binaryChild("cert_dot_csr_file", "QUJD"));
  std::string wrongMarker = whole;
  wrongMarker[6] = '\xE1';
  return {
      {{"MarkerMissing"}, "\xE0" + whole.substr(Marker.size()), missing()},
      {{"MarkerWrongAtTheEnd"}, wrongMarker, missing()},
      {{"ShorterThanTheMarker"}, whole.substr(0, 6), missing()},
      {{"OnlyTheMarker"}, Marker, missing()},
      {{"OnlyTheCommand"}, "\xE0", missing()},
      {{"StatusOfAFailure"},
       reply(statusChildren("7", "no %s\xE0 key")),
       {"D [ZVK] Save Cert Request error 7", "", "D [ZVK] no %s key", ""}},
      {{"StatusMissing"}, reply(""), missing()},
      {{"NoXml"}, Marker + "junk < & >", missing()},
      {{"CutInsideTheStatus"}, whole.substr(0, whole.find("1</IntegerElem>")), missing()},
      {{"RequestTooLarge"},
       reply(statusChildren("1") +
             binaryChild("cert_dot_csr_file", support::repeated("QUJD", 5462))),
       {}},
  };
}

INSTANTIATE_TEST_SUITE_P(Replies, BadReply, testing::ValuesIn(badReplies()), support::rowName);

TEST_F(CertificateCommands, DropTheBytesE0InsideAText) {
  const std::string file = folder.write(
      "reply", reply(statusChildren("1") + support::textChild("x509_O", "a\xE0\xE0z")));
  const PrinterRun run = runWithPrinter({"--object-reply=" + file}, {"-rcerdefs", "{}"});
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.out.substr(0, run.out.find('\n')), "cer-org=az");
}

TEST_F(CertificateCommands, PermitUnorderedAndRepeatedAttributes) {
  const std::string file = folder.write(
      "reply", Marker + R"(<response><MapElem><child b="1" a="2"/>)"
                        R"(<child type="i" name="status_code"><IntegerElem>1</IntegerElem></child>)"
                        R"(<child name="a" name="x509_O"><StringElem>last</StringElem></child>)"
                        "</MapElem></response>");
  const PrinterRun run = runWithPrinter({"--object-reply=" + file}, {"-rcerdefs", "{}"});
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.out.substr(0, run.out.find('\n')), "cer-org=last");
  EXPECT_EQ(run.err, support::TransportReleased);
}

TEST_F(CertificateCommands, ReportASilentOrRefusingPrinterInOneLine) {
  for (const char* option : {"--silent", "--refuse-all"}) {
    const PrinterRun run = runWithPrinter({option}, {"-rcerdefs", "{}"});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.err, lines({"D [ZVK] Failed to read certificate defaults!"}) + TransportReleased);
    // Unlike other commands, this one does not retry.
    EXPECT_EQ(run.received.size(), 2U);
  }
}

TEST_F(CertificateCommands, AbortForAnEmptyDeviceName) {
  const PrinterRun run = runWithPrinter({}, {"-rcerdefs", ""});
  EXPECT_EQ(run.status, 128 + SIGABRT);
  EXPECT_EQ(run.out, "");
}

TEST_F(CertificateCommands, ReportAMissingDevice) {
  const PrinterRun run = runWithPrinter({}, {"-rcerdefs", "/dev/usb/lp5"});
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.err, lines({"D [ZVK] Failed to open usb device '/dev/usb/lp5'!",
                            "D [ZVK] Failed to read certificate defaults!"}) +
                         TransportReleased);
}

// --- Request file -------------------------------------------------------------------------------

TEST_F(CertificateCommands, ReportAFullDisk) {
  const PrinterRun run =
      runWithPrinter({"--show"}, {"-csr", "--cer-common=x", "--cer-path=/dev/full", "{}"});
  EXPECT_EQ(run.status, 1);
  EXPECT_TRUE(
      run.err.ends_with(lines({"D [ZVK] Certificate Request successfully created! Now saving...",
                               "D [ZVK] saveToFile error (1): 28, bytes=0", "",
                               "D [ZVK] Error saving Certificate Request to '/dev/full'!"}) +
                        TransportReleased))
      << run.err;
  // The printer keeps the request.
  EXPECT_NE(run.out.find("certificate request = \"Quorvanthelisdorm\""), std::string::npos)
      << run.out;
}

TEST_F(CertificateCommands, ReportARequestFileThatCannotBeWritten) {
  for (const std::string& path : {folder.path("absent/request"), folder.path(""), std::string()}) {
    const PrinterRun run = runWithPrinter({}, {"-csr", "--cer-path=" + path, "{}"});
    EXPECT_EQ(run.status, 1);
    EXPECT_TRUE(
        run.err.ends_with(lines({"D [ZVK] Certificate Request successfully created! Now saving...",
                                 "D [ZVK] Error saving Certificate Request to '" + path + "'!"}) +
                          TransportReleased))
        << run.err;
  }
}

// --- Texts --------------------------------------------------------------------------------------

TEST_F(CertificateCommands, SendNothingIfATextIsTooLarge) {
  for (const std::string& text : {std::string(4096, 'x'), std::string(4096, '%'),
                                  std::string(600, '&'), std::string(65536, 'x')}) {
    const PrinterRun run = runWithPrinter({}, {"-csr", "--cer-org=" + text, "{}"});
    EXPECT_EQ(run.status, 1);
    EXPECT_TRUE(run.err.ends_with(lines({"D [ZVK] Error creating Certificate Request!"}) +
                                  TransportReleased));
    EXPECT_TRUE(run.received.empty());
  }
}

TEST_F(CertificateCommands, TreatTextsNeitherAsFormatsNorAsMarkup) {
  const PrinterRun run = runWithPrinter(
      {}, {"-csr", "--cer-org=%s%n%x", "--cer-unit=<a b='c'>&\"", "--cer-path=/dev/null", "{}"});
  EXPECT_EQ(run.status, 0);
  ASSERT_EQ(run.calls.size(), 3U);
  EXPECT_NE(run.calls[1].find("x509_O=\"%s%n%x\""), std::string::npos) << run.calls[1];
}

// --- Files to install ---------------------------------------------------------------------------

struct FileRow : support::Row {
  std::string content;
  Words lines;  ///< the log lines after the line about loading the file
};

class BadFile : public CertificateCommands, public testing::WithParamInterface<FileRow> {};

TEST_P(BadFile, FailsBeforeAnythingIsSent) {
  const std::string file = folder.write("file.pem", GetParam().content);
  for (const char* option : {"--802-CA-cer-file=", "--802-signed-cer-file="}) {
    const PrinterRun run = runWithPrinter({}, {"-icer", option + file, "{}"});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.err, lines({"D [ZVK] Loading file " + file + ", " +
                                  std::to_string(GetParam().content.size()) + " bytes",
                              "D [ZVK] Error installing CA/Signed Certificate!"}) +
                           TransportReleased);
    EXPECT_TRUE(run.received.empty());
  }
}

INSTANTIATE_TEST_SUITE_P(Files, BadFile,
                         testing::Values(FileRow{{"Empty"}, "", {}},
                                         FileRow{{"Size16384"}, std::string(16384, 'x'), {}},
                                         FileRow{{"Size16385"}, std::string(16385, 'x'), {}},
                                         FileRow{{"Size12000"}, std::string(12000, 'x'), {}}),
                         support::rowName);

TEST_F(CertificateCommands, ReportAMissingFile) {
  const std::string file = folder.path("absent");
  const PrinterRun run = runWithPrinter({}, {"-icer", "--802-CA-cer-file=" + file, "{}"});
  EXPECT_EQ(run.status, 2);
  EXPECT_EQ(run.err, lines({"D [ZVK] File not found! ('" + file + "')"}));
  EXPECT_TRUE(run.received.empty());
}

TEST_F(CertificateCommands, FailIfTheFileExistsButCannotBeRead) {
  std::filesystem::create_symlink("nowhere", folder.path("dangling"));
  const PrinterRun run =
      runWithPrinter({}, {"-icer", "--802-signed-cer-file=" + folder.path("dangling"), "{}"});
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.err,
            lines({"D [ZVK] Error installing CA/Signed Certificate!"}) + TransportReleased);
  EXPECT_TRUE(run.received.empty());
}

TEST_F(CertificateCommands, ReportADirectory) {
  const PrinterRun run = runWithPrinter({}, {"-icer", "--802-CA-cer-file=/", "{}"});
  EXPECT_EQ(run.status, 1);
  EXPECT_NE(run.err.find("D [ZVK] loadFromFile error (1): 21, bytes=0, size="), std::string::npos)
      << run.err;
  EXPECT_TRUE(run.received.empty());
}

TEST_F(CertificateCommands, SendAFileWithoutACertificateThatThePrinterRejects) {
  const std::string file = folder.write("ca.pem", "no PEM at all");
  const PrinterRun run = runWithPrinter({}, {"-icer", "--802-CA-cer-file=" + file, "{}"});
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.calls.size(), 1U);
  EXPECT_NE(run.err.find("D [ZVK] PEM_read failed?!\nD [ZVK] Install CA Cert error "),
            std::string::npos)
      << run.err;
}

TEST_F(CertificateCommands, FailSilentlyWithoutAFile) {
  const PrinterRun run = runWithPrinter({}, {"-icer", "{}"});
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.out + run.err, "");
  EXPECT_TRUE(run.received.empty());
}

}  // namespace
