#include "foundation/log/log.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "foundation/support/phrase_lookup.h"
#include "platform/clock.h"
#include "platform/host/host.h"

namespace zyr {
namespace {

namespace host = platform::host;

constexpr int64_t kStart = 1'000'000'000;  // 01:46:40 UTC
constexpr char kPath[] = "C:\\ZYRTWAIN.Log";

std::string Lines(const std::string& head, const std::vector<std::string>& texts) {
  std::string lines;
  for (const std::string& text : texts) lines += head + text + "\r\n";
  return lines;
}

class LogTest : public testing::Test {
 protected:
  void SetUp() override {
    host::ResetAll();
    host::SetClock(kStart);
  }
  void TearDown() override {
    SetPhraseLookup(nullptr);
    host::ResetAll();
  }

  static std::string Bytes() { return host::FileBytes(kPath).value_or("<none>"); }
  static bool HasLine(const std::string& text) {
    return Bytes().find("  " + text + "\r\n") != std::string::npos;
  }
};

TEST_F(LogTest, WritesAWholeSessionByteForByte) {
  host::PutFile(kPath, "an older and longer log, which is to go");
  const std::string module = "C:\\Windows\\TWAIN_32\\ZYR\\ZYRTWAIN.ds";
  host::PutFile(module, "MZ");
  host::SetFileTimes(module, kStart - 5000, kStart - 3000);
  host::VersionResource version;
  version.strings[{"040904B0", "ProductVersion"}] = "1.1.0.1";
  host::SetVersionResource(module, version);
  {
    LogFile log;
    log.WriteLine("nobody listens %lu", 1ul);
    log.Open("C:\\", "ZYRTWAIN.Log");
    host::AdvanceClock(7);
    log.LogFileDetails(module);
    EXPECT_EQ(Bytes(), "");  // all of it is still in the buffer
    log.SetFlushEachLine(true);
    host::AdvanceClock(3'600'000);
    log.WriteLine("abc\r\n");
    log.WriteIndentedLine(3, "%s|%.2lf", "two\nlines\r\nand\n", 1.5);
    log.WriteIndentedText(2, "100% plain %s");
    log.WritePartial("%c", '[');
    log.WriteIndentedPartial(1, "%d", 5);
    log.WriteText("]");
    log.WriteBlock(4, "first\r\nsecond\n\nfourth\n");
    log.WriteBlock("");
    log.SetTimeStamps(false);
    log.WriteBlock("bare");
    log.WriteText("no time");
    log.SetTimeStamps(true);
    log.WriteBanner("Title");
    log.LogLabelledFileDetails("100%:", "C:\\none");
    host::AdvanceClock(1);
  }
  const auto date = [](int64_t time) { return platform::LongDateTimeText(time); };
  const std::string later = "02:46:40:0007  ", rule(40, '=');
  EXPECT_EQ(Bytes(),
            Lines("01:46:40:0000  ",
                  {"Logging enabled @ " + date(kStart) + "; ", "Computer's Name: SURGERY1",
                   "Users's Name: dentist", "Computer's IP: 192.168.1.20",
                   "Computer's OS: 6.1.7601  Platform: 2", " "}) +
                Lines("01:46:40:0007  ",
                      {"File details:", "    Filename: " + module, "    File Exists? Yes",
                       "       Created: " + date(kStart - 5000),
                       "       Modified: " + date(kStart - 3000), "    Version: 1.1.0.1"}) +
                Lines(later, {"abc; ", "   two; lines; and; |1.50", "  100% plain %s",
                              "[" + later + " 5" + later + "]"}) +
                Lines(std::string(19, ' '), {"first", "second", "", "fourth"}) +
                Lines("", {"bare", "no time"}) +
                Lines(later, {" ", " ", rule, "Title", rule, "100%:", "File details:",
                              "    Filename: C:\\none", "    File Exists? No"}) +
                "\r\n" + Lines("02:46:40:0008  ", {"Logging closed @ " + date(kStart + 3600)}));
}

TEST_F(LogTest, BuffersUntilItIsFullOrAskedToFlush) {
  LogFile log;
  log.Open("C:\\", "ZYRTWAIN.Log");
  while (Bytes().empty()) log.WriteText("text");
  EXPECT_EQ(Bytes().size(), 51200u);
  log.SetFlushEachLine(true);
  log.WritePartial("end");
  EXPECT_TRUE(Bytes().ends_with("  end"));
  log.WriteBlock("block");
  EXPECT_TRUE(Bytes().ends_with("block\r\n"));
}

TEST_F(LogTest, NamesWhatItCannotFindOut) {
  SetPhraseLookup([](const char* text) { return std::string("~") + text; });
  host::SystemInfo info;
  info.computerName.reset();
  info.userName.reset();
  info.lookup = platform::AddressLookup::kNoAddress;
  host::SetSystemInfo(info);
  LogFile log;
  log.SetFlushEachLine(true);
  log.Open("C:\\", "ZYRTWAIN.Log");
  info.lookup = platform::AddressLookup::kNoHost;
  host::SetSystemInfo(info);
  log.LogIpAddress();
  for (const char* line :
       {"Computer's Name: <Unknown Computer Name>", "Users's Name: <Unknown User Name>",
        "Computer's IP: ~<Unknown IP Address>", "Computer's IP: Unable to obtain host-by-name"}) {
    EXPECT_TRUE(HasLine(line)) << line;
  }
}

TEST_F(LogTest, IsNoLogWhenTheFileCannotBeWritten) {
  host::DenyWriting("C:\\");
  LogFile log;
  log.Open("C:\\", "ZYRTWAIN.Log");
  EXPECT_FALSE(log.IsOpen());
  log.SetFlushEachLine(true);
  log.WriteBlock("x");
  EXPECT_EQ(Bytes(), "<none>");
}

TEST_F(LogTest, ClosesOneFileBeforeTheNext) {
  host::PutFile("C:\\Windows\\TWAIN_32\\ZYR\\ZYRTWAIN.ds", "MZ");
  BufferedFile outside(64);
  ASSERT_TRUE(outside.OpenWrite(kPath, true));
  LogFile log;
  log.Attach(&outside);
  EXPECT_TRUE(log.IsOpen());
  log.OpenInModuleDirectory("module.log");
  EXPECT_FALSE(outside.IsOpen());
  EXPECT_TRUE(HasLine("Logging closed @ " + platform::LongDateTimeText(kStart)));
  EXPECT_TRUE(host::FileBytes("C:\\Windows\\TWAIN_32\\ZYR\\module.log").has_value());
  log.Attach(&outside);  // closed as it is; it stays attached, and its owner may open it again
  log.Close();
  EXPECT_FALSE(log.IsOpen());
  ASSERT_TRUE(outside.OpenWrite(kPath, true));
  EXPECT_TRUE(log.IsOpen());
}

}  // namespace
}  // namespace zyr
