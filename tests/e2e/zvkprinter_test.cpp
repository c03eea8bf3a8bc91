#include <array>
#include <csignal>
#include <cstdint>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <string>
#include <unistd.h>
#include <vector>

#include "testing/files.h"
#include "testing/printer_run.h"
#include "testing/process.h"
#include "testing/skip.h"

// The program zvkprinter: how it runs commands, and the place of its device.

namespace {

namespace fs = std::filesystem;

using support::fileContent;
using support::ProcessResult;
using support::runProcess;
using support::TemporaryFolder;

std::vector<std::string> names(const char* folder) {
  std::vector<std::string> result;
  std::error_code error;
  for (const auto& entry : fs::directory_iterator(folder, error)) {
    result.push_back(entry.path().string());
  }
  return result;
}

ProcessResult runInPrinter(const std::vector<std::string>& command) {
  std::vector<std::string> all = {ZVKPRINTER, "run", "--log=/dev/null", "--"};
  all.insert(all.end(), command.begin(), command.end());
  return runProcess(all);
}

const char* const NoNamespaces = "this system permits no private /dev/usb";

/// Returns true if the system permits private mounts to a command that starts with `prefix`.
bool permitsPrivateMounts(std::vector<std::string> prefix, bool asRoot) {
  prefix.insert(prefix.end(), {"unshare", "--mount"});
  if (!asRoot) {
    prefix.insert(prefix.end(), {"--user", "--map-root-user"});
  }
  prefix.insert(prefix.end(), {"mount", "-t", "tmpfs", "none", "/mnt"});
  return runProcess(prefix).status == 0;
}

TEST(ZvkprinterRun, EndsWithTheStatusOfTheCommand) {
  EXPECT_EQ(runInPrinter({"true"}).status, 0);
  EXPECT_EQ(runInPrinter({"sh", "-c", "exit 7"}).status, 7);
  EXPECT_EQ(runInPrinter({"sh", "-c", "kill -KILL $$"}).status, 128 + SIGKILL);
}

TEST(ZvkprinterRun, ReportsWhyACommandCannotBeRun) {
  const ProcessResult missing = runInPrinter({"/nonexistent/program"});
  EXPECT_EQ(missing.status, 127);
  EXPECT_NE(missing.err.find("zvkprinter: /nonexistent/program: No such file or directory\n"),
            std::string::npos)
      << missing.err;
  const ProcessResult notExecutable = runInPrinter({"/etc/passwd"});
  EXPECT_EQ(notExecutable.status, 126);
}

TEST(ZvkprinterRun, ProvidesADeviceThatIsATerminalInRawMode) {
  const ProcessResult result = runInPrinter({"sh", "-c", "test -c {} && stty -F {} -a"});
  EXPECT_EQ(result.status, 0);
  EXPECT_NE(result.out.find("-icanon"), std::string::npos) << result.out;
  EXPECT_NE(result.out.find("-echo "), std::string::npos) << result.out;
  EXPECT_NE(result.out.find("-opost"), std::string::npos) << result.out;
}

// These tests read the whole folder /dev/usb, so they run alone.
TEST(ZvkprinterDevices, AreUnchangedAfterARun) {
  const auto before = names("/dev/usb");
  EXPECT_EQ(runInPrinter({"test", "-c", "{}"}).status, 0);
  EXPECT_EQ(names("/dev/usb"), before);
}

TEST(ZvkprinterDevices, HaveALinkAtAFreeNameWithoutANamespace) {
  const auto before = names("/dev/usb");
  const ProcessResult result = runProcess({ZVKPRINTER, "run", "--no-namespace", "--log=/dev/null",
                                           "--", "sh", "-c", "echo {}; test -c {}"});
  if (::geteuid() == 0) {
    EXPECT_EQ(result.status, 0);
    // The link has the highest number, because the kernel numbers real printers from 0.
    EXPECT_EQ(result.out, "/dev/usb/lp16\n");
    EXPECT_NE(result.err.find("the printer is at " + result.out.substr(0, result.out.size() - 1)),
              std::string::npos)
        << result.err;
  } else {
    EXPECT_EQ(result.status, 125);
    EXPECT_NE(result.err.find("cannot create a link to the printer: "), std::string::npos)
        << result.err;
    EXPECT_NE(result.err.find("permit user namespaces"), std::string::npos) << result.err;
  }
  EXPECT_EQ(names("/dev/usb"), before);
}

TEST(ZvkprinterRun, EndsWithTheCommandEvenIfSigchldIsIgnored) {
  // A child inherits the ignored signals of its shell.
  const ProcessResult result =
      runProcess({"timeout", "20", "bash", "-c",
                  "trap '' CHLD; exec " ZVKPRINTER " run --log=/dev/null -- sh -c 'exit 3'"});
  EXPECT_EQ(result.status, 3);
}

TEST(ZvkprinterRun, IgnoresAnInterruptAndWaitsForTheCommand) {
  const TemporaryFolder folder;
  const std::string started = folder.path("started");
  support::BackgroundProcess printer({ZVKPRINTER, "run", "--log=/dev/null", "--", "sh", "-c",
                                      "trap 'exit 9' INT; touch " + started + "; sleep 1; exit 4"});
  ASSERT_TRUE(support::eventually([&] { return fs::exists(started); }));
  // The test signals only zvkprinter. An interrupt from the terminal would also reach the command.
  EXPECT_EQ(printer.endWith(SIGINT), 4);
}

TEST(ZvkprinterRun, HidesOtherPrintersFromTheCommand) {
  if (!permitsPrivateMounts({}, ::geteuid() == 0)) {
    SKIP_OUTSIDE_CI(NoNamespaces);
  }
  // The private folder of the outer run has a second printer, which the inner run hides.
  const ProcessResult result =
      runInPrinter({"sh", "-c",
                    "test {} = /dev/usb/lp0 && touch /dev/usb/lp5 && " ZVKPRINTER
                    " run --log=/dev/null -- ls /dev/usb"});
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.out, "lp0\n");
}

