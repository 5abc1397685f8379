#include "imaging/operations/masks/emboss.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <new>

#include "foundation/math/portable_math.h"
#include "foundation/support/cpu.h"
#include "imaging/image/grey.h"
#include "imaging/operations/masks/emboss_loops.h"
#include "imaging/operations/row_progress.h"

namespace zyr {
namespace {

constexpr double kRadiansPerDegree = 0.01745329252;

// As if 360 were added or subtracted until the angle lies within 0 and 360, both included, which
// for a far angle would take forever.
double WithinTurn(double degrees) {
  if (!std::isfinite(degrees)) return 0;
  if (degrees >= 0 && degrees <= 360) return degrees;
  const double rest = std::fmod(degrees, 360);
  if (degrees < 0) return rest < 0 ? rest + 360 : 0;
  return rest > 0 ? rest : 360;
}

double Limited(double value, double limit) { return value > 0 ? std::min(value, limit) : 0; }

EmbossLight LightFrom(double azimuth, double elevation, double depth) {
  azimuth = WithinTurn(azimuth) * kRadiansPerDegree;
  elevation = Limited(elevation, 90) * kRadiansPerDegree;
  const double height = (1 - Limited(depth, 1)) * 1530;
  const double lightHeight = math::Sin(elevation) * 256;
  EmbossLight light;
  light.x = math::Cos(azimuth) * math::Cos(elevation) * 256;
  // By the sine of the elevation, where geometry would take the cosine: pictures have always
  // looked like this.
  light.y = math::Sin(azimuth) * math::Sin(elevation) * 256;
  light.heightSquared = height * height;
  light.heightTimesLight = height * lightHeight;
  light.flat = static_cast<uint8_t>(std::clamp(lightHeight, 0.0, 255.0));
  return light;
}

// Copies of three neighbouring rows, which allow to write over the image they come from.
class Neighbours {
 public:
  explicit Neighbours(const CKIPImage& image)
      : image_(image),
        stride_(size_t{image.width()} + 2 + kEmbossSlack),
        bytes_(stride_ > PTRDIFF_MAX / 3 ? nullptr : new (std::nothrow) uint8_t[3 * stride_]()) {}

  bool HasMemory() const { return bytes_ != nullptr; }

  // Call with 0, 1, 2, ... Points `rows` to the previous row, the row and the next one.
  void MoveTo(uint32_t row, const uint8_t* rows[3]) {
    const uint32_t next = std::min(row + 1, image_.height() - 1);
    while (loaded_ <= next) Load(loaded_++);
    rows[0] = Slot(row == 0 ? 0 : row - 1);
    rows[1] = Slot(row);
    rows[2] = Slot(next);
  }

 private:
  uint8_t* Slot(uint32_t row) const { return bytes_.get() + row % 3 * stride_; }

  void Load(uint32_t row) {
    const uint8_t* const from = image_.MemoryRow(row);
    uint8_t* const to = Slot(row);
    to[0] = from[0];
    std::memcpy(to + 1, from, image_.width());
    to[image_.width() + 1] = from[image_.width() - 1];
  }

  const CKIPImage& image_;
  const size_t stride_;
  const std::unique_ptr<uint8_t[]> bytes_;
  uint32_t loaded_ = 0;  // rows so far
};

}  // namespace

std::unique_ptr<CKIPImage> Emboss(const CKIPImage* image, double azimuth, double elevation,
                                  double depth, ProgressCallback progress) try {
  if (image == nullptr || !image->IsValid()) return nullptr;
  std::unique_ptr<CKIPImage> grey =
      image->IsGrey() ? image->Clone(true) : ConvertToGrey8(*image, nullptr);
  if (grey == nullptr) return nullptr;
  Neighbours neighbours(*grey);
  if (!neighbours.HasMemory()) return nullptr;
  const EmbossLight light = LightFrom(azimuth, elevation, depth);
  const EmbossLoop embossRow = HasAvx2() ? kEmbossLoopAvx2 : kEmbossLoopBase;
  const RowProgress rowProgress(progress, grey->height());
  for (uint32_t row = 0; row < grey->height(); ++row) {
    const uint8_t* rows[3];
    neighbours.MoveTo(row, rows);
    embossRow(rows, light, grey->MemoryRow(row), grey->width());
    if (!rowProgress.Continue(row)) return nullptr;
  }
  return grey;
} catch (const std::bad_alloc&) {
  return nullptr;
}

}  // namespace zyr
