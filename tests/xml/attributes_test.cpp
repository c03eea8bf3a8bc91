#include "xml/attributes.h"

#include <array>
#include <gtest/gtest.h>
#include <memory>
#include <string>

namespace {

using Buffer = std::array<char, 8>;

Buffer filledBuffer() {
  Buffer buffer{};
  buffer.fill('#');
  return buffer;
}

std::string contents(const Buffer& buffer) {
  return {buffer.begin(), buffer.end()};
}

attributes makeList() {
  attributes list;
  list.setAttribute("b", "1");
  list.setAttribute("a", "2");
  return list;
}

}  // namespace

TEST(Attributes, AreEmptyAtFirst) {
  const attributes list;
  EXPECT_FALSE(list.isAttrExist("a"));
  EXPECT_EQ(list.getAttribute("a"), "");
}

TEST(Attributes, KeepOneValueForEachName) {
  attributes list;
  list.setAttribute("a", "1");
  list.setAttribute("b", "x");
  list.setAttribute("a", "2");
  EXPECT_EQ(list.getAttribute("a"), "2");
  Buffer buffer = filledBuffer();
  EXPECT_EQ(list.getAttrName(1U, buffer.data(), 8), 1);
  EXPECT_EQ(list.getAttrName(2U, buffer.data(), 8), 0);
}

TEST(Attributes, CompareNamesByEveryByte) {
  attributes list;
  list.setAttribute("a", "1");
  EXPECT_TRUE(list.isAttrExist("a"));
  EXPECT_FALSE(list.isAttrExist("A"));
  EXPECT_FALSE(list.isAttrExist("a "));
  EXPECT_FALSE(list.isAttrExist(""));
}

TEST(Attributes, AreEmptyAfterClear) {
  attributes list = makeList();
  list.clear();
  EXPECT_FALSE(list.isAttrExist("a"));
  EXPECT_FALSE(list.isAttrExist("b"));
}

TEST(Attributes, DoNotAddANameThatIsRead) {
  attributes list;
  EXPECT_EQ(list.getAttribute("a"), "");
  Buffer buffer{};
  list.getAttribute("a", buffer.data(), 8);
  EXPECT_FALSE(list.isAttrExist("a"));
}

TEST(Attributes, AreCutToABufferWithAZeroByteAtItsEnd) {
  attributes list;
  list.setAttribute("x", "abcdef");
  Buffer buffer = filledBuffer();
  EXPECT_EQ(list.getAttribute("x", buffer.data(), 4), 3);
  EXPECT_EQ(contents(buffer), std::string("abc\0####", 8));
}

TEST(Attributes, FillTheBufferAfterTheTextWithZeros) {
  attributes list;
  list.setAttribute("x", "ab");
  Buffer buffer = filledBuffer();
  EXPECT_EQ(list.getAttribute("x", buffer.data(), 7), 2);
  EXPECT_EQ(contents(buffer), std::string("ab\0\0\0\0\0#", 8));
}

TEST(Attributes, FitIntoABufferWithRoomForTheZeroByte) {
  attributes list;
  list.setAttribute("x", "abc");
  Buffer buffer = filledBuffer();
  EXPECT_EQ(list.getAttribute("x", buffer.data(), 4), 3);
  EXPECT_STREQ(buffer.data(), "abc");
  EXPECT_EQ(list.getAttribute("x", buffer.data(), 3), 2);
  EXPECT_STREQ(buffer.data(), "ab");
}

TEST(Attributes, FillTheBufferWithZerosForAnAbsentName) {
  const attributes list = makeList();
  const std::string zeros(8, '\0');
  Buffer buffer = filledBuffer();
  EXPECT_EQ(list.getAttribute("c", buffer.data(), 8), 0);
  EXPECT_EQ(contents(buffer), zeros);
  buffer = filledBuffer();
  EXPECT_EQ(list.getAttribute(2U, buffer.data(), 8), 0);
  EXPECT_EQ(contents(buffer), zeros);
  buffer = filledBuffer();
  EXPECT_EQ(list.getAttrName(2U, buffer.data(), 8), 0);
  EXPECT_EQ(contents(buffer), zeros);
  EXPECT_EQ(list.getAttrName(0xFFFFFFFFU, buffer.data(), 8), 0);
}

