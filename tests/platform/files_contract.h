// What both implementations of the files service keep to. The including test says where it may
// work.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "platform/clock.h"
#include "platform/files.h"

namespace zyr::platform {

// An existing empty folder, without a separator at the end.
std::string FreshFolder();

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Optional;
using ::testing::UnorderedElementsAre;

inline std::string Contents(const std::string& path) {
  const int handle = OpenFile(path, OpenMode::kRead);
  if (handle < 0) return "<none>";
  char bytes[256];
  const int64_t count = ReadFile(handle, bytes, sizeof bytes);
  CloseFile(handle);
  return count < 0 ? "<error>" : std::string(bytes, static_cast<size_t>(count));
}

inline bool Put(const std::string& path, OpenMode mode, const std::string& bytes) {
  const int handle = OpenFile(path, mode);
  if (handle < 0) return false;
  const int64_t written = WriteFile(handle, bytes.data(), bytes.size());
  CloseFile(handle);
  return written == static_cast<int64_t>(bytes.size());
}

TEST(FilesContract, ModesCreateKeepTruncateAndAppend) {
  const std::string path = FreshFolder() + "\\a.bin";
  EXPECT_LT(OpenFile(path, OpenMode::kRead), 0);
  EXPECT_FALSE(StatusOf(path));
  EXPECT_TRUE(Put(path, OpenMode::kCreateNew, "one\r\n\x1A two"));
  EXPECT_FALSE(Put(path, OpenMode::kCreateNew, "other"));
  EXPECT_EQ(Contents(path), "one\r\n\x1A two");
  EXPECT_TRUE(Put(path, OpenMode::kWrite, "ONE"));
  EXPECT_EQ(Contents(path), "ONE\r\n\x1A two");
  EXPECT_TRUE(Put(path, OpenMode::kWriteTruncate, "ab"));
  EXPECT_TRUE(Put(path, OpenMode::kAppend, "cd"));
  const int handle = OpenFile(path, OpenMode::kAppend);
  EXPECT_EQ(FilePosition(handle), 4);
  EXPECT_TRUE(SeekFile(handle, 0));
  EXPECT_EQ(WriteFile(handle, "ef", 2), 2) << "at the end wherever the position is";
  EXPECT_EQ(FilePosition(handle), 6);
  EXPECT_EQ(FileLength(handle), 6);
  EXPECT_TRUE(SyncFile(handle));
  CloseFile(handle);
  EXPECT_EQ(Contents(path), "abcdef");
}

TEST(FilesContract, PositionsAndHandlesThatAreNone) {
  const std::string path = FreshFolder() + "\\a.bin";
  const int writer = OpenFile(path, OpenMode::kWriteTruncate);
  EXPECT_TRUE(SeekFile(writer, 10));
  EXPECT_EQ(FileLength(writer), 0);
  EXPECT_EQ(WriteFile(writer, "x", 1), 1);
  EXPECT_EQ(FileLength(writer), 11);
  EXPECT_FALSE(SeekFile(writer, -1));
  EXPECT_EQ(FilePosition(writer), 11);
  char byte = 0;
  EXPECT_EQ(ReadFile(writer, &byte, 1), -1);
  CloseFile(writer);
  for (const int none : {writer, -1}) {
    EXPECT_EQ(WriteFile(none, "x", 1), -1);
    EXPECT_TRUE(FileLength(none) == -1 && FilePosition(none) == -1);
    EXPECT_FALSE(SeekFile(none, 0) || SyncFile(none));
    CloseFile(none);
  }
  const int reader = OpenFile(path, OpenMode::kRead);
  char bytes[20];
  EXPECT_EQ(WriteFile(reader, "x", 1), -1);
  EXPECT_EQ(ReadFile(reader, bytes, sizeof bytes), 11);
  EXPECT_EQ(bytes[0], '\0');
  EXPECT_EQ(ReadFile(reader, bytes, sizeof bytes), 0);
  CloseFile(reader);
}

TEST(FilesContract, NamesCompareWithoutCaseAndWithAnySeparators) {
  const std::string folder = FreshFolder();
  ASSERT_TRUE(MakeDirectory(folder + "\\Sub"));
  ASSERT_TRUE(Put(folder + "\\Sub\\Photo.Raw", OpenMode::kWrite, "x"));
  EXPECT_EQ(Contents(folder + "\\SUB\\photo.RAW"), "x");
  EXPECT_EQ(Contents(folder + "\\\\Sub/Photo.Raw"), "x");
  EXPECT_EQ(Contents(folder + "\\Sub\\..\\sub\\.\\Photo.Raw"), "x");
  EXPECT_TRUE(Put(folder + "\\sub\\PHOTO.raw", OpenMode::kWriteTruncate, "y"));
  EXPECT_THAT(ListFiles(folder + "\\Sub", "*"), ElementsAre("Photo.Raw"));
  const std::string umlaut = folder + "\\R\xF6ntgen 100%.raw";
  EXPECT_TRUE(Put(umlaut, OpenMode::kCreateNew, "z"));
  EXPECT_THAT(ListFiles(folder, "R?ntgen*"), ElementsAre("R\xF6ntgen 100%.raw"));
}

TEST(FilesContract, ImpossiblePathsAreRefused) {
  const std::string folder = FreshFolder();
  const std::string whole = folder + "\\a.bin";
  for (const std::string& path :
       {std::string(), folder, folder + "\\what?.bin", folder + "\\a|b", whole + '\0' + "x",
        folder + "\\missing\\a.bin", folder + "\\" + std::string(300, 'x')}) {
    EXPECT_LT(OpenFile(path, OpenMode::kWrite), 0) << path;
  }
  EXPECT_FALSE(StatusOf(whole));
  EXPECT_FALSE(StatusOf(""));
  EXPECT_THAT(ListFiles(folder, "*"), IsEmpty());
  EXPECT_THAT(ListFiles(folder + "\\missing", "*"), IsEmpty());
  EXPECT_FALSE(MakeDirectory(folder + "\\missing\\deep"));
}

TEST(FilesContract, StatusTellsKindSizeAndTimes) {
  const std::string folder = FreshFolder();
  const int64_t before = Now();
  ASSERT_TRUE(Put(folder + "\\a", OpenMode::kWrite, "12345"));
  const auto status = StatusOf(folder + "\\a");
  ASSERT_TRUE(status && !status->isDirectory);
  EXPECT_EQ(status->size, 5u);
  for (const int64_t time : {status->createdTime, status->modifiedTime}) {
    EXPECT_GE(time, before - 3);  // file systems round
    EXPECT_LE(time, Now() + 3);
  }
  EXPECT_TRUE(StatusOf(folder).value().isDirectory);
  EXPECT_TRUE(MakeDirectory(folder));
  EXPECT_FALSE(MakeDirectory(folder + "\\a"));
  EXPECT_TRUE(FreeDriveSpace(folder));
}

TEST(FilesContract, FilesAreListedByPatternAndDirectoriesByName) {
  const std::string folder = FreshFolder();
  EXPECT_THAT(ListDirectories(folder), Optional(IsEmpty()));
  for (const char* name : {"a.raw", "B.RAW", "c.rawback", "d.ra", "long name.raw"}) {
    ASSERT_TRUE(Put(folder + "\\" + name, OpenMode::kWrite, ""));
  }
  for (const char* name : {"b", "C", "f.raw", "R\xF6ntgen 100%", "C\\deeper"}) {
    ASSERT_TRUE(MakeDirectory(folder + "\\" + name));
  }
  EXPECT_THAT(ListFiles(folder, "*.raw"), UnorderedElementsAre("a.raw", "B.RAW", "long name.raw"));
  EXPECT_THAT(ListFiles(folder, "?.ra*"),
              UnorderedElementsAre("a.raw", "B.RAW", "c.rawback", "d.ra"));
  EXPECT_THAT(ListFiles(folder, "*a*e.r?w"), ElementsAre("long name.raw"));
  EXPECT_THAT(ListFiles(folder, ""), IsEmpty());
  const auto sorted = Optional(ElementsAre("b", "C", "f.raw", "R\xF6ntgen 100%"));
  EXPECT_THAT(ListDirectories(folder), sorted);
  EXPECT_THAT(ListDirectories(folder + "\\"), sorted);
  EXPECT_TRUE(ListDirectories("C:\\"));
  for (const std::string& path : {folder + "\\missing", folder + "\\a.raw", std::string(),
                                  folder + "\\" + std::string(300, 'x')}) {
    EXPECT_FALSE(ListDirectories(path)) << path;
  }
}

TEST(FilesContract, MovingReplacesOnlyWhenAsked) {
  const std::string folder = FreshFolder();
  const std::string from = folder + "\\new";
  const std::string to = folder + "\\old";
  ASSERT_TRUE(Put(from, OpenMode::kWrite, "new"));
  ASSERT_TRUE(Put(to, OpenMode::kWrite, "old"));
  EXPECT_FALSE(MoveFileTo(from, to, false));
  EXPECT_EQ(Contents(to), "old");
  EXPECT_TRUE(MoveFileTo(from, to, true));
  EXPECT_EQ(Contents(to), "new");
  EXPECT_FALSE(MoveFileTo(from, to, true));
  EXPECT_TRUE(MoveFileTo(to, from, false));
  EXPECT_FALSE(RemoveFile(to));
  EXPECT_THAT(ListFiles(folder, "*"), ElementsAre("new"));
}

TEST(FilesContract, AnOpenFileStaysAndHasOneWriter) {
  const std::string folder = FreshFolder();
  const std::string path = folder + "\\a";
  const int writer = OpenFile(path, OpenMode::kWrite);
  ASSERT_EQ(WriteFile(writer, "abc", 3), 3);
  EXPECT_EQ(Contents(path), "abc");
  EXPECT_LT(OpenFile(path, OpenMode::kWrite), 0);
  EXPECT_LT(OpenFile(path, OpenMode::kAppend), 0);
  CloseFile(writer);
  const int reader = OpenFile(path, OpenMode::kRead);
  ASSERT_TRUE(Put(folder + "\\b", OpenMode::kWrite, "b"));
  EXPECT_FALSE(RemoveFile(path));
  EXPECT_FALSE(MoveFileTo(path, folder + "\\c", false));
  EXPECT_FALSE(MoveFileTo(folder + "\\b", path, true));
  CloseFile(reader);
  EXPECT_TRUE(RemoveFile(path));
  EXPECT_FALSE(StatusOf(path));
}

}  // namespace zyr::platform
