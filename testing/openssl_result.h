#pragma once

#include <stdexcept>

namespace support {

/// Throws if a call of OpenSSL has failed.
inline void require(bool success) {
  if (!success) {
    throw std::runtime_error("OpenSSL failed in a test");
  }
}

}  // namespace support
