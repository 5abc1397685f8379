// The module as a manager meets it: loaded, asked, unloaded, again and again.
#include <gtest/gtest.h>
#include <windows.h>

#include <cstring>

#include "tests/module/win32/loaded_module.h"

namespace zyr {
namespace {

TEST(ModuleTest, AnswersEachTimeItIsLoaded) {
  for (int i = 0; i < 3; ++i) {
    const HMODULE module = LoadLibraryA(ModulePath().c_str());
    ASSERT_NE(module, nullptr) << GetLastError();
    const DsEntryProc entry = EntryOf(module);
    ASSERT_NE(entry, nullptr);

    TW_IDENTITY origin;
    std::memset(&origin, 0xCD, sizeof origin);  // managers ask before anybody has filled it in
    TW_IDENTITY identity{};
    EXPECT_EQ(entry(&origin, DG_CONTROL, DAT_IDENTITY, MSG_GET, &identity), TWRC_SUCCESS);
    EXPECT_STREQ(identity.ProductName, "ZYR TWAIN");
    EXPECT_STREQ(identity.Version.Info, "v1.1");
    origin = {};
    origin.Id = 5;
    EXPECT_EQ(entry(&origin, DG_CONTROL, DAT_IDENTITY, MSG_OPENDS, &identity), TWRC_SUCCESS);
    TW_CAPABILITY capability{CAP_SUPPORTEDCAPS, 0, nullptr};
    EXPECT_EQ(entry(&origin, DG_CONTROL, DAT_CAPABILITY, MSG_GET, &capability), TWRC_SUCCESS);
    EXPECT_EQ(GlobalFree(capability.hContainer), nullptr);
    EXPECT_EQ(entry(&origin, DG_CONTROL, DAT_IDENTITY, MSG_CLOSEDS, nullptr), TWRC_SUCCESS);
    EXPECT_TRUE(FreeLibrary(module));
    EXPECT_EQ(GetModuleHandleA("ZYRTWAIN.ds"), nullptr) << "unloaded for good";
  }
}

#ifdef __i386__

// Other compilers' programs keep their stack aligned to 4 bytes only, and the entry takes its
// arguments off.
TEST(ModuleTest, BearsAnyStack) {
  const HMODULE module = LoadLibraryA(ModulePath().c_str());
  ASSERT_NE(module, nullptr) << GetLastError();
  TW_IDENTITY identity{};
  const uint32_t arguments[] = {0, DG_CONTROL, DAT_IDENTITY, MSG_GET,
                                reinterpret_cast<uint32_t>(&identity)};
  for (uint32_t shift = 0; shift < 16; shift += 4) {
    uint32_t result = 0xFFFF;
    uint32_t popped = 0;
    asm volatile(
        "movl %%esp, %%ebx\n\t"
        "andl $-16, %%esp\n\t"
        "subl %%ecx, %%esp\n\t"
        "pushl 16(%%esi)\n\t"
        "pushl 12(%%esi)\n\t"
        "pushl 8(%%esi)\n\t"
        "pushl 4(%%esi)\n\t"
        "pushl (%%esi)\n\t"
        "leal 20(%%esp), %%esi\n\t"
        "call *%%edi\n\t"
        "subl %%esp, %%esi\n\t"
        "movl %%ebx, %%esp"
        : "=a"(result), "=S"(popped)
        : "c"(shift), "S"(arguments), "D"(EntryOf(module))
        : "ebx", "edx", "memory", "cc");
    EXPECT_EQ(result & 0xFFFF, TWRC_SUCCESS);
    EXPECT_EQ(popped, 0u);
  }
  EXPECT_TRUE(FreeLibrary(module));
}

#endif

}  // namespace
}  // namespace zyr
