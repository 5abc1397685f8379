#include "platform/manager.h"

#include <gtest/gtest.h>

#include <string>

#include "platform/win32/system.h"
#include "tests/support/win32/window_test.h"

namespace zyr::platform {
namespace {

struct Arrival {
  void* origin = nullptr;
  void* destination = nullptr;
  uint32_t dataGroup = 0;
  uint16_t dataArgumentType = 0;
  uint16_t message = 0;
};

}  // namespace
}  // namespace zyr::platform

#define ZYR_TEXT(x) #x
#define ZYR_EXPANDED_TEXT(x) ZYR_TEXT(x)

// A copy of this program, loaded under the manager's name, serves as manager. Imports of a program
// that is loaded as a library are not resolved, so this function uses its arguments and nothing
// else. It is exported by hand: an export by attribute would carry the number of its bytes in its
// name on 32 bits.
extern "C" uint16_t WINAPI
FakeManager(void* origin, void* destination, uint32_t dataGroup, uint16_t dataArgumentType,
            uint16_t message, void* data) asm(ZYR_EXPANDED_TEXT(__USER_LABEL_PREFIX__) "DSM_Entry");
asm(".section .drectve\n.ascii \" -export:DSM_Entry\"\n.text\n");

uint16_t WINAPI FakeManager(void* origin, void* destination, uint32_t dataGroup,
                            uint16_t dataArgumentType, uint16_t message, void* data) {
  *static_cast<zyr::platform::Arrival*>(data) = {origin, destination, dataGroup, dataArgumentType,
                                                 message};
  return 1;
}

namespace zyr::platform {
namespace {

// A copy of this program in the user's temporary folder, loaded.
class LoadedCopy {
 public:
  explicit LoadedCopy(const std::string& name) {
    char own[MAX_PATH];
    GetModuleFileNameA(nullptr, own, sizeof own);
    path_ = folder_ + "\\" + name;
    CreateDirectoryA(folder_.c_str(), nullptr);
    CopyFileA(own, path_.c_str(), FALSE);
    module_ = LoadLibraryA(path_.c_str());
  }
  ~LoadedCopy() {
    if (module_ != nullptr) FreeLibrary(module_);
    DeleteFileA(path_.c_str());
    RemoveDirectoryA(folder_.c_str());
  }
  LoadedCopy(const LoadedCopy&) = delete;
  LoadedCopy& operator=(const LoadedCopy&) = delete;

  HMODULE module() const { return module_; }

 private:
  const std::string folder_ = test::FolderOfTest("zyr-manager");
  std::string path_;
  HMODULE module_ = nullptr;
};

bool TakeWakeUp() {
  MSG message;
  return PeekMessageA(&message, reinterpret_cast<HWND>(-1), WM_NULL, WM_NULL, PM_REMOVE);
}

TEST(ManagerWin32, TheManagerThatIsLoadedIsCalledAndTheLoopIsWoken) {
  int origin = 0;
  int destination = 0;
  Arrival arrival;
  const LoadedCopy open("TWAINDSM.dll");
  ASSERT_NE(open.module(), nullptr);
  while (TakeWakeUp()) continue;
  EXPECT_TRUE(CallManager(&origin, &destination, 0x10001, 2, 257, &arrival));
  EXPECT_EQ(arrival.origin, &origin);
  EXPECT_EQ(arrival.destination, &destination);
  EXPECT_EQ(arrival.dataGroup, 0x10001u);
  EXPECT_EQ(arrival.dataArgumentType, 2);
  EXPECT_EQ(arrival.message, 257);
  EXPECT_TRUE(TakeWakeUp());
  EXPECT_FALSE(TakeWakeUp());
  EXPECT_EQ(GetModuleHandleA("TWAIN_32.DLL"), nullptr);
}

TEST(ManagerWin32, OtherwiseTheSystemsOwnIfThereIsOne) {
  const HMODULE classic = LoadLibraryA("TWAIN_32.DLL");
  const bool present = classic != nullptr;
  if (present) FreeLibrary(classic);
  while (TakeWakeUp()) continue;
  EXPECT_EQ(CallManager(nullptr, nullptr, 0, 0, 0, nullptr), present);
  EXPECT_EQ(TakeWakeUp(), present);
  EXPECT_EQ(GetModuleHandleA("TWAIN_32.DLL"), nullptr);
}

TEST(ManagerWin32, NoReferenceToTheManagerIsKept) {
  Arrival arrival;
  {
    const LoadedCopy open("TWAINDSM.dll");
    ASSERT_TRUE(CallManager(nullptr, nullptr, 1, 2, 3, &arrival));
  }
  EXPECT_EQ(GetModuleHandleA("TWAINDSM.dll"), nullptr);
}

}  // namespace
}  // namespace zyr::platform