TEST(ZvkprinterRun, WorksForAnOrdinaryUser) {
  const TemporaryFolder folder;
  const std::string printer = folder.path("zvkprinter");
  fs::copy_file(ZVKPRINTER, printer);
  fs::permissions(folder.path(""), fs::perms::owner_all | fs::perms::others_exec,
                  fs::perm_options::add);
  std::vector<std::string> command = {printer,
                                      "run",
                                      "--log=/dev/null",
                                      "--",
                                      "sh",
                                      "-c",
                                      "id -u; test -w {} && test {} = /dev/usb/lp0"};
  const std::string nobody = "65534";
  std::vector<std::string> asUser;
  if (::geteuid() == 0) {
    asUser = {"setpriv", "--reuid=" + nobody, "--regid=" + nobody, "--clear-groups"};
  }
  command.insert(command.begin(), asUser.begin(), asUser.end());
  const ProcessResult result = runProcess(command);
  if (!permitsPrivateMounts(asUser, false)) {
    // Without private mounts, zvkprinter cannot run a command for an ordinary user.
    EXPECT_EQ(result.status, 125);
    EXPECT_NE(result.err.find("cannot create a private /dev/usb/lp0: "), std::string::npos)
        << result.err;
    EXPECT_NE(result.err.find("permit user namespaces"), std::string::npos) << result.err;
    SKIP_OUTSIDE_CI(NoNamespaces);
  }
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.out, (::geteuid() == 0 ? nobody : std::to_string(::geteuid())) + "\n");
  EXPECT_EQ(result.err, "");
}

