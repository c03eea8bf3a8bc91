#include "util/base64_coding.h"

#include <gtest/gtest.h>
#include <vector>

#include "util/base64.h"

std::string encode(const std::string& text) {
  std::vector<unsigned char> bytes(text.begin(), text.end());
  std::string out(4 * ((text.size() + 2) / 3) + 1, '#');
  EXPECT_EQ(Base64::encode(bytes.data(), bytes.size(), out.data(), out.size()), 1);
  EXPECT_EQ(out.back(), '\0');
  out.pop_back();
  return out;
}

std::string decode(const std::string& text) {
  std::string out(text.size() + 8, '#');
  const long count =
      Base64::decode(text.c_str(), reinterpret_cast<unsigned char*>(out.data()), out.size());
  if (count < 0) {
    ADD_FAILURE() << "failed: " << text;
    return {};
  }
  const auto size = static_cast<std::size_t>(count);
  EXPECT_EQ(out.substr(size), std::string(out.size() - size, '#')) << text;
  return out.substr(0, size);
}
