#include "imaging/operations/medians/fast_noise.h"

#include <cstring>
#include <new>

#include "imaging/operations/clone.h"
#include "imaging/operations/medians/median_rows.h"
#include "imaging/operations/row_progress.h"
#include "imaging/operations/sample_plane.h"

namespace zyr {
namespace {

// Whole rows are copied, padding and outermost columns included, right before their medians are
// written over them. False on cancel.
template <class T>
bool ReduceNoise(const SamplePlane<T>& source, const SamplePlane<T>& target,
                 ProgressCallback progress) {
  const RowProgress rows(progress, source.height);
  for (uint32_t y = 0; y < source.height; ++y) {
    std::memcpy(target.Row(y), source.Row(y), source.stride * sizeof(T));
    if (y > 0 && y + 1 < source.height) {
      MedianRowCross(source.Row(y - 1), source.Row(y), source.Row(y + 1), target.Row(y),
                     source.RowSamples(), source.channels);
    }
    if (!rows.Continue(y)) return false;
  }
  return true;
}

template <class Image>
std::unique_ptr<Image> NoiseReduced(const Image* image, ProgressCallback progress) try {
  if (!IsFilterable(image)) return nullptr;
  std::unique_ptr<Image> reduced = NewUnwrittenClone(*image);
  if (reduced == nullptr || !ReduceNoise(PlaneOf(*image), PlaneOf(*reduced), progress)) {
    return nullptr;
  }
  return reduced;
} catch (const std::bad_alloc&) {
  return nullptr;
}

}  // namespace

std::unique_ptr<CKIPImage> FastNoiseReduction(const CKIPImage* image, ProgressCallback progress) {
  return NoiseReduced(image, progress);
}

std::unique_ptr<CKIPDeepImage> DeepFastNoiseReduction(const CKIPDeepImage* image,
                                                      ProgressCallback progress) {
  return NoiseReduced(image, progress);
}

}  // namespace zyr
