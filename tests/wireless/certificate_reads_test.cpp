#include <cstddef>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "testing/generator.h"
#include "testing/packets.h"
#include "testing/rows.h"

// The queries of the printer's certificate settings: their requests, and what they log of the
// reply.

namespace {

using packets::QueryCommonName;
using packets::QueryOrganization;
using packets::replyOf;
using packets::wrapped;
using support::Bytes;
using support::bytes;
using support::joined;
using support::Output;
using virtual_system::Second;
using Read = support::Operation;
using CertificateReads = support::DefaultGenerator;

// --- Reads that dump the reply ------------------------------------------------------------------

struct DumpRow : support::Row {
  Read read;
  const char* request;
  const char* announcement;
  const char* response;
};

class ReplyDump : public CertificateReads, public testing::WithParamInterface<DumpRow> {};

TEST_P(ReplyDump, LogsTheReplyAndReturnsMinusOne) {
  answer({replyOf(bytes("41 42"))});
  EXPECT_EQ(run(GetParam().read), -1);
  EXPECT_EQ(output, (Output{"", std::string(GetParam().announcement) + "D [ZVK] " +
                                    GetParam().response + " (3 bytes)\nE0 41 42 |.AB\n"}));
  EXPECT_EQ(device.writes, std::vector<Bytes>{wrapped(bytes(GetParam().request))});
}

TEST_P(ReplyDump, IsRequestedBareWithoutWrapMode) {
  generator->setWrapMode(false);
  EXPECT_EQ(run(GetParam().read), -1);
  EXPECT_EQ(output, (Output{"", std::string(GetParam().announcement) + "D [ZVK] " +
                                    GetParam().response + " (0 bytes)\n"}));
  EXPECT_EQ(device.writes, std::vector<Bytes>{bytes(GetParam().request)});
  EXPECT_EQ(system.sleeps, std::vector<unsigned int>{2});
}

DumpRow dumpRow(const char* name, Read read, const char* request, const char* announcement,
                const char* response) {
  return {{name}, read, request, announcement, response};
}

using G = wnpaGenerator;

INSTANTIATE_TEST_SUITE_P(
    Reads, ReplyDump,
    testing::Values(dumpRow("Certificate", &G::getCertCert, "A5 00 06 50 E0 D8 00 2A 0F",
                            "D [ZVK] get cert...\n", "cert"),
                    dumpRow("CaCertificate", &G::getCertCA, "A5 00 06 50 E0 D8 00 2A 10",
                            "D [ZVK] get CA cert...\n", "CSR"),
                    dumpRow("CommonName", &G::getCertCommonName, "A5 00 06 50 E0 D8 00 2A 0A",
                            "D [ZVK] Cert common name...\n", "Common name resp"),
                    dumpRow("FriendlyName", &G::getCertFriendlyName, "A5 00 06 50 E0 D8 00 2A 27",
                            "D [ZVK] Cert Friendly name...\n", "Friendly name"),
                    dumpRow("AlternateName", &G::getCertAlternateName, "A5 00 06 50 E0 D8 00 2A 1C",
                            "D [ZVK] Cert alternate name...\n", "Alternate name"),
                    dumpRow("SignRequest", &G::getCSR, "A5 00 06 50 E0 D8 00 2A 0E",
                            "D [ZVK] get CSR...\n", "CSR"),
                    dumpRow("GenerateStatus", &G::generateCertStatus, "A5 00 06 50 E0 D8 00 2A 0D",
                            "D [ZVK] generate certificate status...\n", "generate cert status"),
                    // This operation stores a flag. The length field of its packet says 6.
                    dumpRow("Generate", &G::generateCertificate,
                            "A5 00 06 50 E0 DA 01 2A 0C 00 00 01 01",
                            "D [ZVK] generate certificate...\n", "generate cert")),
    support::rowName);

TEST_F(CertificateReads, ContinueUntilThreeSecondsAfterThePause) {
  device.onWrite = [this](const Bytes& /*request*/) {
    device.reply(bytes("A5 00 03 70 E0 01"), 4 * Second);
    device.reply(bytes("A5 00 03 70 E0 02"), 5 * Second);
    device.reply(bytes("A5 00 03 70 E0 03"), 5 * Second + Second / 2);
  };
  run(&wnpaGenerator::generateCertificate);
  EXPECT_TRUE(output.err.ends_with("(4 bytes)\nE0 01 E0 02 |....\n")) << output.err;
}

// --- Organization -------------------------------------------------------------------------------

struct OrganizationRow : support::Row {
  Bytes records;
  int result;
  std::string lines;  ///< the log lines after the dump
};

class Organization : public CertificateReads,
                     public testing::WithParamInterface<OrganizationRow> {};

TEST_P(Organization, IsLoggedForEachRecord) {
  answer({replyOf(GetParam().records)});
  EXPECT_EQ(run(&wnpaGenerator::getCertOrganization), GetParam().result);
  const std::size_t first = output.err.find("D [ZVK] Organization");
  EXPECT_EQ(first == std::string::npos ? "" : output.err.substr(first), GetParam().lines);
  EXPECT_EQ(output.out, "");
}

const Bytes Acme = bytes("A5 00 0C 50 E0 D8 00 2A 06 00 04 41 63 6D 65");
const Bytes Ltd = bytes("A5 00 0B 50 E0 D8 00 2A 06 00 03 4C 74 64");
const Bytes None = bytes("A5 00 08 50 E0 D8 00 2A 06 00 00");
const Bytes BeyondTheReply = bytes("A5 00 0C 50 E0 D8 00 2A 06 00 05 41 63 6D 65");

INSTANTIATE_TEST_SUITE_P(
    Replies, Organization,
    testing::Values(
        OrganizationRow{{"OneRecord"}, Acme, 0, "D [ZVK] Organization (4 bytes): Acme\n"},
        OrganizationRow{{"SeveralRecords"},
                        joined({Acme, Ltd}),
                        0,
                        "D [ZVK] Organization (4 bytes): Acme\n"
                        "D [ZVK] Organization (3 bytes): Ltd\n"},
        OrganizationRow{{"EmptyAtTheEnd"}, None, 0, "D [ZVK] Organization (0 bytes): \n"},
        OrganizationRow{{"EmptyBeforeAnother"},
                        joined({None, Ltd}),
                        0,
                        "D [ZVK] Organization (0 bytes): \n"
                        "D [ZVK] Organization (3 bytes): Ltd\n"},
        OrganizationRow{{"BeyondTheReply"}, BeyondTheReply, -1, ""},
        OrganizationRow{
            {"FarBeyondTheReply"}, bytes("A5 00 0C 50 E0 D8 00 2A 06 FF FF 41 63 6D 65"), -1, ""},
        OrganizationRow{{"CompleteAfterOneBeyondTheReply"},
                        joined({bytes("A5 00 0C 50 E0 D8 00 2A 06 00 FF"), Acme}),
                        0,
                        "D [ZVK] Organization (4 bytes): Acme\n"},
        OrganizationRow{{"BeyondTheReplyAfterACompleteOne"},
                        joined({Acme, BeyondTheReply}),
                        0,
                        "D [ZVK] Organization (4 bytes): Acme\n"},
        OrganizationRow{{"ZeroByteEndsTheText"},
                        bytes("A5 00 0C 50 E0 D8 00 2A 06 00 04 41 00 6D 65"),
                        0,
                        "D [ZVK] Organization (4 bytes): A\n"},
        OrganizationRow{{"AnyBytes"},
                        bytes("A5 00 0C 50 E0 D8 00 2A 06 00 04 25 73 FF 0A"),
                        0,
                        "D [ZVK] Organization (4 bytes): %s\xFF\n\n"},
        OrganizationRow{{"ShorterThanTheRest"},
                        bytes("A5 00 0C 50 E0 D8 00 2A 06 00 02 41 63 6D 65"),
                        0,
                        "D [ZVK] Organization (2 bytes): Ac\n"},
        // The text of the outer record ends at the zero byte in the header of the inner record.
        OrganizationRow{{"RecordInsideARecord"},
                        joined({bytes("A5 00 18 50 E0 D8 00 2A 06 00 0E"), Ltd}),
                        0,
                        "D [ZVK] Organization (14 bytes): \xA5\n"
                        "D [ZVK] Organization (3 bytes): Ltd\n"},
        OrganizationRow{{"BothSizeBytes"},
                        joined({bytes("A5 01 34 50 E0 D8 00 2A 06 01 2C"), Bytes(300, 'o')}),
                        0,
                        "D [ZVK] Organization (300 bytes): " + std::string(300, 'o') + "\n"},
        OrganizationRow{{"HeaderCut"}, bytes("A5 00 08 50 E0 D8 00 2A 06 00"), -1, ""},
        OrganizationRow{{"AnotherSetting"}, bytes("A5 00 0C 50 E0 D8 00 2A 07 00 01 41"), -1, ""},
        OrganizationRow{{"AnotherGroup"}, bytes("A5 00 0C 50 E0 D8 00 28 06 00 01 41"), -1, ""},
        OrganizationRow{{"NoRecord"}, bytes("41"), -1, ""}),
    support::rowName);

TEST_F(CertificateReads, LogTheReplyAndThenTheOrganization) {
  answer({replyOf(Acme)});
  EXPECT_EQ(run(&wnpaGenerator::getCertOrganization), 0);
  EXPECT_EQ(output, (Output{"",
                            "D [ZVK] Cert Organization...\n"
                            "D [ZVK] Cert org (16 bytes)\n"
                            "E0 A5 00 0C 50 E0 D8 00 2A 06 00 04 41 63 6D 65 |....P...*...Acme\n"
                            "D [ZVK] Organization (4 bytes): Acme\n"}));
  EXPECT_EQ(device.writes, std::vector<Bytes>{wrapped(QueryOrganization)});
}

TEST_F(CertificateReads, ReturnMinusOneWithoutAReply) {
  generator->setWrapMode(false);
  EXPECT_EQ(run(&wnpaGenerator::getCertOrganization), -1);
  EXPECT_EQ(output.err, "D [ZVK] Cert Organization...\nD [ZVK] Cert org (0 bytes)\n");
  EXPECT_EQ(device.writes, std::vector<Bytes>{QueryOrganization});
}

// --- All settings, and the certificate request --------------------------------------------------

TEST_F(CertificateReads, QueryOrganizationAndCommonName) {
  answer({replyOf(Acme), replyOf(bytes("41"))});
  EXPECT_EQ(run(&wnpaGenerator::getCertSettings), 0);
  EXPECT_EQ(output, (Output{"",
                            "D [ZVK] Certifcate settings...\n"
                            "D [ZVK] Cert Organization...\n"
                            "D [ZVK] Cert org (16 bytes)\n"
                            "E0 A5 00 0C 50 E0 D8 00 2A 06 00 04 41 63 6D 65 |....P...*...Acme\n"
                            "D [ZVK] Organization (4 bytes): Acme\n"
                            "D [ZVK] Cert common name...\n"
                            "D [ZVK] Common name resp (2 bytes)\n"
                            "E0 41 |.A\n"}));
  EXPECT_EQ(device.writes,
            (std::vector<Bytes>{wrapped(QueryOrganization), wrapped(QueryCommonName)}));
}

TEST_F(CertificateReads, ReturnZeroWithoutAReplyToTheSettings) {
  EXPECT_EQ(run(&wnpaGenerator::getCertSettings), 0);
  EXPECT_EQ(device.writes.size(), 2U);
}

TEST_F(CertificateReads, SendTheCommonNameOfACertificateRequest) {
  use({"--cer-common=printer"});
  Bytes earlier = bytes("EE EE");
  generator->appendDataToNPA(2, earlier.data());
  answer({replyOf(bytes("41"))});
  EXPECT_EQ(run(&wnpaGenerator::createCertSignRequest), 0);
  EXPECT_EQ(output, (Output{"",
                            "D [ZVK] createCertSignRequest...\n"
                            "D [ZVK] Cer common = printer (7 bytes)\n"
                            "A5 00 19 50 E0 63 02 00 13 A5 00 10 50 E0 DA 01 |...P.c......P...\n"
                            "2A 0A 00 00 07 70 72 69 6E 74 65 72             |*....printer\n"
                            "D [ZVK] CSR response (2 bytes)\n"
                            "E0 41 |.A\n"
                            "D [ZVK] ret = 0\n"}));
  EXPECT_EQ(device.writes,
            std::vector<Bytes>{bytes("A5 00 19 50 E0 63 02 00 13 A5 00 10 50 E0 DA 01 "
                                     "2A 0A 00 00 07 70 72 69 6E 74 65 72")});
}

TEST_F(CertificateReads, SendAnEmptyBatchWithoutACommonName) {
  generator->setWrapMode(false);
  EXPECT_EQ(run(&wnpaGenerator::createCertSignRequest), 0);
  EXPECT_EQ(output.err,
            "D [ZVK] createCertSignRequest...\n"
            "D [ZVK] Cer common =  (0 bytes)\n"
            "A5 00 04 50 E0 DA 01 |...P...\n"
            "D [ZVK] CSR response (0 bytes)\n"
            "D [ZVK] ret = 0\n");
  EXPECT_EQ(device.writes, std::vector<Bytes>{bytes("A5 00 04 50 E0 DA 01")});
}

}  // namespace
