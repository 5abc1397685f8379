// The two ports byte by byte, and the commands that all sensors know.
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "foundation/support/error.h"
#include "hardware/usb/usb_port.h"
#include "platform/host/host.h"
#include "tests/hardware/scripted_driver.h"

namespace zyr {
namespace {

namespace host = platform::host;
using test::Bytes;
using test::Hex;

constexpr char kPath[] = "\\\\?\\usb#vid_082e";

// Notes the last call as it came, fills the data of the output and answers as told.
class RawDriver : public host::FakeDriver {
 public:
  platform::DriverAnswer answer{true, 0};
  int calls = 0;
  uint32_t code = 0;
  Bytes input;
  Bytes output;  // before it is filled
  std::function<void()> whileAsked = [] {};

  platform::DriverAnswer Control(uint32_t newCode, uint8_t* in, size_t inSize, uint8_t* out,
                                 size_t outSize) override {
    ++calls;
    code = newCode;
    input.assign(in, in + inSize);
    output.assign(out, out + outSize);
    std::fill(out + (code == 0x220024 ? 38 : 0), out + outSize, 0xEE);
    whileAsked();
    return answer;
  }
};

class UsbTest : public testing::Test {
 protected:
  void SetUp() override {
    host::ResetAll();
    host::PutDriver(kPath, driver_);
  }

