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

TEST(FilesDouble, NativePathsReachTheSameFileAndComeBackUnchanged) {
  FreshFolder();
  host::PutFile("d:\\deep\\er\\a.bin", "abc");
  EXPECT_EQ(Contents("D:/Deep/er/A.BIN"), "abc");
  const std::string native = NativePath("D:\\deep\\er\\a.bin");
  EXPECT_EQ(native, NativePath(native));
  EXPECT_EQ(Contents(native), "abc");
  EXPECT_EQ(host::FileBytes("D:\\deep\\er\\a.bin"), "abc");
  EXPECT_TRUE(StatusOf("C:")->isDirectory);
  EXPECT_FALSE(StatusOf("E:"));
}

TEST(FilesDouble, FaultsHitWhatTheyName) {
  const std::string folder = FreshFolder();
  host::FillDiskAfter(4);
  const int full = OpenFile(folder + "\\full", OpenMode::kWrite);
  EXPECT_EQ(WriteFile(full, "abc", 3), 3);
  EXPECT_EQ(WriteFile(full, "def", 3), 1);
  EXPECT_EQ(WriteFile(full, "ef", 2), 0);
  CloseFile(full);
  host::FillDiskAfter(std::nullopt);
  EXPECT_EQ(host::FileBytes(folder + "\\full"), "abcd");
  host::FailReadsAfter(3);
  EXPECT_EQ(Contents(folder + "\\full"), "<error>");
  host::FailReadsAfter(std::nullopt);
  host::DenyWriting("c:/work\\Locked");
  EXPECT_FALSE(Put(folder + "\\LOCKED.txt", OpenMode::kWrite, "x"));
  EXPECT_FALSE(MoveFileTo(folder + "\\full", folder + "\\locked", true));
  host::FailMoves(true);
  EXPECT_FALSE(MoveFileTo(folder + "\\full", folder + "\\moved", true));
  host::ResetFiles();
  EXPECT_FALSE(StatusOf(folder));
  EXPECT_TRUE(MakeDirectory(folder));
  EXPECT_TRUE(Put(folder + "\\locked.txt", OpenMode::kWrite, "x"));
}

TEST(FilesDouble, CountsShowLeaksAndTimesFollowTheClock) {
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
  host::ResetAll();
}

}  // namespace
}  // namespace zyr::platform
