// The small helpers: memory stream, whole files and paths, versions, shell, cancel monitor.
#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>
#include <tuple>
#include <vector>

#include "foundation/support/error.h"
#include "foundation/support/file_version.h"
#include "foundation/support/files.h"
#include "foundation/support/memory_stream.h"
#include "foundation/support/progress.h"
#include "foundation/support/shell.h"
#include "platform/ascii.h"
#include "platform/host/host.h"

namespace zyr {
namespace {

namespace host = platform::host;
using namespace std::string_literals;

class SupportTest : public testing::Test {
 protected:
  void SetUp() override { host::ResetAll(); }
  void TearDown() override { EXPECT_EQ(host::CountsOfFiles().openHandles, 0); }
};

TEST(MemoryStream, StopsAtBothEnds) {
  constexpr int64_t kFar = std::numeric_limits<int64_t>::max();
  constexpr int64_t kFarBack = std::numeric_limits<int64_t>::min();
  char bytes[] = "abcde";
  MemoryStream stream;
  stream.Attach(bytes, 0, false);
  EXPECT_FALSE(stream.IsOpen());
  EXPECT_EQ(stream.PeekBytes(bytes, 1, 0), -1);
  stream.Attach(bytes, 5, false);
  const struct {
    int64_t seek, skip;
    size_t position;
  } kMoves[] = {{-1, 0, 0}, {2, -3, 0}, {2, 2, 4}, {9, 0, 5}, {kFar, kFar, 5}, {1, kFarBack, 0}};
  for (const auto& move : kMoves) {
    stream.Seek(move.seek);
    stream.Skip(move.skip);
    EXPECT_EQ(stream.Tell(), move.position) << move.seek << " " << move.skip;
  }
  stream.Seek(3);
  for (int64_t outside : {int64_t{2}, int64_t{-4}, kFar, kFarBack}) {
    EXPECT_EQ(stream.PeekChar(outside), '\0');
  }
  char copy[8] = {};
  EXPECT_EQ(stream.PeekBytes(copy, 8, -2), 4);
  EXPECT_STREQ(copy, "bcde");
  for (char expected : {'d', 'e', '\0'}) EXPECT_EQ(stream.ReadChar(), expected);
}

TEST(MemoryStream, GrowsWithoutTouchingABorrowedBlock) {
  char borrowed[] = "abc";
  MemoryStream stream;
  stream.Attach(borrowed, 3, false);
  stream.Seek(1);
  stream.SetGrowBy(1);
  std::string expected = "a";
  for (size_t i = 0; i < 3000; ++i) {
    const std::string piece(i % 7, static_cast<char>('a' + i % 26));
    EXPECT_EQ(stream.WriteBytes(piece.data(), piece.size()), static_cast<int64_t>(piece.size()));
    expected += piece;
  }
  EXPECT_EQ(stream.WriteBytes("x", std::numeric_limits<size_t>::max()), -1);
  EXPECT_EQ(std::string(stream.data(), stream.size()), expected);
  EXPECT_STREQ(borrowed, "abc");
}

TEST_F(SupportTest, LoadsWholeFilesOrSaysWhyNot) {
  host::PutFile("C:\\a\\text", "x\0y"s);
  host::PutFile("C:\\a\\empty", "");
  size_t size = 0;
  const auto bytes = LoadFile("C:\\a\\text", &size);
  ASSERT_NE(bytes, nullptr);
  EXPECT_EQ(std::string(bytes.get(), size + 1), "x\0y\0"s);

  const auto failure = [&](const char* path) {
    EXPECT_EQ(LoadFile(path, &size), nullptr) << path;
    return LastErrorText();
  };
  EXPECT_EQ(failure("C:\\a\\none"), "The file did not exist");
  EXPECT_EQ(failure("C:\\a\\empty"), "The file was empty");
  EXPECT_EQ(failure("C:\\a"), "The file could not be opened.");
  host::FailReadsAfter(2);
  EXPECT_EQ(failure("C:\\a\\text"), "The entire file could not be read.");
}

TEST_F(SupportTest, FindsAndCreatesDirectories) {
  host::PutFile("C:\\dir\\file", "x");
  host::PutFile("\\\\server\\share\\x", "");
  EXPECT_TRUE(DirectoryExists("Q:"));  // a bare drive always
  EXPECT_FALSE(DirectoryExists("1:") || DirectoryExists("C:\\dir\\file"));
  EXPECT_TRUE(FileExists("C:\\dir\\file"));
  EXPECT_FALSE(FileExists(""));
  for (const char* path :
       {"C:\\new\\deep\\\\folder\\", "C:\\", "C:/dir//", "\\\\server\\share\\scans\\today"}) {
    EXPECT_TRUE(CreateDirectories(path) && DirectoryExists(path)) << path;
  }
  for (const char* path : {"", "C:\\dir\\file", "C:\\dir\\file\\below", "\\\\other\\share"}) {
    EXPECT_FALSE(CreateDirectories(path)) << path;
  }
}

TEST_F(SupportTest, FormsPathsAndNames) {
  for (const char* name : {"raw.X", "RAW_1.x", "RAW_3.x"}) host::PutFile("C:\\s\\"s + name, "");
  EXPECT_EQ(UniqueFileName("C:\\s", "RAW", "x"), "C:\\s\\RAW_2.x");
  const auto isTaken = [](const std::string& path, void* free) {
    return path != static_cast<const char*>(free);
  };
  char free[] = "C:\\s\\RAW.x";
  EXPECT_EQ(UniqueFileName("C:\\s", "RAW", "x", isTaken, free), free);
  EXPECT_EQ(WithExtension("C:\\a.b\\c.RAW", "JPG"), "C:\\a.b\\c.JPG");
  EXPECT_EQ(WithExtension("C:\\a.b\\c", "JPG"), "C:\\a.b\\c.JPG");
  EXPECT_EQ(DirectoryOf("C:\\a/b.c") + "|" + FileNameOf("C:\\a/b.c"), "C:\\a|b.c");
  EXPECT_EQ(DirectoryOf("b.c") + "|" + FileNameOf("b.c"), "|b.c");
  EXPECT_FALSE(EqualIgnoringCase("[", "{"));
}

TEST_F(SupportTest, ReadsVersions) {
  const auto display = [](const char* translation, const char* block, const char* text) {
    host::VersionResource resource;
    if (translation != nullptr) resource.translation = translation;
    resource.strings[{block, "ProductVersion"}] = text;
    host::SetVersionResource("C:\\m.ds", resource);
    return GetFileVersionText("C:\\m.ds") + "|" + GetVersionDisplay("C:\\m.ds");
  };
  EXPECT_EQ(display("040704e4", "040704e4", "1.1.0.1"), "1.1.0.1|Version 1.1 Build 0");
  EXPECT_EQ(display("040704e4", "040904B0", "2.3.4.5"), "2.3.4.5|Version 2.3 Build 4");
  EXPECT_EQ(display(nullptr, "040904B0", "7.1"), "7.1|");
  EXPECT_EQ(display(nullptr, "041104B0", "1.1.0.1"), "|");
  for (const char* text : {"", "1.2.", "1..2", "-1.2.3", "1.2.4294967296"}) {
    EXPECT_FALSE(ParseVersionNumbers(text)) << text;
  }
}

TEST_F(SupportTest, SaysWhyTheShellFailed) {
  EXPECT_TRUE(ShellOpen("C:\\help.chm"));
  const std::tuple<int, uint32_t, const char*> kCases[] = {
      {0, 0, "Operating system is out of memory or resources"},
      {2, 0x10000000, "Unable to find the file '100%.chm'"},
      {31, 0xF0000000, "No file association was found"},
      {32, 0xF0000001, "Unable to start application"},
  };
  for (const auto& [answer, code, text] : kCases) {
    host::SetShellAnswer(answer);
    EXPECT_FALSE(ShellOpen("100%.chm"));
    EXPECT_EQ(LastErrorCode(), code) << answer;
    EXPECT_EQ(LastErrorText(), text) << answer;
  }
}

TEST_F(SupportTest, RemembersEscapeUntilReset) {
  host::PressEscape();
  EXPECT_TRUE(cancel_monitor::IsCancelled());
  EXPECT_TRUE(cancel_monitor::IsCancelled());
  cancel_monitor::Reset();
  EXPECT_FALSE(cancel_monitor::IsCancelled());
}

// Which of the questions from now on, counted from 1, the platform gets to see while it finds every
// one too soon.
std::vector<int> QuestionsPassedOn(size_t count) {
  std::vector<int> passedOn;
  for (int question = 1; passedOn.size() < count; ++question) {
    host::AnswerTooSoon(1);
    host::PressEscapeAtQuestion(1);
    EXPECT_FALSE(cancel_monitor::IsCancelled());
    if (!host::QueuedKeys().empty()) passedOn.push_back(question);
    host::ResetEscapeKey();
  }
  return passedOn;
}

TEST_F(SupportTest, AsksLessOftenOnlyWhereThatIsTooOften) {
  cancel_monitor::Reset();
  const std::vector<int> passedOn = QuestionsPassedOn(23);
  EXPECT_EQ(std::vector<int>(passedOn.begin(), passedOn.begin() + 8),
            (std::vector<int>{1, 3, 6, 10, 15, 22, 31, 43}));
  EXPECT_EQ(passedOn[22] - passedOn[21], 256);
  cancel_monitor::Reset();  // the next operation's rows may be slow
  host::PressEscape();
  EXPECT_TRUE(cancel_monitor::IsCancelled());
  EXPECT_TRUE(cancel_monitor::IsCancelled());
  // Once the clock has moved every question is passed on again.
  cancel_monitor::Reset();
  EXPECT_EQ(QuestionsPassedOn(2), (std::vector<int>{1, 3}));
  for (int i = 0; i < 2; ++i) EXPECT_FALSE(cancel_monitor::IsCancelled());
  EXPECT_FALSE(cancel_monitor::IsCancelled());
  host::PressEscape();
  EXPECT_TRUE(cancel_monitor::IsCancelled());
}

}  // namespace
}  // namespace zyr
