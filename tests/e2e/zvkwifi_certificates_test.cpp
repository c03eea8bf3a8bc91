// The certificate commands of zvkwifi with a real certificate authority (CA).

#include <filesystem>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "e2e/wifi_document.h"
#include "testing/files.h"
#include "testing/printer_run.h"
#include "testing/process.h"

namespace {

using Json = nlohmann::json;
using support::PrinterRun;
using support::runProcess;
using Words = std::vector<std::string>;

constexpr const char* Usual = "Quorvanthelisdorm";

class WifiCertificates : public testing::Test {
 protected:
  WifiCertificates() { std::filesystem::create_directory(path("printer")); }

  std::string path(std::string_view name) const { return folder.path(name); }

  /// Runs a command with the printer, which keeps its certificates between runs.
  PrinterRun run(Words arguments, const Words& options = {}) const {
    Words all = {"--state=" + path("printer")};
    all.insert(all.end(), options.begin(), options.end());
    arguments.emplace_back("--quiet");
    arguments.emplace_back("{}");
    return support::runWifiWithPrinter(all, arguments);
  }

  /// Runs a command with JSON and returns the entry of the printer.
  Json json(Words arguments, int status) const {
    arguments.emplace_back("--json");
    const PrinterRun result = run(arguments);
    EXPECT_EQ(result.status, status) << result.out << result.err;
    EXPECT_EQ(result.err, "");
    return parsedDocument(result.out).at("printers").at(0);
  }

  void openssl(const Words& arguments) const {
    Words words = {"openssl"};
    words.insert(words.end(), arguments.begin(), arguments.end());
    const auto result = runProcess(words);
    EXPECT_EQ(result.status, 0) << result.err;
  }

  void createAuthority() const {
    openssl({"req", "-x509", "-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:P-256", "-nodes",
             "-keyout", path("ca.key"), "-out", path("ca.pem"), "-subj", "/O=Example/CN=TestCA",
             "-days", "3650"});
  }

  void signRequest() const {
    openssl({"x509", "-req", "-in", path("request.pem"), "-CA", path("ca.pem"), "-CAkey",
             path("ca.key"), "-CAcreateserial", "-days", "90", "-out", path("signed.pem")});
  }

