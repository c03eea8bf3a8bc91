#include "cert/cert_proc.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <string>
#include <sys/stat.h>
#include <utility>
#include <vector>

#include "testing/files.h"
#include "testing/object_store_printer.h"
#include "testing/settings.h"

namespace {

using support::Bytes;
using support::failure;
using support::Output;
using support::success;
using support::text;
using support::textChild;
using support::TransportReleased;

class CertificateCommand : public support::ObjectStorePrinter {
 protected:
  int run(std::string command, std::vector<std::string> options = {}) {
    configDetails configuration = support::settings(std::move(options));
    return resultOf([&] { return CertProc().run(command, configuration); }, output);
  }

  support::TemporaryFolder folder;
  Output output;
};

using Rcerdefs = CertificateCommand;
using Csr = CertificateCommand;
using Icer = CertificateCommand;

// --- Reading the defaults -----------------------------------------------------------------------

TEST_F(Rcerdefs, PrintsSevenLines) {
  answer({success(textChild("x509_O", "Org") + textChild("x509_OU", "Unit") +
                  textChild("x509_C", "DE") + textChild("x509_ST", "State") +
                  textChild("x509_L", "City") + textChild("x509_CN", "100%s") +
                  textChild("x509_AN", "printer.example"))});
  EXPECT_EQ(run("-rcerdefs"), 0);
  EXPECT_EQ(output, (Output{"cer-org=Org\n"
                            "cer-unit=Unit\n"
                            "cer-state=State\n"
                            "cer-country=DE\n"
                            "cer-city=City\n"
                            "cer-altname=printer.example\n"
                            "cer-common=100%s\n",
                            TransportReleased}));
}

TEST_F(Rcerdefs, PrintsEmptyTextsForMissingValues) {
  answer({success()});
  EXPECT_EQ(run("-rcerdefs"), 0);
  EXPECT_EQ(output.out,
            "cer-org=\ncer-unit=\ncer-state=\ncer-country=\ncer-city=\ncer-altname=\n"
            "cer-common=\n");
}

TEST_F(Rcerdefs, FailsIfTheCallFails) {
  answer({failure("3", "not now")});
  EXPECT_EQ(run("-rcerdefs"), 1);
  EXPECT_EQ(output, (Output{"",
                            "D [ZVK] Get cert request defaults error 3\n"
                            "D [ZVK] not now\n"
                            "D [ZVK] Failed to read certificate defaults!\n" +
                                TransportReleased}));
}

// --- Creating a request -------------------------------------------------------------------------

class CsrOptions : public CertificateCommand {
 protected:
  std::vector<std::string> options() const {
    return {"--cer-org=o",      "--cer-unit=ou",      "--cer-state=st",
            "--cer-country=c",  "--cer-city=l",       "--cer-altname=an",
            "--cer-common=c%n", "--cer-path=" + path, "/dev/usb/lp0"};
  }

  std::string given() const {
    return "D [ZVK] usb=\"/dev/usb/lp0\"\n"
           "D [ZVK] --cer-org=\"o\"\n"
           "D [ZVK] --cer-unit=\"ou\"\n"
           "D [ZVK] --cer-state=\"st\"\n"
           "D [ZVK] --cer-country=\"c\"\n"
           "D [ZVK] --cer-city=\"l\"\n"
           "D [ZVK] --cer-altname=\"an\"\n"
           "D [ZVK] --cer-common=\"c%n\"\n"
           "D [ZVK] --cer-path=\"" +
           path + "\"\n";
  }

  static constexpr const char* Created =
      "D [ZVK] Certificate Request successfully created! Now saving...\n";
  const Bytes Request = success(support::binaryChild("cert_dot_csr_file", "QUJD"));

