// From the sensor's frame to the image that is shown and kept.
#include <algorithm>
#include <memory>
#include <utility>

#include "acquire/iface/iface.h"
#include "foundation/support/error.h"
#include "foundation/support/progress.h"
#include "imaging/image/packed_dib.h"
#include "imaging/operations/levels/histogram.h"
#include "imaging/operations/levels/invert.h"
#include "imaging/operations/levels/stamp.h"
#include "platform/resources.h"

namespace zyr {
namespace {

constexpr uint16_t kStampResource = 26003;
constexpr uint32_t kImageBits = 16;
constexpr uint32_t kLeftOutPercent = 1;  // at either end of the levels

std::unique_ptr<CKIPDeepImage> DeepImageOf(const SensorImage& frame) {
  const uint32_t width = frame.GetWidth();
  const uint32_t height = frame.GetHeight();
  const uint32_t paddedWidth = width + (width & 1);
  auto image = std::make_unique<CKIPDeepImage>();
  if (!image->Create(width, height, paddedWidth, kImageBits, frame.GetDpiX(), frame.GetDpiY())) {
    return nullptr;
  }
  for (uint32_t y = 0; y < height; ++y) std::copy_n(frame.Row(y), paddedWidth, image->GetRow(y));
  return image;
}

// An operation that gave nothing leaves the image as it is.
void ReplaceBy(std::unique_ptr<CKIPDeepImage> result, std::unique_ptr<CKIPDeepImage>* image) {
  if (result != nullptr) *image = std::move(result);
}

platform::GlobalHandle FailWithoutMemory() {
  SetError(kErrorOutOfResources, "Out of memory");
  return nullptr;
}

}  // namespace

// What the user cancels on another thread meanwhile must not take a step out of this image.
platform::GlobalHandle IFace::ProcessBitmapToImage(const SensorImage& frame, int32_t) {
  const cancel_monitor::Suspension suspension;
  auto image = DeepImageOf(frame);
  if (image == nullptr) return FailWithoutMemory();
  ReplaceBy(DeepInvert(image.get(), nullptr), &image);
  ReplaceBy(DeepAutoBrightnessContrast(image.get(), kLeftOutPercent, kLeftOutPercent, nullptr),
            &image);
  if (!stampSought_) LoadStamp();
  if (stamp_ != nullptr) StampInverted(stamp_.get(), image.get(), 0, 0, nullptr);
  const platform::GlobalHandle handle = PackedDibFromDeepImage(*image);
  return handle != nullptr ? handle : FailWithoutMemory();
}

void IFace::LoadStamp() {
  stampSought_ = true;
  if (stamp_ != nullptr) return;
  const platform::OwnResourcesScope resources;
  auto stamp = std::make_unique<CKIPImage>();
  if (stamp->LoadFromResource(kStampResource)) stamp_ = std::move(stamp);
}

}  // namespace zyr
