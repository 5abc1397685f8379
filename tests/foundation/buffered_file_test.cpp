#include "foundation/support/buffered_file.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <regex>
#include <string>

#include "foundation/support/error.h"
#include "foundation/support/file_header.h"
#include "platform/host/host.h"

namespace zyr {
namespace {

namespace host = platform::host;
using namespace std::string_literals;

constexpr char kPath[] = "C:\\file.bin";

class BufferedFileTest : public testing::Test {
 protected:
  void SetUp() override { host::ResetAll(); }
  void TearDown() override { EXPECT_EQ(host::CountsOfFiles().openHandles, 0); }
};

// Line ends in all neighbourhoods.
std::string SampleBytes(size_t count) {
  std::string bytes(count, '\0');
  uint32_t state = 12345;
  for (char& byte : bytes) byte = "\r\n\0a"[(state = state * 1664525 + 1013904223) >> 30];
  return bytes;
}

// What text mode writes, and what it reads back.
std::string WithCrLf(const std::string& text) {
  return std::regex_replace(text, std::regex("\n"), "\r\n");
}
std::string WithoutCrLf(const std::string& text) {
  return std::regex_replace(text, std::regex("\r\n"), "\n");
}

TEST_F(BufferedFileTest, PassesTheSameBytesWhateverTheBufferAndThePieces) {
  const std::string bytes = SampleBytes(5000);
  for (size_t bufferSize : {0, 1, 7, 51200}) {
    for (size_t piece : {1, 3, 4096, 9000}) {
      for (bool text : {false, true}) {
        SCOPED_TRACE(FormatText("buffer %zu, piece %zu, text %d", bufferSize, piece, text));
        BufferedFile file(bufferSize);
        ASSERT_TRUE(text ? file.OpenTextWrite(kPath, true) : file.OpenWrite(kPath, true));
        for (size_t at = 0; at < bytes.size(); at += piece) {
          const size_t count = std::min(piece, bytes.size() - at);
          EXPECT_EQ(file.Write(bytes.data() + at, count), static_cast<int64_t>(count));
        }
        const std::string written = text ? WithCrLf(bytes) : bytes;
        EXPECT_EQ(file.Tell(), static_cast<int64_t>(written.size()));
        EXPECT_EQ(file.Length(), file.Tell());
        EXPECT_EQ(file.total(), bytes.size());
        EXPECT_TRUE(file.Close());
        EXPECT_EQ(host::FileBytes(kPath), written);

        ASSERT_TRUE(text ? file.OpenTextRead(kPath) : file.OpenRead(kPath));
        std::string read, part(piece, '\0');
        for (size_t ask = 1; const int64_t count = file.Read(part.data(), ask); ask = piece) {
          read.append(part, 0, static_cast<size_t>(count));  // at first one byte: amid a buffer
        }
        EXPECT_EQ(read, text ? WithoutCrLf(written) : written);
        EXPECT_EQ(file.Tell(), static_cast<int64_t>(written.size()));
      }
    }
  }
}

TEST_F(BufferedFileTest, OpensInItsModes) {
  host::PutFile(kPath, "0123456789");
  BufferedFile file(4);
  ASSERT_TRUE(file.OpenWrite(kPath, false));
  file.Write("ab", 2);
  EXPECT_EQ(host::CountsOfFiles().writes, 0);
  EXPECT_TRUE(file.Seek(6));
  file.Write("cd", 2);
  EXPECT_EQ(file.Tell(), 8);
  EXPECT_EQ(file.Length(), 10);
  char byte = 0;
  EXPECT_EQ(file.Read(&byte, 1), -1);

  ASSERT_TRUE(file.OpenAppend(kPath));  // closes, and so writes, what was open
  EXPECT_EQ(file.initialSize(), 10u);
  EXPECT_TRUE(file.Seek(0) && file.Printf("%s%lu", "e", 1ul));
  EXPECT_EQ(file.Tell(), 12);
  ASSERT_TRUE(file.OpenTextAppend(kPath) && file.PutByte('\n'));
  ASSERT_TRUE(file.OpenRead(kPath));
  EXPECT_EQ(host::FileBytes(kPath), "ab2345cd89e1\r\n");
  EXPECT_EQ(file.Write("x", 1), -1);
  EXPECT_TRUE(file.Seek(9));
  EXPECT_EQ(file.Read(&byte, 1), 1);
  EXPECT_EQ(byte, '9');

  EXPECT_FALSE(file.OpenRead("C:\\missing"));
  EXPECT_EQ(file.Read(&byte, 1), -1);
  EXPECT_EQ(file.Tell(), -1);
  EXPECT_FALSE(file.Flush());
}

TEST_F(BufferedFileTest, ReportsBytesThatTheDiskDidNotTake) {
  const std::string bytes(1000, 'x');
  for (size_t bufferSize : {0, 100, 51200}) {
    host::FillDiskAfter(250);
    BufferedFile file(bufferSize);
    ASSERT_TRUE(file.OpenWrite(kPath, true));
    const int64_t taken = bufferSize == 0 ? 250 : bufferSize == 100 ? 200 : 1000;
    EXPECT_EQ(file.Write(bytes.data(), bytes.size()), taken);
    EXPECT_FALSE(file.Close());
    EXPECT_EQ(host::FileBytes(kPath)->size(), 250u);
  }
  host::FillDiskAfter(std::nullopt);

  host::FailWrites(true);
  BufferedFile file(4);
  ASSERT_TRUE(file.OpenWrite(kPath, true));
  EXPECT_EQ(file.Write(bytes.data(), 6), 0);
  host::FailWrites(false);
  EXPECT_EQ(file.Write("later", 5), 5);
  EXPECT_FALSE(file.Sync());  // the loss stays known
  EXPECT_FALSE(file.Close());
  EXPECT_EQ(host::FileBytes(kPath), "later");
  EXPECT_TRUE(file.OpenWrite(kPath, true) && file.Close());
}

TEST_F(BufferedFileTest, KeepsNumbersAndStringsAndRefusesLengthsThatLie) {
  BufferedFile file(16);
  ASSERT_TRUE(file.OpenWrite(kPath, true));
  EXPECT_TRUE(file.WriteUint16(0x0102) && file.WriteUint32(0x03040506) && file.WriteString("abc"));
  ASSERT_TRUE(file.OpenRead(kPath));
  EXPECT_EQ(host::FileBytes(kPath), "\2\1\6\5\4\3\3\0\0\0abc"s);
  uint16_t half = 0;
  uint32_t word = 0;
  std::string text;
  EXPECT_TRUE(file.ReadUint16(&half) && file.ReadUint32(&word) && file.ReadString(&text, 3));
  EXPECT_EQ(FormatText("%x %x ", unsigned{half}, unsigned{word}) + text, "102 3040506 abc");

  for (const std::string& lie :
       {"\xFF\xFF\xFF\xFF\n"s, "\4\0\0\0abc"s, "\3\0\0"s, "\6\0\0\0abcdef"s}) {
    host::PutFile(kPath, lie);
    ASSERT_TRUE(file.OpenRead(kPath));
    EXPECT_FALSE(file.ReadString(&text, lie.size() == 10 ? 5 : 0xFFFFFFFF));
    EXPECT_EQ(text, "abc");
  }
}

TEST_F(BufferedFileTest, ReadsLinesInPieces) {
  host::PutFile(kPath, "ab\r\n\r\nabcd\nabcdefghij\na\rb\r"s);
  BufferedFile file;
  ASSERT_TRUE(file.OpenTextRead(kPath));
  std::string pieces;
  for (std::string line; file.ReadLine(&line, 4);) pieces += line + "|";
  EXPECT_EQ(pieces, "ab||abcd||abcd|efgh|ij|a\rb\r|");
}

TEST_F(BufferedFileTest, ChecksTheHeadersOfOwnFiles) {
  constexpr FileIdentifier kIdentifier = {0x44434241, 0x48474645};
  BufferedFile file;
  ASSERT_TRUE(file.OpenWrite(kPath, true));
  EXPECT_TRUE(WriteFileHeader(file, kIdentifier, 3));
  EXPECT_EQ(host::FileBytes(kPath), "ABCDEFGH\3\0\0\0"s);
  host::FillDiskAfter(8);
  EXPECT_FALSE(WriteFileHeader(file, kIdentifier, 3));
  EXPECT_EQ(LastErrorText(), "Unable to write the file version.");

  const std::pair<std::string, std::string> kCases[] = {
      {"ABCDEFGH\2\0\0\0"s, "accepted"},
      {"ABCDEFGH\3\0\0\0"s, "accepted"},
      {"ABCDEFGH\4\0\0\0"s,
       "An unsupported version (version = 00000004) was detected in the specified file"},
      {"ABCDEFGX\3\0\0\0"s,
       "A invalid file type was specified (the file did not contain the proper file identifier)"},
      {"ABCDEFG", "Invalid file specified (unable to read file identifier)."},
      {"ABCDEFGH\3\0\0"s, "Invalid file specified (unable to read file version)."},
  };
  for (const auto& [bytes, outcome] : kCases) {
    host::PutFile(kPath, bytes);
    uint32_t version = 0;
    ASSERT_TRUE(file.OpenRead(kPath));
    const bool accepted = CheckFileHeader(file, kIdentifier, 3, &version);
    EXPECT_EQ(accepted ? "accepted" : LastErrorText(), outcome);
    EXPECT_EQ(version, accepted ? bytes[8] : 0u);
  }
}

}  // namespace
}  // namespace zyr
