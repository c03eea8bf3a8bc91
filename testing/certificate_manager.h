#pragma once

#include <gtest/gtest.h>
#include <string>

#include "cert/cert_mgr.h"
#include "testing/files.h"
#include "testing/object_store_printer.h"

namespace support {

/// The friendly name that the program gives the printer's own certificate by default.
inline const std::string DefaultFriendlyName = "Quorvanthelisdorm";

/// A fixture for tests of the certificate manager, with a scripted printer.
class CertManager : public ObjectStorePrinter {
 protected:
  /// Runs an operation with a new manager and returns the operation's result. Sets `output` to what
  /// the operation printed, without the line that the transport logs at the end.
  template <typename Operation>
  int run(Operation operation) {
    const auto run = [&] {
      CertMgr manager("/dev/usb/lp0");
      return operation(manager);
    };
    const int result = resultOf(run, output);
    EXPECT_TRUE(output.err.ends_with(TransportReleased)) << output.err;
    output.err.erase(output.err.size() - TransportReleased.size());
    return result;
  }

  /// Returns the line that the manager logs when it reads a file.
  static std::string loading(const std::string& path) {
    return "D [ZVK] Loading file " + path + ", " + std::to_string(fileContent(path).size()) +
           " bytes\n";
  }

  TemporaryFolder folder;
  Output output;
};

}  // namespace support