  std::string path = folder.path("request");
};

TEST_F(CsrOptions, CreateAndSaveARequest) {
  answer({success(), success(), Request});
  EXPECT_EQ(run("-csr", options()), 0);
  EXPECT_EQ(output, (Output{"", given() + Created + "D [ZVK] Certificate Request saved to '" +
                                    path + "'!\n" + TransportReleased}));
  EXPECT_EQ(support::fileContent(path), "ABC");
  EXPECT_EQ(calls().at(1),
            support::callText("generateNewCert", 200,
                              {text("cert_friendly_name", "Quorvanthelisdorm"), text("x509_O", "o"),
                               text("x509_AN", "an"), text("x509_C", "c"), text("x509_CN", "c%n"),
                               text("x509_L", "l"), text("x509_OU", "ou"), text("x509_ST", "st")}));
}

TEST_F(CsrOptions, AreNotRequired) {
  answer({success()});
  EXPECT_EQ(run("-csr"), 1);
  EXPECT_EQ(output.err,
            "D [ZVK] usb=\"/dev/usb/lp0\"\n"
            "D [ZVK] --cer-org=\"\"\n"
            "D [ZVK] --cer-unit=\"\"\n"
            "D [ZVK] --cer-state=\"\"\n"
            "D [ZVK] --cer-country=\"\"\n"
            "D [ZVK] --cer-city=\"\"\n"
            "D [ZVK] --cer-altname=\"\"\n"
            "D [ZVK] --cer-common=\"\"\n"
            "D [ZVK] --cer-path=\"\"\n" +
                std::string(Created) + "D [ZVK] Error saving Certificate Request to ''!\n" +
                TransportReleased);
}

TEST_F(CsrOptions, FailIfTheRequestIsNotCreated) {
  folder.write("request", "before");
  answer({success(), failure("9", "no entropy")});
  EXPECT_EQ(run("-csr", options()), 1);
  EXPECT_EQ(output, (Output{"", given() +
                                    "D [ZVK] Create Certificate Request error 9\n"
                                    "D [ZVK] no entropy\n"
                                    "D [ZVK] Error creating Certificate Request!\n" +
                                    TransportReleased}));
  EXPECT_EQ(calls().size(), 2U);
  EXPECT_EQ(support::fileContent(path), "before");
}

TEST_F(CsrOptions, FailIfTheRequestIsNotReturned) {
  folder.write("request", "before");
  answer({success(), success(), failure("9", "no key")});
  EXPECT_EQ(run("-csr", options()), 1);
  EXPECT_EQ(output.err, given() + Created +
                            "D [ZVK] Save Cert Request error 9\n\n"
                            "D [ZVK] no key\n\n"
                            "D [ZVK] Error saving Certificate Request to '" +
                            path + "'!\n" + TransportReleased);
  EXPECT_EQ(support::fileContent(path), "before");
}

TEST_F(CsrOptions, FailIfTheRequestCannotBeWritten) {
  path = "/dev/full";
  answer({success(), success(), Request});
  EXPECT_EQ(run("-csr", options()), 1);
  EXPECT_EQ(output.err, given() + Created +
                            "D [ZVK] saveToFile error (1): 28, bytes=0\n\n"
                            "D [ZVK] Error saving Certificate Request to '/dev/full'!\n" +
                            TransportReleased);
}

// --- Installing a certificate -------------------------------------------------------------------

constexpr const char* Installed = "D [ZVK] CA/Signed Certificate successfully installed!\n";
constexpr const char* NotInstalled = "D [ZVK] Error installing CA/Signed Certificate!\n";

TEST_F(Icer, InstallsACaCertificate) {
  answer({success()});
  const std::string path = folder.write("ca.pem", "x");
  EXPECT_EQ(run("-icer", {"--802-CA-cer-file=" + path}), 0);
  EXPECT_EQ(output,
            (Output{"", "D [ZVK] Loading file " + path + ", 1 bytes\n" +
                            "D [ZVK] PEM_read failed?!\n" + Installed + TransportReleased}));
  EXPECT_NE(calls().at(0).find(">uploadNewCAFile<"), std::string::npos);
}

TEST_F(Icer, InstallsASignedCertificate) {
  answer({success()});
  const std::string path = folder.write("signed.pem", "x");
  EXPECT_EQ(run("-icer", {"--802-signed-cer-file=" + path}), 0);
  EXPECT_EQ(output.err,
            "D [ZVK] Loading file " + path + ", 1 bytes\n" + Installed + TransportReleased);
  EXPECT_NE(calls().at(0).find(">uploadSignedCertFile<"), std::string::npos);
  EXPECT_NE(calls().at(0).find(">Quorvanthelisdorm<"), std::string::npos);
}

TEST_F(Icer, PrefersTheCaCertificate) {
  answer({success()});
  EXPECT_EQ(run("-icer", {"--802-signed-cer-file=" + folder.write("signed.pem", "x"),
                          "--802-CA-cer-file=" + folder.write("ca.pem", "x")}),
            0);
  ASSERT_EQ(calls().size(), 1U);
  EXPECT_NE(calls().at(0).find(">uploadNewCAFile<"), std::string::npos);
}

TEST_F(Icer, LogsNothingWithoutAFile) {
  EXPECT_EQ(run("-icer"), 1);
  EXPECT_EQ(output, Output());
  EXPECT_EQ(device.opens, 0);
}

TEST_F(Icer, ReportsAMissingFile) {
  const std::string path = folder.path("absent");
  for (const char* option : {"--802-CA-cer-file=", "--802-signed-cer-file="}) {
    EXPECT_EQ(run("-icer", {option + path}), 2);
    EXPECT_EQ(output, (Output{"", "D [ZVK] File not found! ('" + path + "')\n"}));
  }
  EXPECT_EQ(device.opens, 0);
}

TEST_F(Icer, FailsIfTheFileExistsButCannotBeRead) {
  std::filesystem::create_symlink("nowhere", folder.path("dangling"));
  EXPECT_EQ(run("-icer", {"--802-CA-cer-file=" + folder.path("dangling")}), 1);
  EXPECT_EQ(output, (Output{"", NotInstalled + TransportReleased}));
  EXPECT_EQ(device.opens, 0);
}

TEST_F(Icer, FailsIfTheCallFails) {
  answer({failure("6", "does not fit")});
  const std::string path = folder.write("signed.pem", "x");
  EXPECT_EQ(run("-icer", {"--802-signed-cer-file=" + path}), 1);
  EXPECT_EQ(output.err, "D [ZVK] Loading file " + path +
                            ", 1 bytes\n"
                            "D [ZVK] Install Signed Cert error 6\n"
                            "D [ZVK] does not fit\n" +
                            NotInstalled + TransportReleased);
}

// --- Other cases --------------------------------------------------------------------------------

TEST_F(CertificateCommand, IsComparedExactly) {
  for (const char* command : {"-rcer", "-rcerdefs ", "-CSR", "icer", "", "-cer"}) {
    EXPECT_EQ(run(command), 1) << command;
    EXPECT_EQ(output, (Output{"", "D [ZVK] Unknown certificate command!\n"})) << command;
  }
  EXPECT_EQ(device.opens, 0);
}

TEST_F(CertificateCommand, DoesNotCatchTheManagersException) {
  configDetails configuration = support::settings({""});
  for (std::string command : {"-rcerdefs", "-csr"}) {
    EXPECT_THROW(CertProc().run(command, configuration), const char*);
  }
  configuration = support::settings({"", "--802-CA-cer-file=" + folder.write("f", "x")});
  std::string command = "-icer";
  EXPECT_THROW(CertProc().run(command, configuration), const char*);
}

TEST_F(CertificateCommand, TreatsEveryKindOfDirectoryEntryAsAFile) {
  std::filesystem::create_symlink("nowhere", folder.path("dangling"));
  ASSERT_EQ(::mkfifo(folder.path("pipe").c_str(), 0600), 0);
  for (const std::string& path : {folder.path(""), folder.write("f", ""), folder.path("dangling"),
                                  folder.path("pipe"), std::string("/dev/null")}) {
    EXPECT_TRUE(CertProc::isFileExists(path.c_str())) << path;
  }
  EXPECT_FALSE(CertProc::isFileExists(folder.path("absent").c_str()));
  EXPECT_FALSE(CertProc::isFileExists(folder.path("f/below").c_str()));
  EXPECT_FALSE(CertProc::isFileExists(""));
  EXPECT_FALSE(CertProc::isFileExists(nullptr));
}

}  // namespace
