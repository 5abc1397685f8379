// What the application gets of an exposure, bit for bit: from the simulated sensor through the
// whole capture, with the settings that a new installation has and with others. Whoever captures
// the same exposure under Windows gets the same.
#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

#include "hardware/device/sensor_settings.h"
#include "platform/host/resources.h"
#include "resources/resource.h"
#include "settings/store.h"
#include "simulator/tool/scene.h"
#include "tests/acquire/capture_dialog_fixture.h"
#include "tests/hardware/golden_text.h"
#include "tests/support/simulated_sensor.h"

namespace zyr::test {
namespace {

// Lines of family, size, settings and depth, and the CRC-32 of the samples.
constexpr char kGolden[] =
#include "tests/acquire/golden/delivered.inc"
    ;

// The maker's mark, which the module has among its resources.
void UseMakerMark() {
  constexpr size_t kFileHeadBytes = 14;  // which a resource does without
  std::ifstream file(ZYR_STAMP_FILE, std::ios::binary);
  std::vector<uint8_t> bytes{std::istreambuf_iterator<char>(file), {}};
  ASSERT_GT(bytes.size(), kFileHeadBytes);
  bytes.erase(bytes.begin(), bytes.begin() + kFileHeadBytes);
  host::AddBitmap(platform::OwnResources(), IDB_STAMP, bytes);
}

class DeliveredCaptureTest : public CaptureDialogFixture {
 protected:
  void SetUp() override {
    CaptureDialogFixture::SetUp();
    UseMakerMark();
    host::SetClock(1'700'000'000);
    host::HoldThreads(true);
    SensorSettings() = {};
    PutSensorSettings();
    PutSettings();
  }
  void TearDown() override {
    dialog_.reset();
    host::ResetThreads();
    sensors_.reset();
    CaptureDialogFixture::TearDown();
  }

  static void PutSettings() {
    host::ClearRegistry();
    SetAlwaysPromptForSensor(false);
    SetProceedDirectlyToScan(true);
    SetSISingleCaptureMode(true);
    SetReturnImmediatelyAfterCap(true);
  }

  // A sensor as `zyrsim plug` has it.
  static SensorToPlug SensorOf(simulator::Family family, simulator::Size size) {
    SensorToPlug what;
    what.detector.family = family;
    what.detector.size = size;
    what.made = std::make_shared<const simulator::Detector>(simulator::MakeDetector(
        what.detector, simulator::SceneOfPhantom(family, size, what.detector.seed)));
    return what;
  }

  void Capture(simulator::Family family, simulator::Size size) {
    const SimulatedSensor sensor(SensorOf(family, size));
    DevMgr manager;
    sensors_.emplace(&manager);
    SetSelectedSensorNAME(family == simulator::kFamily303 ? "LUMORAY" : "2000");
    SetSelectedSensorHWID(sensor.instanceId());
    ASSERT_TRUE(Open());
    ASSERT_TRUE(host::RunHeldThread());
    host::PumpMessages();
    ASSERT_EQ(images_.GetCount(), 1u);
    ASSERT_EQ(xferReadies_, 1);
    xferReadies_ = 0;
    dialog_.reset();
    sensors_.reset();
  }

  // Of the rows that a memory transfer gives.
  std::string DeliveredCrc(bool deep) {
    CachedImage& image = *images_.GetAt(0);
    const uint32_t rowBytes = image.width * (deep ? 2 : 1);
    std::vector<uint8_t> rows(size_t{rowBytes + 3} * image.height);
    const TransferTerms terms{.is16BitGrayscale = [=] { return deep; }};
    MemoryStrip strip{
        .isPointer = true, .length = static_cast<uint32_t>(rows.size()), .memory = rows.data()};
    const uint32_t xOffset = 0;
    uint32_t offset = 0;
    bool done = false;
    EXPECT_TRUE(image.CopyToMemoryBuffer(&strip, &xOffset, &offset, &done, terms));
    EXPECT_EQ(offset, image.height);
    std::vector<uint8_t> pixels;
    for (uint32_t y = 0; y < image.height; ++y) {
      const uint8_t* row = rows.data() + size_t{strip.bytesPerRow} * y;
      pixels.insert(pixels.end(), row, row + rowBytes);
    }
    return CrcOf(pixels);
  }
};

void NewSettings() {}

// As a user sets them on the pages of the options: every control of image processing is moved.
void OtherSettings() {
  SetImageAdjustment("ZYR2000", {20, 30, 1.2});
  SetMedian("ZYR2000", 1);
  SetSharpening("ZYR2000", {true, 3, 30});
  SetLaplace("ZYR2000", {true, 5, 6});
  SetSmoothing("ZYR2000", {true, 7, 20});
  SetImageAdjustment("ZYR303", {-15, 12, 0.9});
  SetMedian("ZYR303", 3);
  SetSharpening("ZYR303", {true, 5, 25});
  SetLaplace("ZYR303", {false, 3, 3});
  SetSmoothing("ZYR303", {false, 3, 50});
}

TEST_F(DeliveredCaptureTest, IsTheSameEverywhere) {
  const struct {
    const char* name;
    simulator::Family family;
    simulator::Size size;
    void (*put)();
  } kSensors[] = {{"2000-A", simulator::kFamily2000, simulator::kSizeA, NewSettings},
                  {"2000-D", simulator::kFamily2000, simulator::kSizeD, NewSettings},
                  {"303-C", simulator::kFamily303, simulator::kSizeC, NewSettings},
                  {"303-D", simulator::kFamily303, simulator::kSizeD, NewSettings},
                  {"2000-A-other", simulator::kFamily2000, simulator::kSizeA, OtherSettings},
                  {"303-C-other", simulator::kFamily303, simulator::kSizeC, OtherSettings},
                  {"2000-A-unstretched", simulator::kFamily2000, simulator::kSizeA,
                   [] { SetHistStretch(false); }},
                  {"2000-D-binned", simulator::kFamily2000, simulator::kSizeD,
                   [] { SetBinning("ZYR2000", true); }}};
  std::string delivered = "sensor-depth crc\n";
  for (const auto& sensor : kSensors) {
    PutSettings();
    sensor.put();
    Capture(sensor.family, sensor.size);
    if (HasFatalFailure()) return;
    delivered += std::string(sensor.name) + "-16 " + DeliveredCrc(true) + "\n";
    delivered += std::string(sensor.name) + "-8 " + DeliveredCrc(false) + "\n";
    images_.DeleteAll();
  }
  ExpectGolden("delivered.inc", kGolden, delivered);
}

}  // namespace
}  // namespace zyr::test
