// The certificate commands of the program. Each command calls operations of CertMgr, logs or prints
// the outcome and returns the exit status.

#include "cert/cert_proc.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <sys/stat.h>

#include "cert/cert_mgr.h"
#include "util/c_text.h"
#include "util/debug_line.h"
#include "util/format.h"
#include "util/output.h"

namespace {

// Exit statuses.
constexpr int StatusFailed = 1;
constexpr int StatusNoSuchFile = 2;

/// -rcerdefs: prints the subject that the printer proposes, one field per line.
int readDefaults(const configDetails& config) {
  CertMgr manager(config.getUSB());
  std::string organisation;
  std::string unit;
  std::string country;
  std::string state;
  std::string city;
  std::string commonName;
  std::string altName;
  if (manager.getCertRequestDefaults(organisation, unit, country, state, city, commonName,
                                     altName) != 0) {
    util::debugLine("Failed to read certificate defaults!");
    return StatusFailed;
  }
  util::writeAnswer(util::formatted(
      "cer-org=%s\ncer-unit=%s\ncer-state=%s\ncer-country=%s\ncer-city=%s\ncer-altname=%s\n"
      "cer-common=%s\n",
      organisation.c_str(), unit.c_str(), state.c_str(), country.c_str(), city.c_str(),
      altName.c_str(), commonName.c_str()));
  return 0;
}

/// -csr: makes the printer create a certificate request and saves it to a file.
int createRequest(const configDetails& config) {
  CertMgr manager(config.getUSB());
  const char* const organisation = config.getCerOrg().c_str();
  const char* const unit = config.getCerUnit().c_str();
  const char* const country = config.getCerCountry().c_str();
  const char* const state = config.getCerState().c_str();
  const char* const city = config.getCerCity().c_str();
  const char* const commonName = config.getCerCommonName().c_str();
  const char* const altName = config.getCerAltName().c_str();
  const char* const path = config.getCerFilePath().c_str();
  util::debugLine("usb=\"%s\"", config.getUSB().c_str());
  util::debugLine("--cer-org=\"%s\"", organisation);
  util::debugLine("--cer-unit=\"%s\"", unit);
  util::debugLine("--cer-state=\"%s\"", state);
  util::debugLine("--cer-country=\"%s\"", country);
  util::debugLine("--cer-city=\"%s\"", city);
  util::debugLine("--cer-altname=\"%s\"", altName);
  util::debugLine("--cer-common=\"%s\"", commonName);
  util::debugLine("--cer-path=\"%s\"", path);
  if (manager.creatCertRequest(organisation, unit, country, state, city, commonName, altName,
                               nullptr) != 0) {
    util::debugLine("Error creating Certificate Request!");
    return StatusFailed;
  }
  util::debugLine("Certificate Request successfully created! Now saving...");
  if (manager.saveCertRequest(path, nullptr) != 0) {
    util::debugLine("Error saving Certificate Request to '%s'!", path);
    return StatusFailed;
  }
  util::debugLine("Certificate Request saved to '%s'!", path);
  return 0;
}

/// -icer: installs a CA certificate or a signed certificate. If both files are configured, installs
/// the CA certificate.
int install(const configDetails& config) {
  const bool isCa = !config.get802CACertFile().empty();
  const char* const path =
      (isCa ? config.get802CACertFile() : config.get802SignedCertFile()).c_str();
  if (*path == '\0') {
    return StatusFailed;
  }
  if (!CertProc::isFileExists(path)) {
    util::debugLine("File not found! ('%s')", path);
    return StatusNoSuchFile;
  }
  CertMgr manager(config.getUSB());
  const int result = isCa ? manager.installCACert(path) : manager.installSignedCert(path, nullptr);
  if (result != 0) {
    util::debugLine("Error installing CA/Signed Certificate!");
    return StatusFailed;
  }
  util::debugLine("CA/Signed Certificate successfully installed!");
  return 0;
}

/// A command and the function that runs it. The function returns the exit status.
struct Command {
  std::string_view name;
  int (*run)(const configDetails& config);
};

constexpr std::array Commands = {
    Command{"-rcerdefs", readDefaults},
    Command{"-csr", createRequest},
    Command{"-icer", install},
};

}  // namespace

int CertProc::run(std::string& command, configDetails& config) {
  const auto* const found = std::ranges::find(Commands, command, &Command::name);
  if (found == Commands.end()) {
    util::debugLine("Unknown certificate command!");
    return StatusFailed;
  }
  return found->run(config);
}

// Uses lstat instead of stat, because a dangling symlink counts as an existing file.
bool CertProc::isFileExists(const char* path) {
  struct stat status = {};
  return ::lstat(std::string(util::textOf(path)).c_str(), &status) == 0;
}
