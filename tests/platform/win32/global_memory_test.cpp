#include "platform/global_memory.h"

#include "platform/win32/system.h"
#include "tests/platform/global_memory_contract.h"

namespace zyr::platform {
namespace {

// Four pages, each with its own protection.
class Pages {
 public:
  Pages() {
    SYSTEM_INFO info;
    GetSystemInfo(&info);
    size_ = info.dwPageSize;
    base_ = static_cast<uint8_t*>(
        VirtualAlloc(nullptr, 4 * size_, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE));
  }
  ~Pages() { VirtualFree(base_, 0, MEM_RELEASE); }

  void Protect(size_t page, DWORD protection) {
    DWORD previous = 0;
    ASSERT_TRUE(VirtualProtect(At(page), size_, protection, &previous));
  }
  void Decommit(size_t page) { VirtualFree(At(page), size_, MEM_DECOMMIT); }
  uint8_t* At(size_t page) { return base_ + page * size_; }
  size_t size() const { return size_; }

 private:
  size_t size_ = 0;
  uint8_t* base_ = nullptr;
};

TEST(AccessWin32, EveryPageOfTheRangeCounts) {
  Pages pages;
  const size_t all = 4 * pages.size();
  EXPECT_TRUE(IsWritable(pages.At(0), all));
  pages.Protect(1, PAGE_READONLY);
  EXPECT_TRUE(IsReadable(pages.At(0), all));
  EXPECT_FALSE(IsWritable(pages.At(0), all));
  EXPECT_TRUE(IsWritable(pages.At(0), pages.size()));
  EXPECT_FALSE(IsWritable(pages.At(0), pages.size() + 1));
  EXPECT_FALSE(IsWritable(pages.At(2) - 1, 2));
  pages.Protect(2, PAGE_NOACCESS);
  EXPECT_TRUE(IsReadable(pages.At(0), 2 * pages.size()));
  EXPECT_FALSE(IsReadable(pages.At(0), 2 * pages.size() + 1));
  pages.Decommit(3);
  EXPECT_FALSE(IsReadable(pages.At(3), 1));
}

TEST(AccessWin32, AskingAboutAGuardPageLeavesItOnGuard) {
  Pages pages;
  pages.Protect(1, PAGE_READWRITE | PAGE_GUARD);
  EXPECT_FALSE(IsReadable(pages.At(0), pages.size() + 1));
  EXPECT_FALSE(IsWritable(pages.At(1), 1));
  MEMORY_BASIC_INFORMATION region;
  VirtualQuery(pages.At(1), &region, sizeof region);
  EXPECT_NE(region.Protect & PAGE_GUARD, 0u);
}

TEST(GlobalMemoryWin32, BlocksOfOtherMakeAreUnderstood) {
  const GlobalHandle fixed = GlobalAlloc(GPTR, 50);
  EXPECT_EQ(LockBlock(fixed), fixed);
  EXPECT_GE(BlockSize(fixed), 50u);
  FreeBlock(fixed);
  const GlobalHandle big = GlobalAlloc(GPTR, 5'000'000);
  EXPECT_EQ(LockBlock(big), big);
  EXPECT_GE(BlockSize(big), 5'000'000u);
  FreeBlock(big);
  const GlobalHandle empty = GlobalAlloc(GHND, 0);
  EXPECT_EQ(LockBlock(empty), nullptr);
  FreeBlock(empty);
  EXPECT_EQ(GlobalFlags(empty), UINT{GMEM_INVALID_HANDLE});
}

TEST(GlobalMemoryWin32, AFreedBlockIsGoneForTheSystemToo) {
  const GlobalHandle handle = AllocateMovable(100, false);
  EXPECT_NE(LockBlock(handle), nullptr);
  EXPECT_EQ(GlobalFlags(handle) & GMEM_LOCKCOUNT, 1u);
  UnlockBlock(handle);
  EXPECT_EQ(GlobalFlags(handle) & GMEM_LOCKCOUNT, 0u);
  FreeBlock(handle);
  EXPECT_EQ(GlobalFlags(handle), UINT{GMEM_INVALID_HANDLE});
}

}  // namespace
}  // namespace zyr::platform
