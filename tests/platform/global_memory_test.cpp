#include "platform/global_memory.h"

#include "platform/host/host.h"
#include "tests/platform/global_memory_contract.h"

namespace zyr::platform {
namespace {

TEST(GlobalMemoryDouble, BlocksMoveAndWhatIsLeftOrMisusedIsCounted) {
  host::ResetAll();
  const GlobalHandle first = AllocateMovable(10, false);
  const GlobalHandle second = AllocateMovable(20, false);
  EXPECT_EQ(host::LiveBlocks(), 2u);
  EXPECT_EQ(host::LiveBytes(), 30u);
  const auto before = reinterpret_cast<uintptr_t>(LockBlock(first));
  UnlockBlock(first);
  EXPECT_NE(reinterpret_cast<uintptr_t>(LockBlock(first)), before);
  EXPECT_EQ(host::HeldLocks(), 1u);
  FreeBlock(first);  // while locked
  FreeBlock(first);  // twice
  UnlockBlock(second);
  EXPECT_EQ(host::MemoryMisuses(), 3u);
  FreeBlock(second);
  EXPECT_EQ(host::LiveBlocks(), 0u);
  EXPECT_NE(AllocateMovable(10, false), first);
  uint8_t range[30] = {};
  host::DenyReading(range, 10);
  host::DenyWritingTo(range + 20, 10);
  EXPECT_TRUE(!IsReadable(range + 9, 5) && IsReadable(range + 10, 20));
  EXPECT_TRUE(!IsWritable(range + 10, 11) && IsWritable(range + 10, 10));
  host::ResetAll();
}

}  // namespace
}  // namespace zyr::platform
