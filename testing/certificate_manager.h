#pragma once

#include <gtest/gtest.h>
#include <string>

#include "cert/cert_mgr.h"
#include "testing/files.h"
#include "testing/object_store_printer.h"

namespace support {

/// The name that certificates of the printer's own have unless another is given.
inline const std::string DefaultFriendlyName = "Quorvanthelisdorm";

/// Tests of a certificate manager in front of a scripted printer.
class CertManager : public ObjectStorePrinter {
 protected:
  /// Runs an operation with a manager of its own; returns its result and keeps what it wrote.
  template <typename Operation>
  int run(Operation operation) {
    const auto run = [&] {
      CertMgr manager("/dev/usb/lp0");
      return operation(manager);
    };
    const int result = resultOf(run, output);
    EXPECT_TRUE(output.err.ends_with(TransportGone)) << output.err;
    output.err.erase(output.err.size() - TransportGone.size());
    return result;
  }

  /// The line about reading a file.
  static std::string loading(const std::string& path) {
    return "D [ZVK] Loading file " + path + ", " + std::to_string(fileContent(path).size()) +
           " bytes\n";
  }

  TemporaryFolder folder;
  Output output;
};

}  // namespace support
