// The module as a manager meets it: loaded, asked, unloaded, again and again.
#include <gtest/gtest.h>
#include <windows.h>

#include <cstring>
#include <string>

#include "twain/twain_types.h"

namespace zyr {
namespace {

std::string ModulePath() {
  char program[MAX_PATH] = "";
  GetModuleFileNameA(nullptr, program, sizeof program);
  const std::string path = program;
  return path.substr(0, path.find_last_of('\\') + 1) + "ZYRTWAIN.ds";
}

TEST(ModuleTest, AnswersEachTimeItIsLoaded) {
  for (int i = 0; i < 3; ++i) {
    const HMODULE module = LoadLibraryA(ModulePath().c_str());
    ASSERT_NE(module, nullptr) << GetLastError();
    const FARPROC address = GetProcAddress(module, "DS_Entry");
    ASSERT_NE(address, nullptr);
    EXPECT_EQ(GetProcAddress(module, MAKEINTRESOURCEA(1)), address);
    const auto entry = reinterpret_cast<DsEntryProc>(reinterpret_cast<void*>(address));

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

}  // namespace
}  // namespace zyr
