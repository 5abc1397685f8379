// The image of a capture, made from its two frames.
#include <iterator>
#include <string_view>

#include "foundation/log/log.h"
#include "foundation/support/phrase_lookup.h"
#include "hardware/correction/offset_correction.h"
#include "hardware/device/device_2000.h"
#include "hardware/device/finished_frames.h"
#include "hardware/device/text_numbers.h"
#include "hardware/failure.h"

namespace zyr {
namespace {

constexpr float kUsualParameter = 0.4f;  // handed through; nothing looks at it
constexpr std::string_view kUsualType = "OFFSET_DEFECT_HISTOGRAM_CORRECTED";

constexpr std::string_view kTypeNames[] = {"UNPROCESSED_NORMAL_FRAME", "UNPROCESSED_DARK_FRAME",
                                           "OFFSET_CORRECTED", "OFFSET_DEFECT_CORRECTED",
                                           "OFFSET_DEFECT_HISTOGRAM_CORRECTED"};

constexpr const char* kUnknownType = PhraseKey(
    "An unknown image type was returned from the hardware.  Please check the hardware connection "
    "and then retry the operation.");

}  // namespace

Result Device2000::GetImage(int32_t type, float parameter, SensorImage** image) {
  return DoGetImage(type, parameter, image);
}

Result Device2000::GetImage(int32_t type, SensorImage** image) {
  return DoGetImage(type, kUsualParameter, image);
}

Result Device2000::GetImage(SensorImage** image) {
  for (size_t i = 0; i < std::size(kTypeNames); ++i) {
    if (kTypeNames[i] == kUsualType) return GetImage(static_cast<int32_t>(i + 1), image);
  }
  return FailWith(DEV_E_BAD_IMAGE_NAME, kUnknownType);
}

Result Device2000::DoGetImage(int32_t type, float, SensorImage** image) {
  if (!IsImageType(type)) return DEV_E_BAD_IMAGE_TYPE;
  Held<SensorImage> result = (type == UNPROCESSED_DARK_FRAME ? dark_frame_ : normal_frame_).Clone();
  if (result == nullptr) return kOutOfMemory;
  if (type >= OFFSET_CORRECTED) {
    result->Subtract(dark_frame_, 0);
    CorrectOffset(result.get(), ReadOutLag(size_code_, full_resolution_ != 0));
  }
  if (type >= OFFSET_DEFECT_CORRECTED && defect_map_ != nullptr) {
    defect_map_->Apply(result.get(), IsBinned());
  }
  CropIfWanted(result.get());
  return Deliver(std::move(result), image);
}

bool Device2000::IsImageType(int32_t type) {
  return type >= UNPROCESSED_NORMAL_FRAME && type <= OFFSET_DEFECT_HISTOGRAM_CORRECTED;
}

void Device2000::CropIfWanted(SensorImage* image) {
  if (GetProperty("cropping_on") != "true") return;
  const auto margin = [this](const char* name) { return DecimalOf(GetProperty(name)); };
  const int32_t left = margin("left_margin");
  const int32_t right = margin("right_margin");
  const int32_t top = margin("top_margin");
  const int32_t bottom = margin("bottom_margin");
  if (image->CropInPlace(left, right, top, bottom)) return;
  Log().WriteLine("   The margins %ld, %ld, %ld, %ld do not fit a frame of %lux%lu: not cropped",
                  Ld(left), Ld(right), Ld(top), Ld(bottom), Lu(image->GetWidth()),
                  Lu(image->GetHeight()));
}

Result Device2000::Deliver(Held<SensorImage> image, SensorImage** out) {
  if (out == nullptr) return kBadParameter;
  SaveFinishedFrame(*image);
  *out = image.release();
  return kOk;
}

}  // namespace zyr
