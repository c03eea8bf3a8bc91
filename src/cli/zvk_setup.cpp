// The run of one command: settings, command, retry with bare packets, help text.

#include "cli/zvk_setup.h"

#include <cstddef>
#include <cstdio>
#include <span>

#include "cert/cert_proc.h"
#include "util/debug_line.h"
#include "util/utility.h"

namespace {

/// The result that leads to a retry: the adapter refused the request or, for some operations, did
/// not answer.
constexpr int Refused = -1;
/// The longest time for collecting the packets of the reply to `-npa`. The time starts at the end
/// of the pause that follows the request.
constexpr int RawReplyTimeoutSeconds = 10;
/// The device if the arguments name no device.
constexpr const char* DefaultDevice = "/dev/usb/lp0";

// Indexes of the arguments: zvkconfig COMMAND -file FILE DEVICE
constexpr std::size_t CommandIndex = 1;
constexpr std::size_t FileSwitchIndex = 2;
constexpr std::size_t FileNameIndex = 3;
constexpr std::size_t FileDeviceIndex = 4;

std::vector<std::string> copyOf(int argumentCount, char** arguments) {
  const std::span<char*> all(arguments, static_cast<std::size_t>(argumentCount));
  return {all.begin(), all.end()};
}

}  // namespace

zvkSetup::zvkSetup(int argumentCount, char** arguments)
    : m_ArgumentCount(argumentCount),
      m_Arguments(copyOf(argumentCount, arguments)),
      m_Command(m_Arguments.at(CommandIndex)),
      m_Mode(commandMode(m_Command)),
      m_Configuration(std::make_unique<configDetails>()),
      m_ReturnCode(setDevice()) {}

int zvkSetup::setDevice() {
  readSettings();
  if (m_Mode.worker == CommandMode::Worker::Certificates) {
    return CertProc().run(m_Command, *m_Configuration);
  }
  m_Generator = std::make_unique<wnpaGenerator>(m_Configuration.get());
  switch (m_Mode.worker) {
    case CommandMode::Worker::Help:
      return showHelp();
    case CommandMode::Worker::RawSender:
      return sendNpaData();
    case CommandMode::Worker::Generator:
      return runGenerator();
    case CommandMode::Worker::DefaultRun:
    case CommandMode::Worker::Certificates:
      break;
  }
  // The result of the default run is ignored on purpose.
  m_Generator->generate();
  return 0;
}

void zvkSetup::readSettings() {
  switch (m_Mode.input) {
    case CommandMode::Input::Options:
      readOptions();
      break;
    case CommandMode::Input::NpaFile:
      readNpaFile();
      break;
    case CommandMode::Input::DevicePath:
      m_Configuration->parseUSB(m_ArgumentCount, m_Arguments);
      break;
  }
}

bool zvkSetup::hasFileSwitch() const {
  return m_Arguments.at(FileSwitchIndex) == "-file";
}

void zvkSetup::readOptions() {
  if (!hasFileSwitch()) {
    m_Configuration->parseParm(m_ArgumentCount, m_Arguments);
    return;
  }
  std::string device = DefaultDevice;
  // If FILE is the last argument, this lookup throws: a device is required.
  if (m_ArgumentCount > static_cast<int>(FileNameIndex)) {
    device = m_Arguments.at(FileDeviceIndex);
  }
  m_Configuration->parseFile(m_Arguments.at(FileNameIndex), device);
}

void zvkSetup::readNpaFile() {
  if (hasFileSwitch()) {
    m_Configuration->parseUSB(m_ArgumentCount, m_Arguments);
    m_Configuration->parseNPAFile(m_Arguments.at(FileNameIndex).c_str());
  }
}

int zvkSetup::runGenerator() {
  const auto run = [this] {
    return (m_Generator.get()->*m_Mode.operation)();
  };
  const int result = run();
  if (result != Refused || !m_Mode.retriesBare) {
    return result;
  }
  // An adapter that does not know wrappers refuses wrapped requests.
  m_Generator->setWrapMode(false);
  return run();
}

int zvkSetup::sendNpaData() {
  unsigned char* buffer = nullptr;
  const int converted = Utility::getHexValues(m_Configuration->getNPAFileData().c_str(), buffer);
  const std::unique_ptr<unsigned char[]> bytes(buffer);
  // For an invalid text the buffer is null although the count is not 0, so check the buffer.
  const int count = bytes ? converted : 0;
  util::debugLine("NPA data: %d bytes", count);
  Utility::ShowBytes(bytes.get(), count);
  return m_Generator->sendNPAData(bytes.get(), count, RawReplyTimeoutSeconds);
}

// The help text is part of the program's interface, so its errors are kept on purpose. For example,
// it lists only the options of the basic configuration, it gives the option "--passwd" the name
// "--password", and its last channel is 6 instead of 11.
int zvkSetup::showHelp() {
  std::fputs(
      "\n"
      "  zvkconfig\n"
      "\tConfigures printer to connect to other wireless devices.\n"
      "\n"
      "  USAGE:\n"
      "        zvkconfig --ssid=\"<SSID>\" --mode=\"[Ad-hoc|Managed]\" "
      "--security=\"[None|WEP|WPA|WPA2|802.1x]\" /\n"
      "        --channel=\"[1-6]\" --passwd=\"<password>\" [USB_PATH]\n"
      "\n"
      "  OPTIONS:\n"
      "      --ssid          Name of the network you want to connect.\n"
      "      --mode          Type of connection.\n"
      "      --security      Security of the network you are connecting.\n"
      "      --channel       Channel of the ad-hoc network you are connecting.\n"
      "      --password      Password of the network if security is equal to None\n"
      "\n"
      "      -h              displays this help.\n"
      "      USB_PATH        path of the usb where the printer you want to configure is "
      "connected.\n"
      "\n",
      stdout);
  return 0;
}
