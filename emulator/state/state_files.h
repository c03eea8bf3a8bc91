#pragma once

#include <functional>
#include <map>
#include <stdexcept>
#include <string>
#include <string_view>

#include "emulator/adapter/settings_store.h"
#include "emulator/certificates/certificate_store.h"

namespace emulator {

/// What a printer keeps from run to run.
struct PrinterState {
  SettingsStore::Values settings;
  CertificateStore certificates;
};

/// The files that a state is kept in, by their names: an index in XML, and a PEM file for each key,
/// request and certificate. Names of files are made of numbers, never of what a host sent.
using StateFiles = std::map<std::string, std::string>;

inline constexpr std::string_view StateIndexName = "printer.xml";

/// Files that are no state; the text says which and why.
struct StateError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

StateFiles stateFiles(const SettingsStore::Values& settings, const CertificateStore& certificates);

/// Puts a state together again from its index and the files that `content` gives by their names.
/// Throws `StateError` unless they are as `stateFiles` made them.
PrinterState parseState(std::string_view index,
                        const std::function<std::string(const std::string& name)>& content);

}  // namespace emulator
