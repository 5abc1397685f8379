// The sensor on the host's bus, as the code above the drivers finds it.
#include "tests/support/simulated_sensor.h"

#include <gtest/gtest.h>

#include <vector>

#include "hardware/usb/usb_port.h"
#include "platform/file_version.h"
#include "platform/host/host.h"
#include "platform/registry.h"

namespace zyr::test {
namespace {

namespace host = platform::host;
using namespace simulator;

class SimulatedSensorTest : public testing::Test {
 protected:
  void SetUp() override {
    host::ResetAll();
    host::SetClock(1'800'000'000);
    what_.detector.size = kSizeA;
  }
  void TearDown() override { host::ResetAll(); }

  static std::unique_ptr<platform::DeviceEnumeration> Bus() {
    uint32_t error = 0;
    return platform::EnumerateUsbDevices(&error);
  }

  SensorToPlug what_;
};

TEST_F(SimulatedSensorTest, IsFoundOnTheBus) {
  what_.detector.family = kFamily303;
  what_.detector.size = kSizeC;
  what_.driverVersion = 2;
  {
    const SimulatedSensor sensor(what_);
    const auto bus = Bus();
    ASSERT_TRUE(bus->Next());
    EXPECT_EQ(bus->InstanceId(), "USB\\VID_082E&PID_1005\\0001");
    EXPECT_EQ(bus->Path(),
              "\\\\?\\usb#vid_082e&pid_1005#0001#{a5dcbf10-6530-11d2-901f-00c04fb951ed}");
    const auto key = platform::RegistryKey::Open(
        platform::RootKey::kLocalMachine,
        "system\\currentcontrolset\\control\\class\\" + bus->DriverKey().value(),
        platform::KeyAccess::kRead);
    ASSERT_TRUE(key);
    const auto file = key->Read("NTMPDriver");
    ASSERT_TRUE(file);
    const std::string name(file->data.begin(), file->data.end() - 1);
    EXPECT_EQ(platform::FixedFileVersion("C:\\Windows\\System32\\Drivers\\" + name)->front(), 2);
    EXPECT_FALSE(bus->Next());
  }
  EXPECT_FALSE(Bus()->Next());
}

TEST_F(SimulatedSensorTest, WritesDownItsTraffic) {
  what_.timing.transfer = 1'500;  // half milliseconds add up
  const SimulatedSensor sensor(what_);
  const auto pipes = MakeUsbPortPipe();
  ASSERT_EQ(pipes->Open(sensor.path()), kOk);
  EXPECT_EQ(pipes->Reset(), kOk);
  EXPECT_EQ(pipes->Echo(true), kOk);
  constexpr uint8_t kReadMemory[] = {0x0C, 0, 96, 0, 0x60};
  EXPECT_EQ(pipes->WriteCommand(kReadMemory, 5), kOk);
  std::vector<uint8_t> bytes(kStatusSize);
  EXPECT_EQ(pipes->ReadBulk(bytes.data(), 48), kOk);
  EXPECT_EQ(pipes->ReadBulk(bytes.data(), 48), kOk);
  EXPECT_EQ(pipes->ReadBulk(bytes.data(), 48), ResultOf(0x80070079));
  EXPECT_EQ(sensor.Transcript(),
            "      0  222031 reset\n"
            "      1  22204E out 0 3: 0E AA 55\n"
            "      3  22204E in  1 64: 8E AA 55\n"
            "      4  22204E out 0 5: 0C 00 60 00 60\n"
            "      6  22204E in  3 48 x 2: crc ADE22900\n"
            "      9  22204E in  3 48 error 121\n");

  what_.instance = "0002";
  what_.generation = kEndpointDriver;
  SimulatedSensor other(what_);
  other.SetFault(kFaultShort, 1, 3);
  const auto endpoints = MakeUsbPortEndpoint();
  ASSERT_EQ(endpoints->Open(other.path()), kOk);
  EXPECT_EQ(endpoints->PowerCommand(1), kOk);
  EXPECT_EQ(endpoints->ReadStatus(bytes.data()), kOk);
  EXPECT_EQ(other.Transcript(),
            "      0  220024 out 01 2: 08 01\n"
            "      1  220024 in  81 64: 83 05 00 (3 came)\n");
}

TEST_F(SimulatedSensorTest, LeavesTheBusInTheMiddleOfATransfer) {
  SimulatedSensor sensor(what_);
  const auto port = MakeUsbPortPipe();
  ASSERT_EQ(port->Open(sensor.path()), kOk);
  sensor.SetFault(kFaultUnplug, 1);
  EXPECT_EQ(port->PowerCommand(1), kOk);
  EXPECT_EQ(port->PowerCommand(1), ResultOf(0x8007048F));
  EXPECT_FALSE(sensor.IsPlugged());
  EXPECT_FALSE(Bus()->Next());
  sensor.Replug();
  EXPECT_EQ(port->PowerCommand(1), ResultOf(0x8007048F)) << "the old handle stays dead";
  EXPECT_TRUE(Bus()->Next());
  ASSERT_EQ(port->Open(sensor.path()), kOk);
  EXPECT_EQ(port->PowerCommand(1), kOk);
  EXPECT_EQ(sensor.Commanded().power, 1u);
  EXPECT_EQ(sensor.Transcript(), "      0  22204E out 0 2: 08 01\n");
}

}  // namespace
}  // namespace zyr::test
