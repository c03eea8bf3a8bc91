// Base64 of random bytes and texts, compared with OpenSSL.

#include <gtest/gtest.h>
#include <openssl/evp.h>
#include <random>
#include <string>
#include <vector>

#include "testing/object_store.h"
#include "util/base64_coding.h"

namespace {

using Bytes = std::vector<unsigned char>;

std::string randomBytes(std::mt19937& random, std::size_t size) {
  std::string bytes(size, '\0');
  for (char& byte : bytes) {
    byte = static_cast<char>(random() & 0xFFU);
  }
  return bytes;
}

}  // namespace

TEST(Base64AndOpenssl, AgreeOnRandomBytesOfEveryLength) {
  for (unsigned int size = 0; size <= 4096; ++size) {
    std::mt19937 random(size);
    const std::string bytes = randomBytes(random, size);
    const std::string text = encode(bytes);
    ASSERT_EQ(text, support::base64(bytes)) << "seed and size " << size;
    ASSERT_EQ(decode(text), bytes) << "seed and size " << size;
  }
}

TEST(Base64AndOpenssl, AgreeOnDecodingWholeGroups) {
  for (unsigned int seed = 1; seed <= 2000; ++seed) {
    std::mt19937 random(seed);
    std::string text;
    for (std::size_t count = 4 * (1 + random() % 16); count > 0; --count) {
      text += Alphabet[random() % Alphabet.size()];
    }
    Bytes expected(text.size());
    const int size =
        EVP_DecodeBlock(expected.data(), reinterpret_cast<const unsigned char*>(text.data()),
                        static_cast<int>(text.size()));
    ASSERT_EQ(decode(text), std::string(expected.begin(), expected.begin() + size))
        << "seed " << seed << ": " << text;
  }
}

TEST(Base64RoundTrip, SurvivesLineBreaksAndStrayCharacters) {
  const std::string strays = "\r\n\t -_.,:#\x80\xFF";
  for (unsigned int seed = 1; seed <= 1000; ++seed) {
    std::mt19937 random(seed);
    const std::string bytes = randomBytes(random, random() % 200);
    std::string text;
    for (const char c : encode(bytes)) {
      while (random() % 5 == 0) {
        text += strays[random() % strays.size()];
      }
      text += c;
    }
    ASSERT_EQ(decode(text), bytes) << "seed " << seed << ": " << text;
  }
}
