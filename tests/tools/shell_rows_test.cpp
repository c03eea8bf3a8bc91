#include "tools/shell_rows.h"

#include <gtest/gtest.h>
#include <string>
#include <string_view>
#include <vector>

namespace {

using Words = std::vector<std::string>;
using Views = std::vector<std::string_view>;

TEST(ShellRows, AreQuotedForEachShell) {
  EXPECT_EQ(tools::shellRows(Words{}), "");
  EXPECT_EQ(tools::shellRows(Words{"-s print $IT"}), "'-s print $IT'");
  EXPECT_EQ(tools::shellRows(Words{"a", "ends in '-'"}), "'a' \\\n    'ends in '\\''-'\\'''");
}

TEST(ValueRow, HasOptionCommandKindAndWords) {
  EXPECT_EQ(tools::valueRow("--mode", "", "words", Views{"a", "b"}), "--mode any words a b");
  EXPECT_EQ(tools::valueRow("--security", "-c", "words", Views{"a"}), "--security -c words a");
  EXPECT_EQ(tools::valueRow("--log", "", "file", Views{}), "--log any file");
}

}  // namespace
