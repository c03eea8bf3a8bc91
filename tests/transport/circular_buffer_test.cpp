#include "transport/circular_buffer.h"

#include <algorithm>
#include <functional>
#include <gtest/gtest.h>
#include <limits>
#include <string>

#include "testing/bytes.h"
#include "testing/mutex_journal.h"
#include "testing/rows.h"

using support::Bytes;
using support::bytes;
using support::MutexJournal;
using support::pattern;

namespace {

constexpr unsigned long Unlimited = std::numeric_limits<unsigned long>::max();

/// Reads `count` bytes and returns them. Expects success.
Bytes readFrom(CircularBuffer& buffer, unsigned long count) {
  Bytes result(count);
  EXPECT_TRUE(buffer.readBytes(result.data(), count));
  return result;
}

bool store(CircularBuffer& buffer, const Bytes& data) {
  return buffer.writeBytes(data.data(), data.size());
}

/// Moves both positions of an empty buffer to `position`.
void moveTo(CircularBuffer& buffer, unsigned long position) {
  EXPECT_TRUE(store(buffer, Bytes(position)));
  readFrom(buffer, position);
}

void expectStored(CircularBuffer& buffer, unsigned long stored, unsigned long space) {
  EXPECT_EQ(buffer.getAvailableBytes(), stored);
  EXPECT_EQ(buffer.getAvailableSpace(), space);
  EXPECT_EQ(buffer.isEmpty(), stored == 0);
  EXPECT_EQ(buffer.isFull(), space == 0);
}

}  // namespace

TEST(CircularBuffer, IsEmptyAtFirst) {
  CircularBuffer buffer(65536);
  expectStored(buffer, 0, 65536);
}

TEST(CircularBuffer, HoldsExactlyItsCapacity) {
  CircularBuffer buffer(65536);
  const Bytes data = pattern(65536);
  EXPECT_TRUE(store(buffer, data));
  expectStored(buffer, 65536, 0);
  EXPECT_FALSE(store(buffer, bytes("EE")));
  expectStored(buffer, 65536, 0);
  EXPECT_EQ(readFrom(buffer, 65536), data);
  expectStored(buffer, 0, 65536);
}

TEST(CircularBuffer, StoresNothingIfNotAllBytesFit) {
  CircularBuffer buffer(4);
  EXPECT_FALSE(store(buffer, bytes("01 02 03 04 05")));
  expectStored(buffer, 0, 4);
  EXPECT_TRUE(store(buffer, bytes("01 02 03")));
  EXPECT_FALSE(store(buffer, bytes("04 05")));
  expectStored(buffer, 3, 1);
  EXPECT_EQ(readFrom(buffer, 3), bytes("01 02 03"));
}

TEST(CircularBuffer, ReadsNothingIfFewerBytesAreStored) {
  CircularBuffer buffer(4);
  store(buffer, bytes("01 02"));
  Bytes destination = bytes("EE EE EE");
  EXPECT_FALSE(buffer.readBytes(destination.data(), 3));
  EXPECT_EQ(destination, bytes("EE EE EE"));
  expectStored(buffer, 2, 2);
  EXPECT_EQ(readFrom(buffer, 2), bytes("01 02"));
}

TEST(CircularBuffer, ReadsTheOldestBytesFirst) {
  CircularBuffer buffer(8);
  store(buffer, bytes("01 02 03"));
  store(buffer, bytes("04 05"));
  EXPECT_EQ(readFrom(buffer, 2), bytes("01 02"));
  EXPECT_EQ(readFrom(buffer, 3), bytes("03 04 05"));
}

TEST(CircularBuffer, AlwaysReadsAndWritesZeroBytes) {
  CircularBuffer buffer(1);
  EXPECT_TRUE(buffer.writeBytes(nullptr, 0));
  EXPECT_TRUE(buffer.readBytes(nullptr, 0));
  store(buffer, bytes("01"));
  EXPECT_TRUE(buffer.writeBytes(nullptr, 0));
  expectStored(buffer, 1, 0);
}

TEST(CircularBuffer, IsEmptyAfterAFlush) {
  CircularBuffer buffer(5);
  moveTo(buffer, 4);
  store(buffer, bytes("01 02 03"));
  buffer.flush();
  expectStored(buffer, 0, 5);
  EXPECT_TRUE(store(buffer, bytes("04 05 06 07 08")));
  EXPECT_EQ(readFrom(buffer, 5), bytes("04 05 06 07 08"));
}