  std::shared_ptr<RawDriver> driver_ = std::make_shared<RawDriver>();
};

// What they say to a sensor stands in the transcripts; here, what no sensor looks at.
TEST_F(UsbTest, SpeaksEachGenerationsLanguage) {
  const uint8_t byte = 0x70;
  for (const bool isPipe : {true, false}) {
    const auto port = isPipe ? MakeUsbPortPipe() : MakeUsbPortEndpoint();
    ASSERT_EQ(port->Open(kPath), kOk);
    driver_->calls = 0;
    EXPECT_EQ(port->WriteAux(nullptr, 0), kOk);
    EXPECT_EQ(driver_->calls, isPipe ? 0 : 1);
    EXPECT_EQ(port->WriteAux(&byte, 1), kOk);
    Bytes record(39);  // zero but for these
    record[0x0D] = 0x02;
    record[0x1E] = 0x26;
    record[0x22] = 1;
    record[0x26] = 0x70;
    EXPECT_EQ(driver_->code, isPipe ? 0x22204Eu : 0x220024u);
    EXPECT_EQ(driver_->input, isPipe ? (Bytes{2, 0, 0, 0}) : record);
    EXPECT_EQ(driver_->output, isPipe ? Bytes{0x70} : record);
  }
}

TEST_F(UsbTest, ChecksInEachGenerationsOrder) {
  uint8_t byte = 0;
  for (const bool isPipe : {true, false}) {
    const auto port = isPipe ? MakeUsbPortPipe() : MakeUsbPortEndpoint();
    EXPECT_EQ(port->Reset(), isPipe ? USB_E_RESET : USB_E_NOT_OPEN);
    EXPECT_EQ(port->ReadPipe(3, &byte, 0), USB_E_NOT_OPEN);
    EXPECT_EQ(port->WritePipe(9, &byte, 0), USB_E_NOT_OPEN);
    EXPECT_EQ(port->Open("nothing there"), USB_E_OPEN);
    ASSERT_EQ(port->Open(kPath), kOk);
    ASSERT_EQ(port->Open(kPath), kOk);
    EXPECT_EQ(host::OpenDriverHandles(), 1u);
    driver_->calls = 0;
    EXPECT_EQ(port->ReadPipe(2, &byte, 1), USB_E_BAD_PIPE);
    EXPECT_EQ(port->WritePipe(1, &byte, 1), USB_E_BAD_PIPE);
    EXPECT_EQ(port->ReadPipe(0, &byte, 0), isPipe ? kOk : USB_E_BAD_PIPE);
    EXPECT_EQ(port->WritePipe(3, &byte, 0), USB_E_BAD_PIPE);
    EXPECT_TRUE(Failed(port->ReadBulk(nullptr, 1)));
    EXPECT_TRUE(Failed(port->WriteCommand(nullptr, 1)));
    EXPECT_EQ(driver_->calls, 0);
    EXPECT_EQ(port->WritePipe(2, &byte, 0), kOk);
    EXPECT_EQ(driver_->calls, isPipe ? 0 : 1);
    // With its record beyond 32 bits.
    EXPECT_TRUE(isPipe || Failed(port->ReadBulk(&byte, 0xFFFFFFFF)));
  }
  EXPECT_EQ(host::OpenDriverHandles(), 0u);
}

TEST_F(UsbTest, FailuresCarryTheSystemsNumber) {
  constexpr uint32_t kCases[][2] = {// the system's number and the result
                                    {5, 0x80070005},
                                    {0x12345, 0x80072345},
                                    {0, 0},
                                    {0x80004005, 0x80004005}};
  for (const bool isPipe : {true, false}) {
    const auto port = isPipe ? MakeUsbPortPipe() : MakeUsbPortEndpoint();
    ASSERT_EQ(port->Open(kPath), kOk);
    for (const auto& [error, result] : kCases) {
      driver_->answer = {false, error};
      uint8_t bytes[2] = {};
      EXPECT_EQ(port->ReadBulk(bytes, 2), ResultOf(result));
      EXPECT_EQ(Hex({bytes, bytes + 2}), "EE EE");  // what arrived, arrived
      EXPECT_EQ(port->WriteCommand(bytes, 2), ResultOf(result));
      EXPECT_EQ(port->Reset(), USB_E_RESET);
    }
  }
}

TEST_F(UsbTest, ATransferUnderWayKeepsTheHandleOfAPortThatIsClosed) {
  for (const bool isPipe : {true, false}) {
    const auto port = isPipe ? MakeUsbPortPipe() : MakeUsbPortEndpoint();
    ASSERT_EQ(port->Open(kPath), kOk);
    driver_->whileAsked = [&] {
      port->Close();
      EXPECT_EQ(host::OpenDriverHandles(), 1u);
    };
    uint8_t byte = 0;
    EXPECT_EQ(port->ReadBulk(&byte, 1), kOk);
    EXPECT_EQ(host::OpenDriverHandles(), 0u);
    EXPECT_EQ(port->ReadBulk(&byte, 1), USB_E_NOT_OPEN);
  }
}

TEST_F(UsbTest, EchoTellsWhatIsWrong) {
  const struct {
    std::array<uint8_t, 3> answer;
    Result checked;
    const char* text;  // its beginning
  } kCases[] = {
      {{0x8E, 0xAA, 0x55}, kOk, ""},
      {{0x83, 0xAA, 0x55}, DEV_E_BAD_RESPONSE, "An unknown response"},
      {{0x8E, 0xAB, 0x55}, DEV_E_HARDWARE, "An unknown hardware error"},
      {{0x8E, 0xAA, 0xFF}, DEV_E_XILINX, "A Xilinx error"},
      {{0x8E, 0xAA, 0x00}, DEV_E_HARDWARE, "An unknown hardware error"},
  };
  const auto sensor = std::make_shared<test::ScriptedDriver>();
  host::PutDriver(kPath, sensor);
  const auto port = MakeUsbPortPipe();
  ASSERT_EQ(port->Open(kPath), kOk);
  for (const auto& c : kCases) {
    sensor->echo = c.answer;
    SetErrorText(0, "");
    EXPECT_EQ(port->Echo(false), kOk);
    EXPECT_EQ(port->Echo(true), c.checked);
    EXPECT_TRUE(LastErrorText().starts_with(c.text)) << LastErrorText();
    EXPECT_EQ(LastErrorText().empty(), c.checked == kOk);
  }
}

}  // namespace
}  // namespace zyr
