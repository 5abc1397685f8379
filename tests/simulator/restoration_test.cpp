// What the sensor adds to the scene, the device's corrections take away again.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <string>
#include <vector>

#include "hardware/device/device.h"
#include "hardware/device/sensor_settings.h"
#include "platform/host/host.h"
#include "simulator/physics.h"
#include "tests/support/simulated_sensor.h"
#include "tools/makephantom/phantom.h"

namespace zyr::test {
namespace {

namespace host = platform::host;
using namespace simulator;

struct Variant {
  Family family;
  Size size;
  bool isBinned = false;
  bool hasGain = false;
};
constexpr Variant kVariants[] = {{kFamily2000, kSizeA}, {kFamily2000, kSizeB},
                                 {kFamily2000, kSizeC}, {kFamily2000, kSizeC, true},
                                 {kFamily2000, kSizeD}, {kFamily2000, kSizeD, true},
                                 {kFamily303, kSizeC},  {kFamily303, kSizeC, false, true},
                                 {kFamily303, kSizeD},  {kFamily303, kSizeD, false, true}};

// Mean distance from the scene, in levels of 12 bits.
struct Distance {
  double everywhere = 0;
  double atDefects = 0;  // bad pixels, and on bad lines
};

class RestorationTest : public testing::Test {
 protected:
  void SetUp() override {
    host::ResetAll();
    host::SetClock(1'800'000'000);
    SensorSettings().Clear();
    PutSensorSettings();
    ASSERT_TRUE(SensorSettings().Load());
  }
  void TearDown() override {
    device_.reset();
    EXPECT_EQ(host::OpenDriverHandles(), 0u);
    SensorSettings().Clear();
    host::ResetAll();
  }

  // Plugs the sensor in and takes an image of the scene.
  void Capture(const Variant& variant, const Scene& scene) {
    SensorToPlug what;
    what.detector.family = variant.family;
    what.detector.size = variant.size;
    what.detector.gain = variant.hasGain;
    what.made = std::make_shared<const Detector>(MakeDetector(what.detector, scene));
    device_.reset();
    sensor_.reset();
    sensor_ = std::make_unique<SimulatedSensor>(what);
    const bool is303 = variant.family == kFamily303;
    device_.reset(is303 ? NewDeviceZYR303(sensor_->path(), MakeUsbPortPipe(), {})
                        : NewDevice2000(sensor_->path(), MakeUsbPortPipe(), {}));
    device_->AddRef();
    ASSERT_EQ(device_->Open(), kOk);
    EXPECT_EQ(device_->GetProperty("sensor_id"), sensor_->detector().identity);
    ASSERT_EQ(device_->SetProperty("binned", variant.isBinned ? "true" : "false"), kOk);
    ASSERT_EQ(device_->CaptureImage(), kOk);
    EXPECT_EQ(sensor_->Statistics().framesRead, 2u);

    scene_ = scene;
    bin_ = variant.isBinned ? 2 : 1;
    scale_ = is303 ? 16 : 1;
    MarkDefects();
  }

  Distance DistanceOf(ImageType type) {
    SensorImage* out = nullptr;
    EXPECT_EQ(device_->GetImage(type, &out), kOk);
    const Held<SensorImage> image(out);
    if (image == nullptr) return {};
    EXPECT_EQ(image->GetWidth(), scene_.width / bin_);
    EXPECT_EQ(image->GetHeight(), scene_.height / bin_);
    const bool isStretched = type >= OFFSET_DEFECT_CORRECTED;
    double sum = 0;
    double sumAtDefects = 0;
    size_t defects = 0;
    for (uint32_t y = 0; y < image->GetHeight(); ++y) {
      for (uint32_t x = 0; x < image->GetWidth(); ++x) {
        const double level = image->GetPixel(x, y) / (isStretched ? scale_ : 1.0);
        const double error = std::abs(level - Seen(x, y));
        sum += error;
        if (!isBad_[size_t{y} * bin_ * scene_.width + x * bin_]) continue;
        sumAtDefects += error;
        ++defects;
      }
    }
    EXPECT_GT(defects, 0u);
    const double pixels = double{1} * image->GetWidth() * image->GetHeight();
    return {sum / pixels, sumAtDefects / static_cast<double>(std::max<size_t>(defects, 1))};
  }

 private:
  double Seen(uint32_t x, uint32_t y) const {
    double sum = 0;
    for (uint32_t dy = 0; dy < bin_; ++dy) {
      for (uint32_t dx = 0; dx < bin_; ++dx) {
        sum += scene_.samples[size_t{y * bin_ + dy} * scene_.width + x * bin_ + dx];
      }
    }
    return sum / (bin_ * bin_);
  }

  // In a binned image, at the first of the pixels that were put together.
  void MarkDefects() {
    isBad_.assign(size_t{scene_.width} * scene_.height, false);
    const auto mark = [this](uint32_t x, uint32_t y) {
      isBad_[size_t{y / bin_ * bin_} * scene_.width + x / bin_ * bin_] = true;
    };
    for (const Defect& defect : sensor_->detector().defects) {
      if (defect.kind == kBadPixel) mark(defect.x, defect.y);
      for (uint32_t x = 0; defect.kind == kBadRow && x < scene_.width; ++x) mark(x, defect.y);
      for (uint32_t y = 0; defect.kind == kBadColumn && y < scene_.height; ++y) mark(defect.x, y);
    }
  }

  std::unique_ptr<SimulatedSensor> sensor_;
  Held<Device> device_;
  Scene scene_;
  uint32_t bin_ = 1;
  int scale_ = 1;  // of the corrected image's levels
  std::vector<bool> isBad_;
};

// The radiograph where people look; elsewhere the smooth picture, which shows more.
bool SeesRadiograph(const Variant& variant) {
  return variant.size == kSizeD && !variant.isBinned && !variant.hasGain;
}

Scene SceneFor(const Variant& variant) {
  const Geometry geometry = GeometryOf(variant.family, variant.size);
  if (!SeesRadiograph(variant)) return TestScene(geometry);
  PhantomSettings settings;
  settings.width = geometry.width;
  settings.height = geometry.height;
  settings.micrometresPerPixel = variant.family == kFamily303 ? 33 : 22.5;
  return {geometry.width, geometry.height, DrawPhantom(settings)};
}

TEST_F(RestorationTest, TheSceneComesBack) {
  for (const Variant& variant : kVariants) {
    SCOPED_TRACE(testing::Message() << "family " << variant.family << ", size " << variant.size
                                    << ", " << variant.isBinned << variant.hasGain);
    Capture(variant, SceneFor(variant));
    if (HasFatalFailure()) return;
    const Distance raw = DistanceOf(UNPROCESSED_NORMAL_FRAME);
    const Distance subtracted = DistanceOf(OFFSET_CORRECTED);
    const Distance corrected = DistanceOf(OFFSET_DEFECT_HISTOGRAM_CORRECTED);
    EXPECT_LT(corrected.everywhere, 5);
    // Neighbours do not know a radiograph's grain.
    EXPECT_LT(corrected.atDefects, SeesRadiograph(variant) ? 60 : 5);
    EXPECT_GT(raw.everywhere, 60);
    EXPECT_GT(subtracted.everywhere, 2 * corrected.everywhere);
    EXPECT_GT(subtracted.atDefects, 100);
  }
}

}  // namespace
}  // namespace zyr::test
