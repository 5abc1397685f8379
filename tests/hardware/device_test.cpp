// Sensors coming up, and what the devices keep of them.
#include <gmock/gmock.h>

#include "tests/hardware/device_fixture.h"

namespace zyr {
namespace {

namespace host = platform::host;
using test::Bytes;
using ::testing::ElementsAre;
using ::testing::StartsWith;

class BringUpTest : public test::DeviceTest {
 protected:
  // A memory of the 303 family without any block.
  void PutIdentity303(const std::string& id) {
    std::fill(sensor_->memory.begin(), sensor_->memory.end(), uint8_t{0});
    sensor_->PutText(0x10, id + " ");
    sensor_->PutText(0x20, "\xFF\xFF");
  }

  // One block with this payload and the description "Factory".
  void PutBlock303(uint8_t kind, const Bytes& payload) {
    Bytes& memory = sensor_->memory;
    memory[0x20] = 1;
    StoreLittleEndian(&memory[0x23], static_cast<uint32_t>(payload.size()));
    memory[0x28] = kind;
    sensor_->PutText(0x29, "Factory  ");
    std::copy(payload.begin(), payload.end(), memory.begin() + 0x39);
    std::fill_n(memory.begin() + 0x39 + static_cast<std::ptrdiff_t>(payload.size()) + 2, 2,
                uint8_t{0xFF});
  }
};

// What they say meanwhile stands in the transcripts.
TEST_F(BringUpTest, Of2000KeepsWhatItMayAndAsksForTheRest) {
  PutIdentity("CCD12C");
  PutSettings("flush_time='1200' threshold='99' Device_Name='X'");
  ASSERT_EQ(Open2000(), kOk);
  TakeAsked();
  EXPECT_EQ(device_->family_id() + " " + device_->sensor_id(), "2000 CCD12C");
  // Only what a sensor does not insist on can be configured.
  EXPECT_EQ(device_->GetProperty("threshold") + device_->GetProperty("device_name"), "8usb-2000");
  EXPECT_EQ(device_->GetProperty("flush_time") + device_->GetProperty("sensor_size"), "1200C");
  EXPECT_EQ(device_->GetDpiX(), 1129);
  EXPECT_THAT(TakeAsked(), ElementsAre());
  // Reading the identity asks the hardware whether the sensor is still the same.
  EXPECT_EQ(device_->GetProperty("sensor_id"), "CCD12C");
  EXPECT_EQ(device_->SetProperty("binned", "TRUE"), kOk);
  EXPECT_EQ(device_->GetDpiX(), 564);
  device_->Close();
  EXPECT_EQ(device_->Open(), kOk);  // the sensor is up
  EXPECT_THAT(TakeAsked(), ElementsAre("02 C0", "status", "06", "bulk 8", "02 2F"));
}

TEST_F(BringUpTest, Of303AsksForNothingMore) {
  PutIdentity303("K1234D");
  PutBlock303(0, {2, 0, 0});
  ASSERT_EQ(Open303(), kOk);
  TakeAsked();
  EXPECT_EQ(device_->family_id() + " " + device_->sensor_id(), "LUMORAY K1234D");
  EXPECT_EQ(device_->GetProperty("sensor_size") + device_->GetProperty("description"), "DFactory");
  EXPECT_EQ(device_->GetProperty("corner_fill") + device_->GetProperty("sensor_id"), "falseK1234D");
  EXPECT_EQ(device_->GetDpiY(), 770);
  EXPECT_THAT(TakeAsked(), ElementsAre());
}

TEST_F(BringUpTest, AFailureLeavesADeviceThatCanBeOpenedAgain) {
  PutIdentity("CCD12A");
  sensor_->failAt = {{9, 5}};
  EXPECT_EQ(Open2000(), DEV_E_MEMORY);
  EXPECT_THAT(LastErrorText(), StartsWith("A valid sensor was not detected on the hardware."));
  EXPECT_EQ(device_->family_id(), "");
  EXPECT_EQ(device_->Open(), kOk);
  // The size command and the MAC ID are not waited for.
  for (const uint32_t transfer : {12, 13, 14, 15, 16}) {
    sensor_->transfers = 0;
    sensor_->failAt = {{transfer, 5}};
    EXPECT_EQ(Open2000(), kOk) << transfer;
  }
  PutIdentity("CCD12X");
  EXPECT_EQ(Open2000(), DEV_E_BAD_SIZE);
  host::TakeDriver(kPath);
  EXPECT_EQ(Open2000(), USB_E_OPEN);
  EXPECT_EQ(LastErrorText(), "");  // no text of an earlier failure
}

TEST_F(BringUpTest, Of303RefusesWhatItsMemoryCannotMean) {
  const struct {
    const char* id;
    Bytes payload;
    Result result;
    const char* text;
  } kCases[] = {
      {"", {}, kUnspecifiedFailure, "Unable to load the LumoRay memory from the sensor"},
      {"K1234X", {}, DEV_E_BAD_SIZE, "Unable to determine the size"},
      {"K3C", {}, kOk, ""},  // a kind without any block
      {"K3CC", {}, DEV_E_NO_BLOCKS, "The hardware correction data could not be downloaded"},
      {"K1234C", {7, 7, 7}, kUnexpected, "The hardware correction data could not be downloaded"},
      {"K1234567890ABCDC", {2, 0, 0}, kOk, ""},  // all 16 characters
  };
  for (const auto& c : kCases) {
    PutIdentity303(std::string(c.id).substr(0, 15));
    sensor_->PutText(0x10, c.id);
    if (!c.payload.empty()) PutBlock303(1, c.payload);
    TakeAsked();
    EXPECT_EQ(Open303(), c.result) << c.id;
    EXPECT_THAT(LastErrorText(), StartsWith(c.text));
    EXPECT_EQ(device_->sensor_id(), std::string(c.id).empty() ? "LUMORAY" : c.id);
  }
}

TEST_F(BringUpTest, AnotherSensorOnTheSameControllerIsNoticed) {
  PutIdentity("CCD1D");
  ASSERT_EQ(Open2000(), kOk);
  TakeAsked();
  PutIdentity("CCD2B");
  sensor_->mac[7] = 9;
  EXPECT_EQ(device_->GetProperty("hw_correction_data"), "true");
  EXPECT_THAT(TakeAsked(),
              ElementsAre("02 C0", "status", "06", "bulk 8",  // another MAC ID
                          "02 C0", "status", "0E AA 55", "status", "0C 20 00 00 00", "bulk 8192",
                          "0F", "02 29", "02 C0", "status", "06", "bulk 8"));
  EXPECT_EQ(device_->GetProperty("sensor_id"), "CCD2B");
  EXPECT_EQ(device_->GetProperty("sensor_size"), "B");
  // The same identity keeps what is in hand.
  sensor_->mac[7] = 10;
  TakeAsked();
  EXPECT_EQ(device_->GetProperty("sensor_id"), "CCD2B");
  EXPECT_THAT(TakeAsked(), ElementsAre("02 C0", "status", "06", "bulk 8", "02 C0", "status",
                                       "0E AA 55", "status", "0C 20 00 00 00", "bulk 8192", "02 C0",
                                       "status", "06", "bulk 8"));
}

TEST_F(BringUpTest, ASensorWithoutMemoryIsWhatTheUserSays) {
  sensor_->present = {0, 2};
  ASSERT_EQ(Open2000(), kOk);  // without an identity
  EXPECT_THAT(Asked(sensor_->asked.begin() + 5, sensor_->asked.end()),
              ElementsAre("02 C0", "status", "02 C0", "status"));
  sensor_->present = {0, 0, 0};
  EXPECT_EQ(device_->GetProperty("sensor_id"), "");
  EXPECT_EQ(device_->CaptureImage(), DEV_E_NO_CORRECTION_DATA);
  EXPECT_THAT(LastErrorText(), StartsWith("The hardware correction data could not be downloaded"));
  // What the user says counts then, and a list of defects beside the module is of no account.
  host::PutFile("C:\\Windows\\TWAIN_32\\ZYR\\ccd9d.fix", "no list at all");
  sensor_->present = {0, 0, 0, 0};
  TakeAsked();
  EXPECT_EQ(device_->SetProperty("sensor_id", "CCD9D"), kOk);
  EXPECT_THAT(TakeAsked(), ElementsAre("02 21"));
  EXPECT_EQ(device_->GetProperty("sensor_id"), "ccd9d");
  // The second answer that says so makes it a sensor with memory.
  PutIdentity("CCD1A");
  sensor_->mac[0] = 77;
  sensor_->present = {1, 0, 1, 1};
  EXPECT_EQ(device_->GetProperty("sensor_id"), "CCD1A");
  EXPECT_EQ(device_->SetProperty("sensor_id", "CCD9D"), DEV_E_BAD_VALUE);
  // One that goes is noticed once.
  sensor_->present = {0, 0, 0, 0};
  EXPECT_EQ(device_->GetProperty("sensor_id"), "");
  TakeAsked();
  EXPECT_EQ(device_->GetProperty("sensor_id"), "");
  EXPECT_THAT(TakeAsked(), ElementsAre("02 C0", "status"));
}

TEST_F(BringUpTest, AClosedDeviceFailsCleanly) {
  PutIdentity("CCD1A");
  ASSERT_EQ(Open2000(), kOk);
  host::TakeDriver(kPath);
  for (int i = 0; i < 2; ++i) {
    EXPECT_EQ(device_->GetProperty("sensor_id"), "CCD1A");
    EXPECT_EQ(device_->SetProperty("binned", "true"), kOk);
    EXPECT_TRUE(Failed(device_->CaptureImage()));
    EXPECT_THAT(LastErrorText(), StartsWith("Could not read from the memory on the hardware."));
    device_->ManualTrigger();
    device_->Close();
  }
  EXPECT_EQ(device_->Open(), USB_E_OPEN);
  SensorImage* image = nullptr;
  EXPECT_EQ(device_->GetImage(6, &image), DEV_E_BAD_IMAGE_TYPE);
  EXPECT_EQ(image, nullptr);
  ASSERT_EQ(device_->GetImage(&image), kOk);  // of no capture
  EXPECT_EQ(image->GetWidth(), 0u);
  EXPECT_EQ(image->Release(), 0u);
}

}  // namespace
}  // namespace zyr