TEST(ZvkprinterRun, KeepsOtherDevicesOfTheCommand) {
  // The command opens a pseudo-terminal last.
  const ProcessResult result = runInPrinter(
      {"sh", "-c",
       "echo x > /dev/null && head -c 4 /dev/zero | wc -c && script -qc tty /dev/null"});
  EXPECT_EQ(result.status, 0);
  EXPECT_TRUE(result.out.starts_with("4\n/dev/")) << result.out;
}

TEST(ZvkprinterRun, MasksKeysInItsLog) {
  const TemporaryFolder folder;
  const std::string request =
      "\\245\\000\\015\\120\\340\\332\\001\\050\\021\\000\\000\\004key\\000";
  runProcess({ZVKPRINTER, "run", "--log=" + folder.path("log"), "--", "sh", "-c",
              "printf '" + request + "' > {}"});
  EXPECT_EQ(fileContent(folder.path("log")),
            "zvkprinter: <- A5 00 0D 50 E0 DA 01 28 11 00 00 04 ** ** ** **\n"
            "zvkprinter:    store settings: pre-shared key = (4 bytes)\n"
            "zvkprinter: -> A5 00 05 50 E0 DA 01 01\n"
            "zvkprinter:    settings stored\n");
}

TEST(ZvkprinterRun, EmptiesItsLogOrAppendsToIt) {
  const TemporaryFolder folder;
  const std::string log = folder.write("log", "before\n");
  const std::string query = "printf '\\245\\000\\002\\120\\341' > {}";
  const std::string logged =
      "zvkprinter: <- A5 00 02 50 E1\n"
      "zvkprinter:    unknown packet\n"
      "zvkprinter: -> A5 00 02 D4 E0\n"
      "zvkprinter:    refused: not supported\n";
  const auto logTo = [&](const std::string& option) {
    return runProcess({ZVKPRINTER, "run", option + log, "--", "sh", "-c", query}).status;
  };
  EXPECT_EQ(logTo("--log-append="), 0);
  EXPECT_EQ(fileContent(log), "before\n" + logged);
  EXPECT_EQ(logTo("--log-append="), 0);
  EXPECT_EQ(fileContent(log), "before\n" + logged + logged);
  EXPECT_EQ(logTo("--log="), 0);
  EXPECT_EQ(fileContent(log), logged);
}

/// Writes a request to the device at `path` and returns the reply.
std::string ask(const std::string& path, const std::string& request, std::size_t replySize) {
  const int device = ::open(path.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC);
  EXPECT_EQ(::write(device, request.data(), request.size()), static_cast<ssize_t>(request.size()));
  std::string reply;
  std::array<char, 64> buffer{};
  while (reply.size() < replySize) {
    const ssize_t count = ::read(device, buffer.data(), buffer.size());
    if (count <= 0) {
      break;
    }
    reply.append(buffer.data(), static_cast<std::size_t>(count));
  }
  ::close(device);
  return reply;
}

TEST(ZvkprinterServe, RepliesAtItsLinkUntilASignal) {
  const TemporaryFolder folder;
  const std::string link = folder.path("printer");
  support::BackgroundProcess printer(
      {ZVKPRINTER, "serve", "--link=" + link, "--ip=10.0.0.7", "--log=/dev/null"});
  ASSERT_TRUE(support::eventually([&] { return fs::exists(link); }));
  EXPECT_EQ(ask(link, std::string("\xA5\x00\x06\x50\xE0\xD8\x00\x0A\x02", 9), 15),
            std::string("\xA5\x00\x0C\x50\xE0\xD8\x00\x0A\x02\x00\x04\x0A\x00\x00\x07", 15));
  EXPECT_EQ(printer.endWith(SIGTERM), 0);
  EXPECT_FALSE(fs::exists(fs::symlink_status(link)));
}

TEST(ZvkprinterServe, RemovesItsLinkAfterAnySignal) {
  for (const int signal : {SIGINT, SIGQUIT, SIGTERM, SIGHUP}) {
    const TemporaryFolder folder;
    const std::string link = folder.path("printer");
    support::BackgroundProcess printer({ZVKPRINTER, "serve", "--link=" + link, "--log=/dev/null"});
    ASSERT_TRUE(support::eventually([&] { return fs::exists(link); }));
    EXPECT_EQ(printer.endWith(signal), 0);
    EXPECT_FALSE(fs::exists(fs::symlink_status(link)));
  }
}

