#include "platform/files.h"

#include "platform/host/host.h"
#include "tests/platform/files_contract.h"

namespace zyr::platform {

std::string FreshFolder() {
  host::ResetAll();
  MakeDirectory("C:\\Work");
  return "C:\\Work";
}

namespace {

TEST(FilesDouble, CountsShowLeaksTimesFollowTheClockAndNativePathsLeadThere) {
  const std::string folder = FreshFolder();
  host::SetClock(1'000'000);
  const int handle = OpenFile(folder + "\\a", OpenMode::kWrite);
  host::AdvanceClock(60'000);
  WriteFile(handle, "abc", 3);
  EXPECT_EQ(host::CountsOfFiles().openHandles, 1);
  CloseFile(handle);
  EXPECT_EQ(host::CountsOfFiles().openHandles, 0);
  EXPECT_EQ(host::CountsOfFiles().mostOpenHandles, 1);
  EXPECT_EQ(host::CountsOfFiles().bytesWritten, 3u);
  ASSERT_TRUE(MoveFileTo(folder + "\\a", folder + "\\b", false));
  EXPECT_EQ(StatusOf(folder + "\\b")->createdTime, 1'000'000);
  EXPECT_EQ(StatusOf(folder + "\\b")->modifiedTime, 1'000'060);
  const std::string native = NativePath("c:/WORK\\b");
  EXPECT_EQ(native, NativePath(native));
  EXPECT_EQ(Contents(native), "abc");
  host::ResetAll();
  EXPECT_FALSE(StatusOf(folder));
}

TEST(FilesDouble, FaultsHitWhatTheyName) {
  const std::string path = FreshFolder() + "\\full";
  host::FillDiskAfter(4);
  EXPECT_TRUE(Put(path, OpenMode::kWrite, "abc"));
  EXPECT_FALSE(Put(path, OpenMode::kAppend, "def"));
  host::FillDiskAfter(std::nullopt);
  EXPECT_EQ(host::FileBytes(path), "abcd");
  host::FailReadsAfter(3);
  EXPECT_EQ(Contents(path), "<error>");
  host::DenyWriting("c:/work\\Locked");
  EXPECT_FALSE(Put("C:\\Work\\LOCKED.txt", OpenMode::kWrite, "x"));
  EXPECT_FALSE(MoveFileTo(path, "C:\\Work\\locked", true));
  host::ResetFiles();
  EXPECT_TRUE(MakeDirectory("C:\\Work"));
  EXPECT_TRUE(Put("C:\\Work\\locked.txt", OpenMode::kWrite, "x"));
}

}  // namespace
}  // namespace zyr::platform
