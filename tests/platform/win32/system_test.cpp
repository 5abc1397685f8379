#include "platform/win32/system.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "platform/directories.h"
#include "platform/file_version.h"
#include "platform/resources.h"
#include "platform/system_info.h"

namespace zyr::platform {
namespace {

TEST(DirectoriesWin32, PathsOfFoldersAndModules) {
  const std::string windows = WindowsDirectory();
  ASSERT_GT(windows.size(), 3u);
  EXPECT_EQ(windows[1], ':');
  EXPECT_NE(windows.back(), '\\');
  EXPECT_EQ(ModulePath(), HostProgramPath());
  EXPECT_NE(GetFileAttributesA(HostProgramPath().c_str()), INVALID_FILE_ATTRIBUTES);
  EXPECT_EQ(HostProgramArgument(), __argv[0]);
}

TEST(FileVersionWin32, SystemLibrariesTellTheirs) {
  const std::string path = WindowsDirectory() + "\\system32\\kernel32.dll";
  const auto block = VersionTranslation(path);
  ASSERT_TRUE(block);
  EXPECT_EQ(*block, "040904b0");
  const auto version = VersionString(path, *block, "ProductVersion");
  ASSERT_TRUE(version);
  EXPECT_EQ(std::strlen(version->c_str()), version->size());
  EXPECT_NE(version->find('.'), std::string::npos);
  EXPECT_FALSE(VersionString(path, *block, "NoSuchName"));
  EXPECT_FALSE(VersionString(path, "ffffffff", "ProductVersion"));
  for (const char* without : {"C:\\missing.dll", "", "C:\\"}) {
    EXPECT_FALSE(VersionTranslation(without));
    EXPECT_FALSE(VersionString(without, "040904b0", "ProductVersion"));
    EXPECT_FALSE(FixedFileVersion(without));
  }
  const auto numbers = FixedFileVersion(path);
  ASSERT_TRUE(numbers);
  EXPECT_EQ((*numbers)[0], std::stoi(*VersionString(path, *block, "FileVersion")));
}

TEST(ResourcesWin32, BitmapsComeFromTheChosenModule) {
  constexpr uint16_t kStandardToolbar = 120;
  EXPECT_EQ(CurrentResources(), GetModuleHandleA(nullptr));
  uint32_t error = 0;
  const OwnResourcesScope own;
  EXPECT_EQ(own.previous(), GetModuleHandleA(nullptr));
  EXPECT_TRUE(BitmapResource("IDB_MISSING", &error).empty());
  EXPECT_TRUE(error == ERROR_RESOURCE_TYPE_NOT_FOUND || error == ERROR_RESOURCE_NAME_NOT_FOUND ||
              error == ERROR_RESOURCE_DATA_NOT_FOUND)
      << error;
  SetCurrentResources(LoadLibraryA("comctl32.dll"));
  const auto bitmap = BitmapResource(kStandardToolbar, &error);
  ASSERT_GT(bitmap.size(), sizeof(BITMAPINFOHEADER));
  EXPECT_GE(bitmap[0], sizeof(BITMAPINFOHEADER));  // the header's size stands first
  EXPECT_EQ(BitmapResource("#120", &error).data(), bitmap.data());
}

TEST(SystemInfoWin32, TheAddressNeedsSocketsThatTheApplicationStarts) {
  std::string address = "untouched";
  EXPECT_EQ(FirstIpAddress(&address), AddressLookup::kNoHost);
  EXPECT_EQ(address, "untouched");
  WSADATA data;
  ASSERT_EQ(WSAStartup(MAKEWORD(2, 2), &data), 0);
  if (FirstIpAddress(&address) == AddressLookup::kFound) {
    EXPECT_NE(inet_addr(address.c_str()), INADDR_NONE) << address;
  }
  WSACleanup();
}

TEST(SystemInfoWin32, NamesAndVersion) {
  ASSERT_TRUE(ComputerName());
  EXPECT_FALSE(ComputerName()->empty());
  ASSERT_TRUE(UserName());
  EXPECT_FALSE(UserName()->empty());
  EXPECT_GE(OperatingSystemVersion().major, 6u);
  EXPECT_EQ(OperatingSystemVersion().platform, uint32_t{VER_PLATFORM_WIN32_NT});
  ASSERT_TRUE(RunsUnderWow64());
  EXPECT_FALSE(sizeof(void*) == 8 && *RunsUnderWow64());
}

}  // namespace
}  // namespace zyr::platform
