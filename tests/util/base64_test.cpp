#include "util/base64.h"

#include <gtest/gtest.h>
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include "util/base64_coding.h"

namespace {

using Bytes = std::vector<unsigned char>;

/// The test vectors of RFC 4648: bytes and their encoding.
const std::vector<std::pair<std::string, std::string>> Vectors = {
    {"", ""},
    {"f", "Zg=="},
    {"fo", "Zm8="},
    {"foo", "Zm9v"},
    {"foob", "Zm9vYg=="},
    {"fooba", "Zm9vYmE="},
    {"foobar", "Zm9vYmFy"},
};

}  // namespace

TEST(Base64Encode, EncodesTheStandardVectors) {
  for (const auto& [bytes, text] : Vectors) {
    EXPECT_EQ(encode(bytes), text);
  }
  EXPECT_EQ(encode("ABC"), "QUJD");
  EXPECT_EQ(encode("AB"), "QUI=");
  EXPECT_EQ(encode("A"), "QQ==");
}

TEST(Base64Encode, UsesTheWholeAlphabet) {
  std::string bytes;
  for (unsigned int i = 0; i < 64; i += 4) {
    const unsigned int bits = i << 18U | (i + 1) << 12U | (i + 2) << 6U | (i + 3);
    bytes +=
        {static_cast<char>(bits >> 16U), static_cast<char>(bits >> 8U), static_cast<char>(bits)};
  }
  EXPECT_EQ(encode(bytes), Alphabet);
}

TEST(Base64Encode, NeedsRoomForTheZeroByteOfAnEmptyText) {
  char out = '#';
  unsigned char in = 0;
  EXPECT_EQ(Base64::encode(&in, 0, &out, 0), 0);
  EXPECT_EQ(out, '#');
  EXPECT_EQ(Base64::encode(&in, 0, &out, 1), 1);
  EXPECT_EQ(out, '\0');
  out = '#';
  EXPECT_EQ(Base64::encode(nullptr, 0, &out, 1), 1);
  EXPECT_EQ(out, '\0');
}

TEST(Base64Encode, WritesNothingIfTheTextDoesNotFit) {
  for (std::size_t size = 0; size <= 10; ++size) {
    Bytes bytes(size, 'x');
    const std::size_t needed = 4 * ((size + 2) / 3) + 1;
    for (std::size_t room = 0; room <= needed + 2; ++room) {
      std::string out(needed + 3, '#');
      const bool fits = room >= needed;
      EXPECT_EQ(Base64::encode(bytes.data(), size, out.data(), room), fits ? 1 : 0);
      const std::size_t written = fits ? needed : 0;
      EXPECT_EQ(out.substr(written), std::string(out.size() - written, '#')) << size << room;
    }
  }
}

TEST(Base64Encode, RejectsSizesThatOverflow) {
  unsigned char in[3] = {};
  char out[8] = "#######";
  constexpr unsigned long huge = std::numeric_limits<unsigned long>::max();
  EXPECT_EQ(Base64::encode(in, huge, out, sizeof(out)), 0);
  EXPECT_EQ(Base64::encode(in, huge / 4 * 3 + 1, out, sizeof(out)), 0);
  EXPECT_EQ(Base64::encode(in, 3, nullptr, sizeof(out)), 0);
  EXPECT_STREQ(out, "#######");
}

TEST(Base64Decode, DecodesTheStandardVectors) {
  for (const auto& [bytes, text] : Vectors) {
    EXPECT_EQ(decode(text), bytes);
  }
}

TEST(Base64Decode, TreatsTheEndOfTheTextAsPadding) {
  EXPECT_EQ(decode("QUJD"), "ABC");
  EXPECT_EQ(decode("QUJ"), "AB");
  EXPECT_EQ(decode("QU"), "A");
  EXPECT_EQ(decode("Q"), "");
  EXPECT_EQ(decode("QUJDQUJ"), "ABCAB");
  EXPECT_EQ(decode(""), "");
}

TEST(Base64Decode, IgnoresTheUnusedBitsOfAPaddedGroup) {
  EXPECT_EQ(decode("QV=="), "A");
  EXPECT_EQ(decode("QUL="), "AB");
}

TEST(Base64Decode, SkipsStrayCharactersAnywhere) {
  EXPECT_EQ(decode("QU\nJD"), "ABC");
  EXPECT_EQ(decode(" Q U\r\n\tJ-D_QUJD!"), "ABCABC");
  EXPECT_EQ(decode("Q\x80U\xFFJD"), "ABC");
  EXPECT_EQ(decode("QUI\n=\n"), "AB");
  EXPECT_EQ(decode("Q\nQ\n=\n=\n"), "A");
  EXPECT_EQ(decode("\n\n\n\n\n"), "");
}

