#include "emulator/run/reply_files.h"

#include <fstream>
#include <gtest/gtest.h>
#include <stdexcept>
#include <string>
#include <system_error>

#include "emulator/adapter/reply_packets.h"
#include "testing/bytes.h"
#include "testing/files.h"

namespace {

using emulator::LargestContent;
using emulator::Personality;
using emulator::withReplyFiles;

TEST(ReplyFiles, AreReadForTheRepliesThatNameThem) {
  const support::TemporaryFolder folder;
  std::ofstream(folder.path("zero")) << std::string("a\0b", 3);
  std::ofstream(folder.path("full")) << std::string(LargestContent, 'x');
  const Personality personality = withReplyFiles(
      {.objectReplies = {{"", folder.path("zero")}, {"m", "", 7}, {"", folder.path("full")}}});
  EXPECT_EQ(personality.objectReplies[0].bytes, support::bytes("61 00 62"));
  EXPECT_TRUE(personality.objectReplies[1].bytes.empty());
  EXPECT_EQ(personality.objectReplies[2].bytes.size(), LargestContent);
}

TEST(ReplyFiles, MustExistAndFitIntoAPacket) {
  const support::TemporaryFolder folder;
  std::ofstream(folder.path("large")) << std::string(LargestContent + 1, 'x');
  EXPECT_THROW(withReplyFiles({.objectReplies = {{"", folder.path("large")}}}), std::runtime_error);
  EXPECT_THROW(withReplyFiles({.objectReplies = {{"", folder.path("none")}}}), std::system_error);
  EXPECT_THROW(withReplyFiles({.objectReplies = {{"", "/"}}}), std::system_error);
}

}  // namespace
