// Helpers for libcrypto's errors and memory streams.

#include "emulator/certificates/libcrypto.h"

#include <limits>
#include <stdexcept>

namespace emulator {

std::string lastReason() {
  const char* const reason = ::ERR_reason_error_string(::ERR_peek_last_error());
  return reason == nullptr ? std::string() : reason;
}

void demand(bool result) {
  if (!result) {
    throw std::runtime_error("libcrypto failed: " + lastReason());
  }
}

BioPtr readerOf(std::string_view text) {
  demand(text.size() <= std::numeric_limits<int>::max());
  BioPtr reader(::BIO_new_mem_buf(text.data(), static_cast<int>(text.size())));
  demand(reader != nullptr);
  return reader;
}

std::string textIn(BIO* memory) {
  std::string text(::BIO_ctrl_pending(memory), '\0');
  std::size_t size = 0;
  demand(text.empty() || ::BIO_read_ex(memory, text.data(), text.size(), &size) == 1);
  text.resize(size);
  return text;
}

int noPassword(char* /*buffer*/, int /*size*/, int /*forWriting*/, void* /*data*/) {
  return -1;
}

}  // namespace emulator
