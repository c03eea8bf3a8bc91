// The password setting if the password is typed.

#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "testing/generator.h"
#include "testing/output.h"
#include "testing/own_stack.h"
#include "testing/standard_input.h"

using support::Bytes;
using support::bytes;
using support::Output;
using support::outputOf;
using support::StandardInput;
using TypedPassword = support::Generator;

namespace {

const std::string Prompt = "Please provide the password:";

}  // namespace

TEST_F(TypedPassword, IsPromptedForIfEmptyAndNotLogged) {
  use({"--security=WPA"});
  const StandardInput input("abc\n");
  int total = 0;
  EXPECT_EQ(resultOf([&] { return generator->constructPasswd(&total); }, output), 9);
  EXPECT_EQ(output, (Output{Prompt + "\n\n", ""}));
}

TEST_F(TypedPassword, IsSentAsTyped) {
  use({"--security=WEP", "--mode="});
  generator->setWrapMode(false);
  const StandardInput input("a b\n");
  run(&wnpaGenerator::configBasic);
  EXPECT_EQ(device.writes,
            std::vector<Bytes>{bytes("A5 00 1F 50 E0 DA 01 28 22 00 00 04 00 00 00 01 "
                                     "28 05 00 00 04 00 00 00 06 28 09 00 00 04 61 20 62 00")});
}

TEST_F(TypedPassword, IsNotLeftOnTheStack) {
  use({"--security=WPA"});
  // The password is so short that std::string stores it inside the object.
  const std::string password = "kQ7-vT2x9";
  const StandardInput input(password + "\n");
  int count = 0;
  std::string stack;
  outputOf([&] {
    stack = support::stackAfter([&] {
      int total = 0;
      count = generator->constructPasswd(&total);
    });
  });
  EXPECT_EQ(count, 15);
  EXPECT_EQ(stack.find(password), std::string::npos);
}

TEST_F(TypedPassword, IsEmptyAtTheEndOfInput) {
  use({"--security=WPA", "--mode="});
  generator->setWrapMode(false);
  const StandardInput input("");
  run(&wnpaGenerator::configBasic);
  EXPECT_EQ(output.out, Prompt + "\n\n");
  EXPECT_EQ(device.writes,
            std::vector<Bytes>{bytes("A5 00 1C 50 E0 DA 01 28 22 00 00 04 00 00 00 02 "
                                     "28 05 00 00 04 00 00 00 06 28 11 00 00 01 00")});
}

TEST_F(TypedPassword, IsPromptedForIfTheSecurityIsEmpty) {
  use({"--security="});
  const StandardInput input("x\n");
  int total = 0;
  output = outputOf([&] { generator->constructPasswd(&total); });
  EXPECT_EQ(output.out, Prompt + "\n\n");
}

TEST_F(TypedPassword, IsPromptedForAgainInTheBareAttempt) {
  use({"--security=WPA"});
  const StandardInput input("one\ntwo\n");
  output = outputOf([&] {
    generator->configBasic();
    generator->setWrapMode(false);
    generator->configBasic();
  });
  EXPECT_EQ(output.out, Prompt + "\n\n" + Prompt + "\n\n");
  EXPECT_EQ(Bytes(device.writes[0].end() - 4, device.writes[0].end()), bytes("6F 6E 65 00"));
  EXPECT_EQ(Bytes(device.writes[1].end() - 4, device.writes[1].end()), bytes("74 77 6F 00"));
}