  support::TemporaryFolder folder;
};

TEST_F(WifiCertificates, AreRequestedSignedInstalledListedAndDeleted) {
  const Words request = {"cert",
                         "request",
                         "--common-name=printer.example",
                         "--country=de",
                         "--organization=Example & <Sons>",
                         "--output=" + path("request.pem")};
  const PrinterRun made = run(request);
  EXPECT_EQ(made.status, 0) << made.err;
  EXPECT_EQ(made.err, "");
  EXPECT_EQ(made.out, "The printer's certificate request is in " + path("request.pem") +
                          ". Let your authority sign it, then run \"zvkwifi cert install\".\n");
  const auto subject = runProcess({"openssl", "req", "-in", path("request.pem"), "-verify",
                                   "-noout", "-subject", "-nameopt", "compat"});
  EXPECT_EQ(subject.status, 0);
  // OpenSSL 3.5 prints a line about the verification before.
  EXPECT_TRUE(subject.out.ends_with("subject=/O=Example & <Sons>/C=DE/CN=printer.example\n"))
      << subject.out;

  createAuthority();
  signRequest();
  EXPECT_EQ(run({"cert", "install-ca", "--file=" + path("ca.pem")}).status, 0);
  const PrinterRun installed = run({"cert", "install", "--file=" + path("signed.pem")});
  EXPECT_EQ(installed.status, 0) << installed.err;
  EXPECT_EQ(installed.out, "The certificate \"Quorvanthelisdorm\" is installed.\n");

  const Json list = json({"cert", "list"}, 0);
  EXPECT_EQ(list.at("result"), "ok");
  EXPECT_EQ(list.at("error"), nullptr);
  EXPECT_EQ(list.at("certificates"),
            Json::parse(R"([{"name": "Factory"}, {"name": ")" + std::string(Usual) + R"("}])"));
  ASSERT_EQ(list.at("authorities").size(), 1U);
  const Json& authority = list.at("authorities").at(0);
  const std::string caName = authority.at("name");
  EXPECT_TRUE(caName.starts_with("TestCA_")) << caName;
  EXPECT_EQ(authority.at("file"), "ca.pem");
  EXPECT_EQ(authority.at("common_name"), caName);
  EXPECT_EQ(run({"cert", "list"}).out,
            "Certificates of the printer:\n  Factory\n  Quorvanthelisdorm\n"
            "Certificates of authorities:\n  " +
                caName + "\n    File: ca.pem\n    Common name: " + caName + "\n");

  // The printer authenticates with these certificates.
  EXPECT_EQ(run({"set", "--ssid=office", "--security=802.1x", "--user=printer", "--eap=tls"},
                {"--ssid=old"})
                .status,
            0);
  EXPECT_EQ(json({"status"}, 0).at("authentication").at("code"), 2);

  EXPECT_EQ(json({"cert", "delete-ca", "--name=" + caName}, 0).at("result"), "ok");
  EXPECT_EQ(run({"cert", "delete", "--name=" + std::string(Usual)}).out,
            "The certificate \"Quorvanthelisdorm\" is deleted.\n");
  EXPECT_EQ(run({"cert", "list"}).out,
            "Certificates of the printer:\n  Factory\nCertificates of authorities:\n  none\n");
  // The status 11 reports that no CA certificate is installed.
  EXPECT_EQ(json({"status"}, 0).at("authentication").at("code"), 11);
}

TEST_F(WifiCertificates, AreReplacedOnlyWithTheOption) {
  createAuthority();
  const Words install = {"cert", "install-ca", "--file=" + path("ca.pem")};
  EXPECT_EQ(run(install).status, 0);
  const PrinterRun again = run(install);
  EXPECT_EQ(again.status, 2);
  EXPECT_TRUE(again.err.starts_with("zvkwifi: The printer has a certificate \"TestCA_"))
      << again.err;
  EXPECT_TRUE(again.err.ends_with("Use --replace to replace it. Nothing was changed.\n"));
  EXPECT_EQ(again.calls, Words{"queryCAList"});
  EXPECT_EQ(json(install, 2).at("result"), "invalid");

  Words replace = install;
  replace.emplace_back("--replace");
  const PrinterRun replaced = run(replace);
  EXPECT_EQ(replaced.status, 0) << replaced.err;
  EXPECT_EQ(replaced.calls.size(), 3U);
}

TEST_F(WifiCertificates, AreReplacedAfterAYesOnATerminal) {
  createAuthority();
  const std::string install =
      std::string(ZVKWIFI) + " cert install-ca --quiet --file=" + path("ca.pem") + " {}";
  // script(1) runs the command on a terminal and types its own standard input there.
  const auto answered = [&](const std::string& answer) {
    const Words command = {ZVKPRINTER,
                           "run",
                           "--state=" + path("printer"),
                           "--log=" + path("log"),
                           "--",
                           "sh",
                           "-c",
                           "script -qec \"" + install + "\" /dev/null"};
    return runProcess(support::withFasterClock(command), answer);
  };
  EXPECT_EQ(run({"cert", "install-ca", "--file=" + path("ca.pem")}).status, 0);
  const auto no = answered("\n");
  EXPECT_EQ(no.status, 2) << no.out;
  EXPECT_NE(no.out.find("[y/N]"), std::string::npos) << no.out;
  EXPECT_EQ(support::fileContent(path("log")).find("uploadNewCAFile"), std::string::npos);
  const auto yes = answered("y\n");
  EXPECT_EQ(yes.status, 0) << yes.out;
  EXPECT_NE(support::fileContent(path("log")).find("uploadNewCAFile"), std::string::npos);
}

TEST_F(WifiCertificates, AreCheckedBeforeThePrinterIsOpened) {
  createAuthority();
  folder.write("old.pem", "old");
  const std::string longName = "--name=" + std::string(32, 'x');
  for (const Words& wrong :
       {Words{"install-ca", "--file=" + path("ca.key")}, Words{"install-ca", "--file=missing"},
        Words{"install-ca"}, Words{"install", "--file=" + path("ca.key")},
        Words{"install", "--file=" + path("ca.pem"), longName}, Words{"delete"},
        Words{"delete", "--name="}, Words{"delete-ca"}, Words{},
        Words{"request", "--common-name=x"}, Words{"request", "--output=" + path("new.pem")},
        Words{"request", "--common-name=x", "--output=" + path("old.pem")},
        Words{"request", "--common-name=x", "--output=" + path("no/new.pem")},
        Words{"request", "--common-name=x", "--country=DEU", "--output=" + path("new.pem")},
        Words{"request", "--common-name=x", longName, "--output=" + path("new.pem")}}) {
    Words arguments = {"cert"};
    arguments.insert(arguments.end(), wrong.begin(), wrong.end());
    const PrinterRun result = run(arguments);
    EXPECT_EQ(result.status, 2) << testing::PrintToString(wrong) << result.err;
    EXPECT_EQ(result.out, "");
    EXPECT_TRUE(result.err.starts_with("zvkwifi: ")) << result.err;
    EXPECT_TRUE(result.received.empty()) << testing::PrintToString(wrong);
  }
  EXPECT_EQ(support::fileContent(path("old.pem")), "old");
  EXPECT_FALSE(std::filesystem::exists(path("new.pem")));
}

TEST_F(WifiCertificates, EndWith6IfThePrinterRefuses) {
  const PrinterRun factory = run({"cert", "delete", "--name=Factory"});
  EXPECT_EQ(factory.status, 6);
  EXPECT_EQ(factory.err,
            "zvkwifi: The printer refused the request: the factory-made certificate cannot be "
            "changed (status 15).\nA certificate from the factory cannot be deleted.\n");
  const PrinterRun all = run({"cert", "list"}, {"--refuse-all"});
  EXPECT_EQ(all.status, 6);
  EXPECT_EQ(all.err,
            "zvkwifi: The printer does not understand requests for certificates.\n"
            "Check that its adapter supports 802.1x.\n");
}

TEST_F(WifiCertificates, EndWith7IfThePrinterIsSilent) {
  const Words request = {"cert", "request", "--common-name=x", "--output=" + path("new.pem")};
  const PrinterRun silent = run(request, {"--silent"});
  EXPECT_EQ(silent.status, 7);
  EXPECT_TRUE(
      silent.err.starts_with("zvkwifi: The printer does not answer. Nothing was changed.\n"))
      << silent.err;
  EXPECT_FALSE(std::filesystem::exists(path("new.pem")));
}

TEST_F(WifiCertificates, EndWith2IfTheNameIsNotListed) {
  const Json entry = json({"cert", "delete", "--name=missing"}, 2);
  EXPECT_EQ(entry.at("result"), "invalid");
  EXPECT_EQ(entry.at("error").at("message"), "The printer has no such certificate: \"missing\".");
  const PrinterRun authority = run({"cert", "delete-ca", "--name=Factory"});
  EXPECT_EQ(authority.status, 2);
  EXPECT_EQ(authority.calls, Words{"queryCAList"});
}

}  // namespace