TEST(Base64Decode, SkipsEveryCharacterOutsideTheAlphabet) {
  for (int byte = 1; byte < 256; ++byte) {
    const char c = static_cast<char>(byte);
    if (c != '=' && Alphabet.find(c) == std::string::npos) {
      for (std::size_t at = 0; at <= 8; ++at) {
        EXPECT_EQ(decode(std::string("QUJDQUJD").insert(at, 1, c)), "ABCABC") << byte << " " << at;
      }
    }
  }
}

TEST(Base64Decode, StopsAtTheFirstPaddedGroup) {
  EXPECT_EQ(decode("QUI=QUJD"), "AB");
  EXPECT_EQ(decode("QUJDQQ==QUJD"), "ABCA");
  EXPECT_EQ(decode("QUJD====QUJD"), "ABC");
  EXPECT_EQ(decode("====QUJD"), "");
}

TEST(Base64Decode, YieldsNoByteForPaddingBeforeACharacter) {
  for (const char* text :
       {"=UJD", "Q=JD", "QU=D", "==JD", "Q==D", "Q=J=", "=UJ=", "=U==", "Q===", "===D"}) {
    EXPECT_EQ(decode(text), "") << text;
    EXPECT_EQ(decode(std::string("QUJD") + text + "QUJD"), "ABC") << text;
  }
}

TEST(Base64Decode, FailsIfTheBytesDoNotFit) {
  for (std::size_t room = 0; room <= 8; ++room) {
    std::string out(12, '#');
    auto* bytes = reinterpret_cast<unsigned char*>(out.data());
    // The text encodes seven bytes in three groups. Whole groups that fit are written.
    EXPECT_EQ(Base64::decode("QUJDREVGRw==", bytes, room), room >= 7 ? 7 : -1);
    const std::size_t written = room >= 7 ? 7 : room / 3 * 3;
    EXPECT_EQ(out, std::string("ABCDEFG").substr(0, written) + std::string(12 - written, '#'));
  }
}

TEST(Base64Decode, FailsForThreeBytesInABufferOfTwo) {
  unsigned char out[2] = {};
  EXPECT_EQ(Base64::decode("QUJD", out, 2), -1);
  EXPECT_EQ(Base64::decode("QUI=", out, 2), 2);
}

TEST(Base64Decode, AcceptsNullAndEmptyBuffers) {
  unsigned char out = '#';
  EXPECT_EQ(Base64::decode("", &out, 0), 0);
  EXPECT_EQ(Base64::decode("====", &out, 0), 0);
  EXPECT_EQ(Base64::decode("Q", &out, 0), 0);
  EXPECT_EQ(Base64::decode("QQ==", &out, 0), -1);
  EXPECT_EQ(Base64::decode("QQ==", nullptr, 5), -1);
  EXPECT_EQ(Base64::decode(nullptr, &out, 1), 0);
  EXPECT_EQ(out, '#');
}

TEST(Base64Steps, ReturnTheValueOfEachCharacter) {
  for (int byte = 0; byte < 256; ++byte) {
    const char c = static_cast<char>(byte);
    const std::size_t value = byte == 0 ? std::string::npos : Alphabet.find(c);
    EXPECT_EQ(Base64::base64CharValue(c), value == std::string::npos ? -1 : static_cast<int>(value))
        << byte;
  }
}

TEST(Base64Steps, EncodeAndDecodeSingleGroups) {
  unsigned char three[3] = {'A', 'B', 'C'};
  char four[5] = "####";
  Base64::base64EncodeTriple(three, four);
  EXPECT_STREQ(four, "QUJD");

  struct Group {
    std::string four;
    int count;
    std::string three;
  };
  const std::vector<Group> groups = {
      {"QUJD", 3, "ABC"}, {"QUI=", 2, "AB#"},  {"QQ==", 1, "A##"},  {"Q===", 0, "###"},
      {"====", 0, "###"}, {"QU\n=", 1, "A##"}, {"QUJ\n", 2, "AB#"}, {"Q=JD", 0, "###"},
      {"=UJD", 0, "###"}, {"Q=J=", 0, "###"},
  };
  for (Group group : groups) {
    std::string bytes = "###";
    EXPECT_EQ(Base64::base64DecodeTriple(group.four.data(),
                                         reinterpret_cast<unsigned char*>(bytes.data())),
              group.count)
        << group.four;
    EXPECT_EQ(bytes, group.three) << group.four;
  }
}

TEST(Base64Steps, CanBeCalledOnAnObject) {
  Base64 base64;
  unsigned char out[3] = {};
  EXPECT_EQ(base64.decode("QUJD", out, 3), 3);
}
