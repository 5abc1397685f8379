#include "foundation/log/log.h"

#include <gtest/gtest.h>

#include <string>

#include "foundation/support/phrase_lookup.h"
#include "platform/clock.h"
#include "platform/host/host.h"

namespace zyr {
namespace {

namespace host = platform::host;

constexpr int64_t kStart = 1'000'000'000;  // 01:46:40 UTC
constexpr char kPath[] = "C:\\ZYRTWAIN.Log";

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

  // The line of the file that holds `text`, without its time stamp.
  static std::string LineWith(const std::string& text) {
    const std::string bytes = Bytes();
    const size_t found = bytes.find(text);
    if (found == std::string::npos) return {};
    const size_t previous = bytes.rfind('\n', found);
    const size_t start = (previous == std::string::npos ? 0 : previous + 1) + 15;
    return bytes.substr(start, bytes.find('\r', start) - start);
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
    EXPECT_TRUE(log.IsOpen());
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
  const std::string at0 = "01:46:40:0000  ", at7 = "01:46:40:0007  ", later = "02:46:40:0007  ";
  const std::string rule(40, '=');
  const std::string expected =
      at0 + "Logging enabled @ " + date(kStart) + "; \r\n" +  //
      at0 + "Computer's Name: SURGERY1\r\n" +                 //
      at0 + "Users's Name: dentist\r\n" +                     //
      at0 + "Computer's IP: 192.168.1.20\r\n" +               //
      at0 + "Computer's OS: 6.1.7601  Platform: 2\r\n" +      //
      at0 + " \r\n" +                                         //
      at7 + "File details:\r\n" +                             //
      at7 + "    Filename: " + module + "\r\n" +              //
      at7 + "    File Exists? Yes\r\n" +                      //
      at7 + "       Created: " + date(kStart - 5000) + "\r\n" + at7 +
      "       Modified: " + date(kStart - 3000) + "\r\n" + at7 + "    Version: 1.1.0.1\r\n" +  //
      later + "abc; \r\n" +                                                                    //
      later + "   two; lines; and; |1.50\r\n" +                                                //
      later + "  100% plain %s\r\n" +                                                          //
      later + "[" + later + " 5" + later + "]\r\n" +                                           //
      std::string(19, ' ') + "first\r\n" +                                                     //
      std::string(19, ' ') + "second\r\n" +                                                    //
      std::string(19, ' ') + "\r\n" +                                                          //
      std::string(19, ' ') + "fourth\r\n" +                                                    //
      "bare\r\nno time\r\n" +                                                                  //
      later + " \r\n" + later + " \r\n" +                                                      //
      later + rule + "\r\n" + later + "Title\r\n" + later + rule + "\r\n" + later +
      "100%:\r\n" +                           //
      later + "File details:\r\n" +           //
      later + "    Filename: C:\\none\r\n" +  //
      later + "    File Exists? No\r\n" +     //
      "\r\n" + "02:46:40:0008  " + "Logging closed @ " + date(kStart + 3600) + "\r\n";
  EXPECT_EQ(Bytes(), expected);
}

TEST_F(LogTest, BuffersUntilItIsFullOrAskedToFlush) {
  LogFile log;
  log.Open("C:\\", "ZYRTWAIN.Log");
  const std::string line(100, 'x');
  while (Bytes().empty()) log.WriteText(line);
  EXPECT_EQ(Bytes().size(), 51200u);
  log.SetFlushEachLine(true);
  EXPECT_EQ(Bytes().size(), 51200u);
  log.WritePartial("end");
  EXPECT_EQ(Bytes().substr(Bytes().size() - 3), "end");
  log.WriteBlock("block");
  EXPECT_EQ(Bytes().substr(Bytes().size() - 7), "block\r\n");
}

TEST_F(LogTest, NamesWhatItCannotFindOut) {
  SetPhraseLookup([](const char* text) { return std::string("~") + text; });
  LogFile log;
  host::SystemInfo info;
  info.computerName.reset();
  info.userName.reset();
  info.lookup = platform::AddressLookup::kNoHost;
  host::SetSystemInfo(info);
  log.Open("C:\\", "ZYRTWAIN.Log");
  log.Close();
  EXPECT_EQ(LineWith("Name: <Unk"), "Computer's Name: <Unknown Computer Name>");
  EXPECT_EQ(LineWith("Users's"), "Users's Name: <Unknown User Name>");
  EXPECT_EQ(LineWith("IP:"), "Computer's IP: Unable to obtain host-by-name");
  info.lookup = platform::AddressLookup::kNoAddress;
  host::SetSystemInfo(info);
  log.Open("C:\\", "ZYRTWAIN.Log");
  log.Close();
  EXPECT_EQ(LineWith("IP:"), "Computer's IP: ~<Unknown IP Address>");
}

TEST_F(LogTest, IsNoLogWhenTheFileCannotBeWritten) {
  {
    host::DenyWriting("C:\\");
    LogFile log;
    log.Open("C:\\", "ZYRTWAIN.Log");
    EXPECT_FALSE(log.IsOpen());
    log.SetFlushEachLine(true);
    log.WriteLine("x");
    log.WriteBlock("x");
    log.Attach(nullptr);
    log.WriteBlock("x");
    log.OpenFromChooser(nullptr);
    EXPECT_EQ(Bytes(), "<none>");
  }
  host::ResetFiles();
  LogFile log;
  log.Open("C:\\", "ZYRTWAIN.Log");
  log.SetFlushEachLine(true);
  host::FailWrites(true);
  log.WriteLine("lost");
  host::FailWrites(false);
  log.WriteLine("kept");
  EXPECT_EQ(LineWith("lost"), "");
  EXPECT_EQ(LineWith("kept"), "kept");
}

TEST_F(LogTest, ClosesOneFileBeforeTheNext) {
  struct Chooser : LogFileChooser {
    std::string Directory() override { return "C:"; }
    std::string FileName() override { return "chosen.log"; }
  } chooser;
  host::PutFile("C:\\Windows\\TWAIN_32\\ZYR\\ZYRTWAIN.ds", "MZ");
  BufferedFile outside(64);
  ASSERT_TRUE(outside.OpenWrite(kPath, true));
  LogFile log;
  log.Attach(&outside);
  log.WriteLine("first");
  log.OpenFromChooser(&chooser);
  log.WriteLine("second");
  EXPECT_FALSE(outside.IsOpen());
  EXPECT_EQ(LineWith("closed").substr(0, 14), "Logging closed");
  log.OpenInModuleDirectory("module.log");
  EXPECT_NE(host::FileBytes("C:\\chosen.log")->find("second\r\n\r\n"), std::string::npos);
  log.Close();
  EXPECT_FALSE(log.IsOpen());
  EXPECT_TRUE(host::FileBytes("C:\\Windows\\TWAIN_32\\ZYR\\module.log").has_value());
  log.Attach(&outside);  // closed as it is; it stays attached, and its owner may open it again
  EXPECT_FALSE(log.IsOpen());
  log.Close();
  ASSERT_TRUE(outside.OpenWrite(kPath, true));
  EXPECT_TRUE(log.IsOpen());
}

}  // namespace
}  // namespace zyr
