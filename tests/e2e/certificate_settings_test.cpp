#include <fstream>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "testing/files.h"
#include "testing/output.h"
#include "testing/packets.h"
#include "testing/printer_run.h"

// The real program reads the certificate settings of the emulated printer.

namespace {

using packets::hexText;
using support::lines;
using support::PrinterRun;
using support::runWithPrinter;
using support::TransportReleased;
using Words = std::vector<std::string>;

const Words Queries = {hexText(packets::wrapped(packets::QueryOrganization)),
                       hexText(packets::wrapped(packets::QueryCommonName))};

// The log of a run. The printer has no value for either setting.
const std::string Log =
    lines({"D [ZVK] Certifcate settings...", "D [ZVK] Cert Organization...",
           "D [ZVK] Cert org (16 bytes)",
           "E0 63 02 00 0B A5 00 08 50 E0 D8 00 2A 06 00 00 |.c......P...*...",
           "D [ZVK] Organization (0 bytes): ", "D [ZVK] Cert common name...",
           "D [ZVK] Common name resp (16 bytes)",
           "E0 63 02 00 0B A5 00 08 50 E0 D8 00 2A 0A 00 00 |.c......P...*..."}) +
    TransportReleased;

TEST(CertificateSettings, AreReadAndLogged) {
  const PrinterRun run = runWithPrinter({}, {"-cer", "{}"});
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.out, "");
  EXPECT_EQ(run.err, Log);
  EXPECT_EQ(run.received, Queries);
}

TEST(CertificateSettings, AreReadFromTheDeviceAfterAFile) {
  const support::TemporaryFolder folder;
  const std::string file = folder.path("options");
  std::ofstream(file) << "# nothing\n";
  const PrinterRun run = runWithPrinter({}, {"-cer", "-file", file, "{}"});
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.err, Log);
  EXPECT_EQ(run.received, Queries);
}

// The command always succeeds, so there is no retry with bare packets.
TEST(CertificateSettings, EndWith0IfTheyAreRefused) {
  const PrinterRun run = runWithPrinter({"--refuse-wrapped"}, {"-cer", "{}"});
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.err, lines({"D [ZVK] Certifcate settings...", "D [ZVK] Cert Organization...",
                            "D [ZVK] Cert org (0 bytes)", "D [ZVK] Cert common name...",
                            "D [ZVK] Common name resp (0 bytes)"}) +
                         TransportReleased);
  EXPECT_EQ(run.received, Queries);
}

}  // namespace