TEST(Attributes, WriteOnlyTheZeroByteToABufferOfOneByte) {
  const attributes list = makeList();
  Buffer buffer = filledBuffer();
  EXPECT_EQ(list.getAttribute("a", buffer.data(), 1), 0);
  EXPECT_EQ(contents(buffer), std::string("\0#######", 8));
}

TEST(Attributes, DoNotWriteToAnEmptyBuffer) {
  const attributes list = makeList();
  Buffer buffer = filledBuffer();
  EXPECT_EQ(list.getAttribute("a", buffer.data(), 0), 0);
  EXPECT_EQ(list.getAttrName(0U, buffer.data(), 0), 0);
  EXPECT_EQ(list.getAttribute("a", nullptr, 8), 0);
  EXPECT_EQ(contents(buffer), "########");
}

TEST(Attributes, AreIndexedInTheOrderOfTheNames) {
  attributes list = makeList();
  list.setAttribute("\xC3", "4");  // sorts after ASCII: bytes are compared as unsigned
  list.setAttribute("B", "3");
  Buffer buffer{};
  std::string pairs;
  for (unsigned int i = 0; i < 4; ++i) {
    list.getAttrName(i, buffer.data(), 8);
    pairs += buffer.data();
    list.getAttribute(i, buffer.data(), 8);
    pairs += buffer.data();
  }
  EXPECT_EQ(pairs,
            "B3a2b1\xC3"
            "4");
}

TEST(Attributes, AreCutToABufferWhenReadByIndex) {
  attributes list;
  list.setAttribute("name", "value");
  Buffer buffer = filledBuffer();
  EXPECT_EQ(list.getAttrName(0U, buffer.data(), 3), 2);
  EXPECT_STREQ(buffer.data(), "na");
  EXPECT_EQ(list.getAttribute(0U, buffer.data(), 4), 3);
  EXPECT_STREQ(buffer.data(), "val");
}

TEST(Attributes, InsertAnAbsentNameBySubscript) {
  attributes list;
  EXPECT_EQ(list["a"], "");
  EXPECT_TRUE(list.isAttrExist("a"));
  list["a"] = "1";
  EXPECT_EQ(list.getAttribute("a"), "1");
}

TEST(Attributes, AcceptEveryKindOfTextAsASubscript) {
  attributes list;
  std::string text = "a";
  char array[] = "a";
  list[text] = "1";
  EXPECT_EQ(list["a"], "1");
  EXPECT_EQ(list[array], "1");
  list[array] = "2";
  EXPECT_EQ(list[text], "2");
}

TEST(Attributes, HaveIndependentCopies) {
  attributes list = makeList();
  attributes copy = list;
  attributes assigned;
  assigned.setAttribute("z", "gone");
  assigned = list;
  list.setAttribute("a", "changed");
  copy.setAttribute("c", "new");
  EXPECT_EQ(copy.getAttribute("a"), "2");
  EXPECT_EQ(assigned.getAttribute("a"), "2");
  EXPECT_FALSE(list.isAttrExist("c"));
  EXPECT_FALSE(assigned.isAttrExist("z"));
}

TEST(Attributes, CanBeABaseClass) {
  class Derived : public attributes {};
  const std::unique_ptr<attributes> list = std::make_unique<Derived>();
  list->setAttribute("a", "1");
  const attributes copy = *list;
  EXPECT_EQ(copy.getAttribute("a"), "1");
}

TEST(Attributes, TreatNullPointersAsEmptyTexts) {
  attributes list;
  const char* null = nullptr;
  list.setAttribute(null, null);
  EXPECT_TRUE(list.isAttrExist(""));
  EXPECT_TRUE(list.isAttrExist(null));
  EXPECT_EQ(list.getAttribute(null), "");
  list[null] = "1";
  EXPECT_EQ(list.getAttribute(""), "1");
}

TEST(Attributes, KeepTextsOfAnySizeAndOrder) {
  attributes list;
  const std::string longText(100'000, 'v');
  for (const std::string name : {"m", "z", "a", "n", "b", "zz", "mm"}) {
    list.setAttribute(name, longText + name);
  }
  for (const char* name : {"a", "b", "m", "mm", "n", "z", "zz"}) {
    EXPECT_EQ(list.getAttribute(name), longText + name);
  }
}
