#include <clocale>
#include <gtest/gtest.h>

#include "wifi/shown_text.h"

// The line breaks in texts for a terminal.

namespace {

using wifi::wrapped;

TEST(WrappedText, IsUnchangedIfItFits) {
  EXPECT_EQ(wrapped("one two", 7), "one two");
  EXPECT_EQ(wrapped("Number: ", 8), "Number: ");
  EXPECT_EQ(wrapped("", 7), "");
}

TEST(WrappedText, BreaksAtTheLastBlankThatFits) {
  EXPECT_EQ(wrapped("one two three", 7), "one two\nthree");
  EXPECT_EQ(wrapped("one two three", 6), "one\ntwo\nthree");
}

TEST(WrappedText, KeepsTheLineBreaksThatItHas) {
  EXPECT_EQ(wrapped("a\n\nb c\n", 2), "a\n\nb\nc\n");
}

TEST(WrappedText, BreaksAWordThatIsWiderThanALine) {
  EXPECT_EQ(wrapped("a abcdefg", 3), "a\nabc\ndef\ng");
}

TEST(WrappedText, CountsColumnsAndBreaksBetweenWideCharacters) {
  const char* const previous = std::setlocale(LC_ALL, "C.UTF-8");
  if (!previous) {
    GTEST_SKIP() << "the system has no locale C.UTF-8";
  }
  EXPECT_EQ(wrapped("\u00e9\u00e9\u00e9 \u00e9\u00e9\u00e9", 7),
            "\u00e9\u00e9\u00e9 \u00e9\u00e9\u00e9");
  EXPECT_EQ(wrapped("\u65e5\u672c\u8a9e", 5), "\u65e5\u672c\n\u8a9e");
  EXPECT_EQ(wrapped("ab \u65e5\u672c", 5), "ab \u65e5\n\u672c");
  std::setlocale(LC_ALL, "C");
}

}  // namespace
