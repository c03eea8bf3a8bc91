// The files and connections that the program opens, observed with strace.

#include <gtest/gtest.h>
#include <set>
#include <sstream>
#include <string>
#include <sys/stat.h>
#include <vector>

#include "testing/certificates.h"
#include "testing/environment.h"
#include "testing/files.h"
#include "testing/printer_run.h"
#include "testing/process.h"
#include "testing/rows.h"

namespace {

using Names = std::set<std::string>;

/// Returns true for a file that the loader or faketime's library opens before `main`.
bool isOfTheLoader(const std::string& name) {
  const bool isLibrary = name.find(".so") != std::string::npos &&
                         (name.starts_with("/lib") || name.starts_with("/usr/lib"));
  return isLibrary || name.starts_with("/etc/ld.so.") || name.starts_with("/dev/shm/");
}

/// Returns the names of the files that the program tried to open, from strace's log. For a call
/// that does not open a file, the set has the whole line of the log.
Names opened(const std::string& log) {
  Names result;
  std::istringstream stream(support::fileContent(log));
  for (std::string line; std::getline(stream, line);) {
    if (line.find("(") == std::string::npos || line.find("---") != std::string::npos) {
      continue;  // the line reports a signal or the end of the process
    }
    const std::size_t begin = line.find('"');
    const std::size_t end = line.find('"', begin + 1);
    const bool opensFile = line.find("open") != std::string::npos && end != std::string::npos;
    const std::string name = opensFile ? line.substr(begin + 1, end - begin - 1) : line;
    if (!isOfTheLoader(name)) {
      result.insert(name);
    }
  }
  return result;
}

struct Row : support::Row {
  std::vector<std::string> arguments;
  /// The opened files except the device. "{folder}" stands for the test's folder.
  Names files;
};

class OpenedFiles : public testing::TestWithParam<Row> {
 protected:
  /// Replaces "{folder}" by the path of the test's folder.
  std::string placed(std::string text) const {
    const std::string mark = "{folder}";
    if (const std::size_t at = text.find(mark); at != std::string::npos) {
      text.replace(at, mark.size(), folder.path(""));
    }
    return text;
  }

  support::TemporaryFolder folder;
};

TEST_P(OpenedFiles, AreTheDeviceAndTheNamedFiles) {
  folder.write("options", "--ssid=home\n--security=None\n");
  folder.write("query.hex", "A5 00 06 50 E0 D8 00 28 08");
  folder.write("ca.pem", support::certificatePem());
  const std::string log = folder.path("calls");
  std::vector<std::string> arguments;
  for (const std::string& argument : GetParam().arguments) {
    arguments.push_back(placed(argument));
  }
  {
    const support::EnvironmentVariable strace(
        "ZVK_RUN_UNDER", "strace -f -qq -e trace=open,openat,creat,%network -o " + log);
    EXPECT_EQ(support::runWithPrinter({"--ssid=home"}, arguments).status, 0);
  }
  Names expected;
  for (const std::string& file : GetParam().files) {
    expected.insert(placed(file));
  }
  Names seen = opened(log);
  EXPECT_EQ(
      std::erase_if(seen, [](const std::string& name) { return name.starts_with("/dev/usb/lp"); }),
      1U);
  EXPECT_EQ(seen, expected);
}

INSTANTIATE_TEST_SUITE_P(
    Commands, OpenedFiles,
    testing::Values(
        Row{{"BasicConfiguration"}, {"-c", "--ssid=home", "{}"}, {}},
        Row{{"OptionsFromAFile"}, {"-c", "-file", "{folder}options", "{}"}, {"{folder}options"}},
        Row{{"AdvancedConfiguration"},
            {"-ca", "--security=802.1x", "--802-auth-ext=PEAP", "--802-user=u", "--802-pwd=p",
             "{}"},
            {}},
        Row{{"Query"}, {"-s", "{}"}, {}},
        Row{{"RawPacket"}, {"-npa", "-file", "{folder}query.hex", "{}"}, {"{folder}query.hex"}},
        Row{{"CertificateInstallation"},
            {"-icer", "--802-CA-cer-file={folder}ca.pem", "{}"},
            {"{folder}ca.pem"}},
        Row{{"CertificateRequest"},
            {"-csr", "--cer-common=hall", "--cer-path={folder}hall.csr", "{}"},
            {"{folder}hall.csr"}}),
    support::rowName);

TEST(RequestFile, CanBeReadByEveryoneAndWrittenByItsOwner) {
  const support::TemporaryFolder folder;
  const std::string path = folder.path("hall.csr");
  const mode_t before = ::umask(0);
  const int status =
      support::runWithPrinter({}, {"-csr", "--cer-common=hall", "--cer-path=" + path, "{}"}).status;
  ::umask(before);
  EXPECT_EQ(status, 0);
  struct stat file {};
  ASSERT_EQ(::stat(path.c_str(), &file), 0);
  EXPECT_EQ(file.st_mode & 07777U, 0644U);
}

TEST(HelpText, OpensNoFile) {
  const support::TemporaryFolder folder;
  const std::string log = folder.path("calls");
  const auto run = support::runProcess(
      {"strace", "-qq", "-e", "trace=open,openat,creat,%network", "-o", log, ZVKCONFIG});
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(opened(log), Names{});
}

}  // namespace