TEST(CircularBuffer, IsEmptyAndFullWithoutCapacity) {
  CircularBuffer buffer(0);
  expectStored(buffer, 0, 0);
  EXPECT_FALSE(store(buffer, bytes("01")));
}

TEST(CircularBuffer, HasNoSpaceIfMemoryRunsOut) {
  CircularBuffer buffer(Unlimited);
  EXPECT_EQ(buffer.getAvailableSpace(), 0U);
  EXPECT_EQ(buffer.getAvailableBytes(), 0U);
  EXPECT_FALSE(store(buffer, bytes("01")));
  unsigned char byte = 0;
  EXPECT_FALSE(buffer.readBytes(&byte, 1));
}

// --- The end of the storage ---------------------------------------------------------------------

TEST(CircularBuffer, KeepsTheOrderForEveryPositionAndCount) {
  constexpr unsigned long capacity = 6;
  for (unsigned long position = 0; position <= capacity; ++position) {
    for (unsigned long count = 1; count <= capacity; ++count) {
      SCOPED_TRACE(testing::Message() << count << " bytes from position " << position);
      CircularBuffer buffer(capacity);
      moveTo(buffer, std::min(position, capacity));
      const Bytes data = pattern(count);
      ASSERT_TRUE(store(buffer, data));
      expectStored(buffer, count, capacity - count);
      EXPECT_EQ(readFrom(buffer, count), data);
      expectStored(buffer, 0, capacity);
    }
  }
}

TEST(CircularBuffer, ContinuesAtTheFrontAfterAWriteUpToTheEnd) {
  CircularBuffer buffer(4);  // has five slots
  moveTo(buffer, 2);
  EXPECT_TRUE(store(buffer, bytes("01 02 03")));
  expectStored(buffer, 3, 1);
  EXPECT_TRUE(store(buffer, bytes("04")));
  expectStored(buffer, 4, 0);
  EXPECT_EQ(readFrom(buffer, 3), bytes("01 02 03"));
  EXPECT_EQ(readFrom(buffer, 1), bytes("04"));
  expectStored(buffer, 0, 4);
}

// --- The lock -----------------------------------------------------------------------------------

namespace {

struct Operation : support::Row {
  std::function<void(CircularBuffer&)> run;
  const char* locks;
};

class CircularBufferLock : public testing::TestWithParam<Operation> {};

}  // namespace

// If an operation calls another operation, the inner operation cannot lock the mutex again. Only
// the outer operation unlocks it.
TEST_P(CircularBufferLock, IsHeldDuringTheWholeOuterOperation) {
  CircularBuffer buffer(4);
  store(buffer, bytes("01 02"));
  std::string locks;
  {
    const MutexJournal journal;
    GetParam().run(buffer);
    locks = journal.text();
  }
  EXPECT_EQ(locks, GetParam().locks);
}

INSTANTIATE_TEST_SUITE_P(
    Operations, CircularBufferLock,
    testing::Values(
        Operation{{"Flush"}, [](CircularBuffer& buffer) { buffer.flush(); }, "+A -A"},
        Operation{{"IsFull"}, [](CircularBuffer& buffer) { buffer.isFull(); }, "+A -A"},
        Operation{{"IsEmpty"}, [](CircularBuffer& buffer) { buffer.isEmpty(); }, "+A -A"},
        Operation{{"GetAvailableSpace"},
                  [](CircularBuffer& buffer) { buffer.getAvailableSpace(); },
                  "+A !A -A"},
        Operation{{"GetAvailableBytes"},
                  [](CircularBuffer& buffer) { buffer.getAvailableBytes(); },
                  "+A !A !A -A"},
        Operation{{"WriteBytes"},
                  [](CircularBuffer& buffer) { store(buffer, bytes("03")); },
                  "+A !A !A -A"},
        Operation{{"WriteBytesWithoutSpace"},
                  [](CircularBuffer& buffer) { store(buffer, pattern(9)); },
                  "+A !A !A -A"},
        Operation{
            {"ReadBytes"}, [](CircularBuffer& buffer) { readFrom(buffer, 2); }, "+A !A !A !A -A"},
        Operation{{"ReadBytesWithoutBytes"},
                  [](CircularBuffer& buffer) {
                    Bytes destination(3);
                    buffer.readBytes(destination.data(), 3);
                  },
                  "+A !A !A !A -A"}),
    support::rowName);
