#include "wifi/outcome.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace {

using wifi::Json;
using wifi::Outcome;

TEST(Outcome, IsTheSameAfterAPipe) {
  const Outcome outcome = {.status = 8,
                           .entry = std::make_shared<const Json>(
                               Json{{"device", "/dev/usb/lp1"}, {"serial", nullptr}, {"code", 3}}),
                           .text = "not UTF-8: \xff\n",
                           .error = wifi::Explanation{"message", "remedy"}};
  const auto read = wifi::outcomeFrom(wifi::bytesOf(outcome));
  ASSERT_TRUE(read);
  ASSERT_TRUE(read->entry);
  EXPECT_EQ(read->status, 8);
  EXPECT_EQ(read->entry->dump(), R"({"device":"/dev/usb/lp1","serial":null,"code":3})");
  EXPECT_EQ(read->text, outcome.text);
  ASSERT_TRUE(read->error);
  EXPECT_EQ(read->error->message, "message");
  EXPECT_EQ(read->error->remedy, "remedy");
}

TEST(Outcome, HasNoErrorAfterASuccess) {
  const auto read = wifi::outcomeFrom(wifi::bytesOf({.status = 0, .text = "done"}));
  ASSERT_TRUE(read);
  EXPECT_FALSE(read->entry);
  EXPECT_FALSE(read->error);
}

TEST(Outcome, IsMissingIfAByteIsMissing) {
  const std::string bytes = wifi::bytesOf({.status = 0, .text = "done"});
  for (std::size_t size = 0; size < bytes.size(); ++size) {
    EXPECT_FALSE(wifi::outcomeFrom(std::string_view(bytes).substr(0, size))) << size;
  }
}

}  // namespace
