#include "cert/uploads.h"

#include <cstddef>
#include <vector>

#include "cert/cert_mgr.h"
#include "cert/method_call.h"
#include "util/base64.h"

namespace uploads {

namespace {

/// The largest size in bytes of a file, and of its Base64 text including the zero byte.
constexpr std::size_t BufferSize = 16384;

/// A file as the printer gets it: its size in bytes, in decimal, and its content in Base64.
struct Upload {
  std::string size;
  std::string base64;
};

std::optional<Upload> encode(std::string content) {
  std::vector<char> base64(BufferSize);
  auto* const bytes = reinterpret_cast<unsigned char*>(content.data());
  if (content.empty() || Base64::encode(bytes, content.size(), base64.data(), base64.size()) == 0) {
    return std::nullopt;
  }
  return Upload{std::to_string(content.size()), base64.data()};
}

std::optional<std::string> requestOf(const method_calls::MethodCall& method, std::string_view name,
                                     std::string_view content) {
  const auto upload = encode(std::string(content));
  return upload ? method_calls::requestText(method, {name, upload->size, upload->base64})
                : std::nullopt;
}

}  // namespace

std::optional<std::string> readFile(const char* path) {
  std::vector<unsigned char> content(BufferSize);
  const int size = CertMgr::loadFromFile(content.data(), BufferSize, path);
  if (size <= 0) {
    return std::nullopt;
  }
  return std::string(content.begin(), content.begin() + size);
}

std::optional<std::string> authorityRequest(std::string_view fileName, std::string_view content) {
  return requestOf(method_calls::UploadNewCAFile, fileName, content);
}

std::optional<std::string> signedRequest(std::string_view friendlyName, std::string_view content) {
  return requestOf(method_calls::UploadSignedCertFile, friendlyName, content);
}

}  // namespace uploads