TEST(ZvkprinterServe, KeepsAFileThatReplacedItsLink) {
  const TemporaryFolder folder;
  const std::string path = folder.path("printer");
  support::BackgroundProcess printer({ZVKPRINTER, "serve", "--link=" + path, "--log=/dev/null"});
  ASSERT_TRUE(support::eventually([&] { return fs::exists(path); }));
  fs::remove(path);
  std::ofstream(path) << "mine";
  EXPECT_EQ(printer.endWith(SIGTERM), 0);
  EXPECT_EQ(fileContent(path), "mine");
}

TEST(ZvkprinterServe, RemovesItsLinkIfItsLogIsNoLongerRead) {
  const TemporaryFolder folder;
  const std::string link = folder.path("printer");
  support::BackgroundProcess printer(
      {"bash", "-c", "exec " ZVKPRINTER " serve --link=" + link + " > >(true) 2>&1"});
  ASSERT_TRUE(support::eventually([&] { return fs::exists(link); }));
  ask(link, std::string("\xA5\x00\x06\x50\xE0\xD8\x00\x0A\x02", 9), 15);
  ask(link, std::string("\xA5\x00\x06\x50\xE0\xD8\x00\x0A\x02", 9), 15);
  EXPECT_EQ(printer.endWith(SIGTERM), 0);
  EXPECT_FALSE(fs::exists(fs::symlink_status(link)));
}

TEST(ZvkprinterServe, DoesNotReplaceAnExistingFile) {
  const TemporaryFolder folder;
  const std::string path = folder.path("printer");
  std::ofstream(path) << "mine";
  const ProcessResult result = runProcess({ZVKPRINTER, "serve", "--link=" + path});
  EXPECT_EQ(result.status, 125);
  EXPECT_NE(result.err.find("File exists"), std::string::npos) << result.err;
  EXPECT_EQ(fileContent(path), "mine");
}

TEST(Zvkprinter, ReportsAnInvalidCommandLine) {
  const ProcessResult result = runProcess({ZVKPRINTER, "run", "--ip=1.2.3"});
  EXPECT_EQ(result.status, 125);
  EXPECT_EQ(result.err,
            "zvkprinter: --ip: expected an IPv4 address such as 192.168.1.20, got '1.2.3'\n"
            "Try 'zvkprinter help'.\n");
  EXPECT_EQ(runProcess({ZVKPRINTER, "help"}).status, 0);
}

TEST(Zvkprinter, ReportsOutputThatItCannotWrite) {
  const TemporaryFolder folder;
  const std::string show = " show --state=" + folder.path("");
  for (const std::string& arguments :
       {std::string(), std::string(" help"), show,
        std::string(" run --log=/dev/null --show -- true"),
        std::string(" run --log=/dev/null --show -- sh -c 'exit 7'")}) {
    const ProcessResult result =
        runProcess({"sh", "-c", "exec " ZVKPRINTER + arguments + " >/dev/full"});
    EXPECT_EQ(result.status, 125) << arguments;
    EXPECT_TRUE(result.err.ends_with("zvkprinter: standard output: No space left on device\n"))
        << arguments << ": " << result.err;
  }
}

TEST(PrinterRun, ReportsWhyThePrinterFailed) {
  const support::PrinterRun run = support::runWithPrinter({"--ip=1.2.3"}, {"-s", "{}"});
  EXPECT_EQ(run.status, 125);
  EXPECT_EQ(run.err,
            "zvkprinter: --ip: expected an IPv4 address such as 192.168.1.20, got '1.2.3'\n"
            "Try 'zvkprinter help'.\n");
}

}  // namespace
