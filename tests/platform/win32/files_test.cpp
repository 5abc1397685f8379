#include "platform/files.h"

#include "platform/win32/system.h"
#include "tests/platform/files_contract.h"
#include "tests/support/win32/window_test.h"

namespace zyr::platform {
namespace {

// A folder below the user's temporary one, removed with its contents.
class ScratchFolder {
 public:
  ScratchFolder() { MakeDirectory(path_); }
  ~ScratchFolder() { Empty(path_), RemoveDirectoryA(path_.c_str()); }

  const std::string& path() const { return path_; }

  static void Empty(const std::string& folder) {
    WIN32_FIND_DATAA data;
    const HANDLE find = FindFirstFileA((folder + "\\*").c_str(), &data);
    if (find == INVALID_HANDLE_VALUE) return;
    do {
      const std::string name = data.cFileName;
      const std::string path = folder + "\\" + name;
      if (name == "." || name == "..") continue;
      if ((data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0) {
        Empty(path);
        RemoveDirectoryA(path.c_str());
      } else {
        DeleteFileA(path.c_str());
      }
    } while (FindNextFileA(find, &data));
    FindClose(find);
  }

 private:
  const std::string path_ = test::FolderOfTest("zyr-files");
};

}  // namespace

std::string FreshFolder() {
  static const ScratchFolder scratch;
  ScratchFolder::Empty(scratch.path());
  return scratch.path();
}

namespace {

TEST(FilesWin32, DevicesAreNoFiles) {
  for (const char* path : {"NUL", "\\\\.\\NUL", "\\\\.\\pipe\\zyr-missing"}) {
    EXPECT_LT(OpenFile(path, OpenMode::kRead), 0) << path;
    EXPECT_LT(OpenFile(path, OpenMode::kWrite), 0) << path;
  }
}

TEST(FilesWin32, HiddenDirectoriesAreNotListed) {
  const std::string folder = FreshFolder();
  for (const char* name : {"\\seen", "\\hidden", "\\system"}) MakeDirectory(folder + name);
  ASSERT_TRUE(SetFileAttributesA((folder + "\\hidden").c_str(), FILE_ATTRIBUTE_HIDDEN));
  ASSERT_TRUE(SetFileAttributesA((folder + "\\system").c_str(), FILE_ATTRIBUTE_SYSTEM));
  EXPECT_THAT(ListDirectories(folder), Optional(ElementsAre("seen")));
}

TEST(FilesWin32, FreeSpaceIsThatOfTheDrive) {
  const std::string folder = FreshFolder();
  ULARGE_INTEGER expected;
  ASSERT_TRUE(GetDiskFreeSpaceExA(folder.substr(0, 3).c_str(), &expected, nullptr, nullptr));
  const auto free = FreeDriveSpace(folder + "\\missing\\deep");
  ASSERT_TRUE(free);
  EXPECT_NEAR(static_cast<double>(*free), static_cast<double>(expected.QuadPart), 5e9);
  EXPECT_FALSE(FreeDriveSpace("?:\\x"));
  EXPECT_FALSE(FreeDriveSpace("\\\\zyr-no-such-server\\share\\x"));
}

TEST(FilesWin32, TimesAreSecondsSince1970) {
  const std::string path = FreshFolder() + "\\a";
  const int handle = OpenFile(path, OpenMode::kWrite);
  CloseFile(handle);
  const HANDLE file =
      CreateFileA(path.c_str(), FILE_WRITE_ATTRIBUTES, 0, nullptr, OPEN_EXISTING, 0, nullptr);
  SYSTEMTIME written = {};
  written.wYear = 2001;
  written.wMonth = 9;
  written.wDay = 9;
  written.wHour = 1;
  written.wMinute = 46;
  written.wSecond = 40;
  FILETIME time;
  ASSERT_TRUE(SystemTimeToFileTime(&written, &time));
  ASSERT_TRUE(SetFileTime(file, nullptr, nullptr, &time));
  CloseHandle(file);
  EXPECT_EQ(StatusOf(path)->modifiedTime, 1'000'000'000);
  EXPECT_EQ(SecondsOf(FILETIME{0, 0}), -11'644'473'600);
  EXPECT_EQ(SecondsOf(FILETIME{5'000'000, 0}), -11'644'473'600);  // half a second later
}

}  // namespace
}  // namespace zyr::platform
