#include "platform/drives.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "platform/files.h"
#include "platform/win32/system.h"

namespace zyr::platform {
namespace {

TEST(DrivesWin32, TheSystemsDriveIsFixedAndNoErrorModeIsLeftBehind) {
  const DWORD before = GetThreadErrorMode();
  const std::vector<Drive> drives = ListDrives();
  EXPECT_FALSE(ListDirectories("?:\\"));
  EXPECT_EQ(GetThreadErrorMode(), before);
  const auto own = std::find_if(drives.begin(), drives.end(),
                                [](const Drive& drive) { return drive.path == "C:\\"; });
  ASSERT_NE(own, drives.end());
  EXPECT_EQ(own->kind, DriveKind::kFixed);
  EXPECT_TRUE(std::is_sorted(drives.begin(), drives.end(),
                             [](const Drive& a, const Drive& b) { return a.path < b.path; }));
}

}  // namespace
}  // namespace zyr::platform
