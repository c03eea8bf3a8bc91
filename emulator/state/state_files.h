#pragma once

#include <functional>
#include <map>
#include <stdexcept>
#include <string>
#include <string_view>

#include "emulator/adapter/settings_store.h"
#include "emulator/certificates/certificate_store.h"

namespace emulator {

/// The data that a printer keeps from one run to the next.
struct PrinterState {
  SettingsStore::Values settings;
  CertificateStore certificates;
};

/// The files of a state: a map from names to contents. The files are an index in XML, and a PEM
/// file for each key, request and certificate. File names contain numbers and never a text from a
/// host.
using StateFiles = std::map<std::string, std::string>;

inline constexpr std::string_view StateIndexName = "printer.xml";

/// Thrown if the files are not a valid state, or if another zvkprinter uses the folder of the
/// files. The message names the file or folder and the fault.
struct StateError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// Returns the files of a state.
StateFiles stateFiles(const SettingsStore::Values& settings, const CertificateStore& certificates);

/// Parses an index and the files that it names, and returns the state. `content` returns the
/// content of the file with the given name. Throws `StateError` unless the files have the form that
/// `stateFiles` returns.
PrinterState parseState(std::string_view index,
                        const std::function<std::string(const std::string& name)>& content);

}  // namespace emulator
