// What the sensor adds to the scene, the device's corrections take away again.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
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
  const char* name;
  DetectorOptions options;
  bool binned = false;
};

DetectorOptions Options(Family family, Size size, bool gain = false) {
  DetectorOptions options;
  options.family = family;
  options.size = size;
  options.gain = gain;
  return options;
}

// Mean distance from the scene, in levels of 12 bits.
struct Distance {
  double everywhere = 0;
  double atDefects = 0;  // bad pixels, and on bad lines
};

class RestorationTest : public testing::TestWithParam<Variant> {
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
  void Capture(const Variant& variant, const Scene& scene,
               std::shared_ptr<const Detector> detector) {
    SensorToPlug what;
    what.detector = variant.options;
    what.made = std::move(detector);
    sensor_ = std::make_unique<SimulatedSensor>(what);
    const bool is303 = variant.options.family == kFamily303;
    device_.reset(is303 ? NewDeviceZYR303(sensor_->path(), MakeUsbPortPipe(), {})
                        : NewDevice2000(sensor_->path(), MakeUsbPortPipe(), {}));
    device_->AddRef();
    ASSERT_EQ(device_->Open(), kOk);
    EXPECT_EQ(device_->GetProperty("sensor_id"), sensor_->detector().identity);
    if (variant.binned) {
      ASSERT_EQ(device_->SetProperty("binned", "true"), kOk);
    }
    ASSERT_EQ(device_->CaptureImage(), kOk);
    EXPECT_EQ(sensor_->Statistics().framesRead, 2u);

    scene_ = scene;
    bin_ = variant.binned ? 2 : 1;
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
  return variant.options.size == kSizeD && !variant.binned && !variant.options.gain;
}

Scene SceneFor(const Variant& variant) {
  const DetectorOptions& options = variant.options;
  const Geometry geometry = GeometryOf(options.family, options.size);
  if (!SeesRadiograph(variant)) return TestScene(geometry);
  PhantomSettings settings;
  settings.width = geometry.width;
  settings.height = geometry.height;
  settings.micrometresPerPixel = options.family == kFamily303 ? 33 : 22.5;
  return {geometry.width, geometry.height, DrawPhantom(settings)};
}

TEST_P(RestorationTest, TheSceneComesBack) {
  const Variant& variant = GetParam();
  const Scene scene = SceneFor(variant);
  Capture(variant, scene,
          std::make_shared<const Detector>(MakeDetector(variant.options, scene)));
  if (HasFatalFailure()) return;
  const Distance raw = DistanceOf(UNPROCESSED_NORMAL_FRAME);
  const Distance subtracted = DistanceOf(OFFSET_CORRECTED);
  const Distance corrected = DistanceOf(OFFSET_DEFECT_HISTOGRAM_CORRECTED);
  std::printf("%-14s raw %6.1f, dark subtracted %5.1f, corrected %4.2f levels from the scene; at "
              "defects %6.1f, %6.1f, %5.1f\n",
              variant.name, raw.everywhere, subtracted.everywhere, corrected.everywhere,
              raw.atDefects, subtracted.atDefects, corrected.atDefects);
  EXPECT_LT(corrected.everywhere, 5);
  // Neighbours do not know a radiograph's grain.
  EXPECT_LT(corrected.atDefects, SeesRadiograph(variant) ? 60 : 5);
  EXPECT_GT(raw.everywhere, 60);
  EXPECT_GT(subtracted.everywhere, 2 * corrected.everywhere);
  EXPECT_GT(subtracted.atDefects, 100);
}

INSTANTIATE_TEST_SUITE_P(
    Sensors, RestorationTest,
    testing::Values(Variant{"2000-A", Options(kFamily2000, kSizeA)},
                    Variant{"2000-B", Options(kFamily2000, kSizeB)},
                    Variant{"2000-C", Options(kFamily2000, kSizeC)},
                    Variant{"2000-C binned", Options(kFamily2000, kSizeC), true},
                    Variant{"2000-D", Options(kFamily2000, kSizeD)},
                    Variant{"2000-D binned", Options(kFamily2000, kSizeD), true},
                    Variant{"303-C", Options(kFamily303, kSizeC)},
                    Variant{"303-C gain", Options(kFamily303, kSizeC, true)},
                    Variant{"303-D", Options(kFamily303, kSizeD)},
                    Variant{"303-D gain", Options(kFamily303, kSizeD, true)}),
    [](const auto& tested) {
      std::string name = tested.param.name;
      std::replace_if(name.begin(), name.end(), [](char c) { return c == '-' || c == ' '; }, '_');
      return name;
    });

// A sensor with the memory of another one.
TEST_F(RestorationTest, WrongCorrectionDataIsSeen) {
  for (const Variant& variant : {Variant{"2000-C", Options(kFamily2000, kSizeC)},
                                 Variant{"303-C", Options(kFamily303, kSizeC)}}) {
    const auto own = TestDetector(variant.options);
    DetectorOptions other = variant.options;
    other.seed = 2;
    auto mixed = std::make_shared<Detector>(*own);
    mixed->memory = TestDetector(other)->memory;
    mixed->identity = TestDetector(other)->identity;
    Capture(variant, TestScene(GeometryOf(variant.options.family, variant.options.size)), mixed);
    if (HasFatalFailure()) return;
    const Distance corrected = DistanceOf(OFFSET_DEFECT_CORRECTED);
    std::printf("%-14s with wrong data %4.1f levels from the scene; at defects %6.1f\n",
                variant.name, corrected.everywhere, corrected.atDefects);
    EXPECT_GT(corrected.everywhere, 10);
    EXPECT_GT(corrected.atDefects, 100);
  }
}

}  // namespace
}  // namespace zyr::test
