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

TEST_F(UsbTest, SpeaksEachGenerationsLanguage) {
  const uint8_t command[] = {0x02, 0x70};
  uint8_t answer[0x902] = {};
  const auto record = [](const std::string& endpoint, const std::string& rest) {
    std::string text(13 * 3, ' ');
    for (int i = 0; i < 13; ++i) text.replace(static_cast<size_t>(3 * i), 2, "00");
    return text + endpoint + " 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 26 00 00 00 " + rest;
  };
  const struct {
    std::function<Result(UsbPort&)> call;
    bool isPipe;
    uint32_t code;
    std::string input;  // its first 40 bytes
    size_t outputSize;
  } kCases[] = {
      {[&](UsbPort& p) { return p.WriteCommand(command, 2); }, true, 0x22204E, "00 00 00 00", 2},
      {[&](UsbPort& p) { return p.WriteAux(command, 1); }, true, 0x22204E, "02 00 00 00", 1},
      {[&](UsbPort& p) { return p.ReadStatus(answer); }, true, 0x22204E, "01 00 00 00", 64},
      {[&](UsbPort& p) { return p.ReadBulk(answer, 5); }, true, 0x22204E, "03 00 00 00", 5},
      {[&](UsbPort& p) { return p.Reset(); }, true, 0x222031, "", 0},
      {[&](UsbPort& p) { return p.WriteCommand(command, 2); }, false, 0x220024,
       record("01", "02 00 00 00 02 70"), 40},
      {[&](UsbPort& p) { return p.WriteAux(nullptr, 0); }, false, 0x220024,  // no short cut
       record("02", "00 00 00 00"), 38},
      {[&](UsbPort& p) { return p.ReadStatus(answer); }, false, 0x220024,
       record("81", "40 00 00 00 00 00"), 38 + 64},
      {[&](UsbPort& p) { return p.ReadBulk(answer, 0x902); }, false, 0x220024,
       record("86", "02 09 00 00 00 00"), 38 + 0x902},
      {[&](UsbPort& p) { return p.Reset(); }, false, 0x220030, "", 0},
  };
  for (const auto& c : kCases) {
    const auto port = c.isPipe ? MakeUsbPortPipe() : MakeUsbPortEndpoint();
    ASSERT_EQ(port->Open(kPath), kOk);
    EXPECT_EQ(c.call(*port), kOk);
    EXPECT_EQ(driver_->code, c.code);
    driver_->input.resize(std::min<size_t>(driver_->input.size(), 40));
    EXPECT_EQ(Hex(driver_->input), c.input);
    EXPECT_EQ(driver_->output.size(), c.outputSize) << c.input;
    EXPECT_TRUE(c.input != "00 00 00 00" || Hex(driver_->output) == "02 70");
  }
  EXPECT_EQ(std::count(std::begin(answer), std::end(answer), 0xEE), 0x902);
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
  const struct {
    uint32_t error;
    uint32_t result;
  } kCases[] = {{5, 0x80070005}, {0x12345, 0x80072345}, {0, 0}, {0x80004005, 0x80004005}};
  for (const bool isPipe : {true, false}) {
    const auto port = isPipe ? MakeUsbPortPipe() : MakeUsbPortEndpoint();
    ASSERT_EQ(port->Open(kPath), kOk);
    for (const auto& c : kCases) {
      driver_->answer = {false, c.error};
      uint8_t bytes[2] = {};
      EXPECT_EQ(port->ReadBulk(bytes, 2), ResultOf(c.result));
      EXPECT_EQ(Hex({bytes, bytes + 2}), "EE EE");  // what arrived, arrived
      EXPECT_EQ(port->WriteCommand(bytes, 2), ResultOf(c.result));
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
  EXPECT_EQ(port->PowerCommand(1), kOk);
  EXPECT_EQ(port->Flush(), kOk);
  const std::vector<std::string> last(sensor->asked.end() - 4, sensor->asked.end());
  EXPECT_EQ(last, (std::vector<std::string>{"0E AA 55", "status", "08 01", "02 70"}));
}

}  // namespace
}  // namespace zyr
