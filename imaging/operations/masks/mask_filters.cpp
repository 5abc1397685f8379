#include "imaging/operations/masks/mask_filters.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <new>
#include <type_traits>

#include "foundation/support/cpu.h"
#include "imaging/operations/clone.h"
#include "imaging/operations/masks/mask_filters_loops.h"
#include "imaging/operations/row_progress.h"

namespace zyr {
namespace {

enum class Output { kResponse, kPixelPlusResponse };

// Samples are bytes or 16-bit numbers; `stride` counts them.
template <typename Sample>
struct Pixels {
  Sample* first;
  size_t stride;
  uint32_t width;
  uint32_t height;
  size_t channels;

  Sample* Row(uint32_t row) const { return first + row * stride; }
};

template <typename T>
std::unique_ptr<T[]> NewZeros(uint64_t count) {
  if (count > PTRDIFF_MAX / sizeof(T)) return nullptr;
  return std::unique_ptr<T[]>(new (std::nothrow) T[static_cast<size_t>(count)]());
}

template <typename Sample>
using WideOf = std::conditional_t<sizeof(Sample) == 1, float, double>;

void Widen(const MaskLoops& loops, const uint8_t* from, float* to, size_t count) {
  loops.widen8(from, to, count);
}
void Widen(const MaskLoops& loops, const uint16_t* from, double* to, size_t count) {
  loops.widen16(from, to, count);
}

// How far a sum of bytes in single precision, with the pixel added, is from the exact one at most.
// Each term is rounded as a weight, as a product, in all additions but the first, and with the
// pixel and the error: the number of weights + 3 times by 2^-24 at most. One more is for all else:
// what is of second order, the rounding in double precision, and numbers next to 0.
double RoughErrorOf(const CKIPMask& mask) {
  const size_t count = size_t{mask.rows} * mask.columns;
  double total = 0;
  double totalBeforeFactor = 0;
  for (size_t i = 0; i < count; ++i) {
    total += std::abs(mask.weights[i] * mask.factor);
    totalBeforeFactor += std::abs(mask.weights[i]);
  }
  // The exact sum may overflow on the way.
  if (!(totalBeforeFactor < 1e300)) return HUGE_VAL;
  return static_cast<double>(count + 4) * 0x1p-24 * 255 * (total + 1);
}

// True if all weights are multiples of some power of two and so small that floats hold any sum of
// bytes, in any order, without rounding.
bool AreSimpleFractions(const CKIPMask& mask) {
  constexpr double kPerUnit = 256;
  double total = 0;
  for (size_t i = 0; i < size_t{mask.rows} * mask.columns; ++i) {
    const double scaled = std::abs(mask.weights[i]) * kPerUnit;
    if (scaled != std::floor(scaled)) return false;
    total += scaled;
  }
  return total * 255 < 0x1p24;
}

// Sums rows one after the other, in single precision where that gives the same bits, or as long as
// it decides most results.
class RowSummer {
 public:
  RowSummer(const CKIPMask& mask, const MaskLoops& loops) : loops_(loops) {
    const size_t count = size_t{mask.rows} * mask.columns;
    if (count > kMostFloatWeights) return;
    const double error = RoughErrorOf(mask);
    if (AreSimpleFractions(mask)) {
      method_ = Method::kFractions;
    } else if (error < kMostError) {  // not if it is no number
      method_ = Method::kRough;
    } else {
      return;
    }
    const double factor = method_ == Method::kRough ? mask.factor : 1.0;
    for (size_t i = 0; i < count; ++i) {
      weights_[i] = static_cast<float>(mask.weights[i] * factor);
    }
    error_ = static_cast<float>(method_ == Method::kRough ? error : 0);
  }

  void Sum(const MaskSum<float>& sum, uint8_t* to, size_t count) {
    if (method_ == Method::kFractions) {
      loops_.sum8OfFractions(sum, weights_.data(), to, count);
    } else if (method_ == Method::kExact || rowsToSkip_ > 0) {
      loops_.sum8(sum, to, count);
      if (rowsToSkip_ > 0) --rowsToSkip_;
    } else if (loops_.sum8Roughly(sum, {weights_.data(), error_}, to, count) > count / 2) {
      rowsToSkip_ = kRowsOfAKind;
    }
  }
  void Sum(const MaskSum<double>& sum, uint16_t* to, size_t count) { loops_.sum16(sum, to, count); }

 private:
  enum class Method { kExact, kFractions, kRough };
  static constexpr size_t kMostFloatWeights = 121;
  static constexpr double kMostError = 1.0 / 64;
  // Flat areas, and some weights, give sums next to whole numbers, which only the exact form
  // decides.
  static constexpr uint32_t kRowsOfAKind = 15;

  const MaskLoops& loops_;
  Method method_ = Method::kExact;
  std::array<float, kMostFloatWeights> weights_;
  float error_ = 0;
  uint32_t rowsToSkip_ = 0;
};

// The source rows below the mask, widened, with the edge pixels repeated to both sides.
template <typename Sample>
class Window {
 public:
  using Wide = WideOf<Sample>;

  Window(Pixels<const Sample> source, const CKIPMask& mask, const MaskLoops& loops)
      : source_(source),
        loops_(loops),
        maskRows_(mask.rows),
        left_(mask.columns / 2),
        right_(mask.columns - 1 - mask.columns / 2),
        slots_(std::min(mask.rows, source.height)),
        stride_((uint64_t{source.width} + mask.columns - 1) * source.channels + kMaskSlack),
        samples_(NewZeros<Wide>(stride_ * slots_)),
        rows_(NewZeros<const Wide*>(maskRows_)) {}

  bool HasMemory() const { return samples_ != nullptr && rows_ != nullptr; }

  // A row for each of the mask's that is centred on `row`. Call with 0, 1, 2, ...
  const Wide* const* MoveTo(uint32_t row) {
    for (uint32_t i = 0; i < maskRows_; ++i) {
      const int64_t wanted = int64_t{row} + i - maskRows_ / 2;
      const uint32_t inside =
          static_cast<uint32_t>(std::clamp<int64_t>(wanted, 0, int64_t{source_.height} - 1));
      while (loaded_ <= inside) Load(loaded_++);
      rows_[i] = Slot(inside);
    }
    return rows_.get();
  }

  // Of the last MoveTo, the pixels of the row itself.
  const Wide* Centre() const { return rows_[maskRows_ / 2] + left_ * source_.channels; }

 private:
  // The mask reaches over `slots_` neighbouring rows at most, so no two of them share a slot.
  Wide* Slot(uint32_t row) const {
    return samples_.get() + row % slots_ * static_cast<size_t>(stride_);
  }

  void Load(uint32_t row) {
    const size_t channels = source_.channels;
    Wide* const first = Slot(row) + left_ * channels;
    Wide* const behind = first + source_.width * channels;
    Widen(loops_, source_.Row(row), first, source_.width * channels);
    for (size_t i = 0; i < left_; ++i) std::copy_n(first, channels, Slot(row) + i * channels);
    for (size_t i = 0; i < right_; ++i) {
      std::copy_n(behind - channels, channels, behind + i * channels);
    }
  }

  const Pixels<const Sample> source_;
  const MaskLoops& loops_;
  const uint32_t maskRows_;
  const size_t left_;
  const size_t right_;
  const uint32_t slots_;
  const uint64_t stride_;
  const std::unique_ptr<Wide[]> samples_;
  const std::unique_ptr<const Wide*[]> rows_;
  uint32_t loaded_ = 0;  // rows so far
};

// False on cancel or without memory.
template <typename Sample>
bool Filter(Pixels<const Sample> source, Pixels<Sample> target, const CKIPMask& mask, Output output,
            double limit, double rounding, ProgressCallback progress) {
  const MaskLoops& loops = HasAvx2() ? kMaskLoopsAvx2 : kMaskLoopsBase;
  Window<Sample> window(source, mask, loops);
  if (!window.HasMemory()) return false;
  MaskSum<WideOf<Sample>> sum{.windowRows = nullptr,
                              .weights = mask.weights.get(),
                              .rows = mask.rows,
                              .columns = mask.columns,
                              .step = source.channels,
                              .factor = mask.factor,
                              .added = nullptr,
                              .limit = limit,
                              .rounding = rounding};
  RowSummer summer(mask, loops);
  const RowProgress rowProgress(progress, source.height);
  for (uint32_t row = 0; row < source.height; ++row) {
    sum.windowRows = window.MoveTo(row);
    if (output == Output::kPixelPlusResponse) sum.added = window.Centre();
    summer.Sum(sum, target.Row(row), source.width * source.channels);
    if (!rowProgress.Continue(row)) return false;
  }
  return true;
}

bool HasWeights(const CKIPMask& mask) {
  return mask.weights != nullptr && mask.rows != 0 && mask.columns != 0;
}

std::unique_ptr<CKIPImage> Filtered(const CKIPImage* image, const CKIPMask& mask, Output output,
                                    ProgressCallback progress) try {
  if (image == nullptr || !image->IsValid() || !HasWeights(mask)) return nullptr;
  if (image->bitsPerPixel() != 24 && !image->IsGrey()) return nullptr;
  std::unique_ptr<CKIPImage> result = NewUnwrittenClone(*image);
  if (result == nullptr) return nullptr;
  const size_t channels = image->bitsPerPixel() / 8;
  const Pixels<const uint8_t> source{image->bits(), image->stride(), image->width(),
                                     image->height(), channels};
  const Pixels<uint8_t> target{result->bits(), result->stride(), image->width(), image->height(),
                               channels};
  const bool done = Filter(source, target, mask, output, 255, 0, progress);
  return done ? std::move(result) : nullptr;
} catch (const std::bad_alloc&) {
  return nullptr;
}

std::unique_ptr<CKIPDeepImage> DeepFiltered(const CKIPDeepImage* image, const CKIPMask& mask,
                                            Output output, ProgressCallback progress) try {
  if (image == nullptr || !image->IsValid() || !HasWeights(mask)) return nullptr;
  std::unique_ptr<CKIPDeepImage> result = NewUnwrittenClone(*image);
  if (result == nullptr) return nullptr;
  CopyPadding(*image, *result);
  const Pixels<const uint16_t> source{image->GetPixels(), image->GetStride(), image->GetWidth(),
                                      image->GetHeight(), 1};
  const Pixels<uint16_t> target{result->GetPixels(), image->GetStride(), image->GetWidth(),
                                image->GetHeight(), 1};
  const bool done = Filter(source, target, mask, output, image->GetMask(), 0.5, progress);
  return done ? std::move(result) : nullptr;
} catch (const std::bad_alloc&) {
  return nullptr;
}

}  // namespace

std::unique_ptr<CKIPImage> ApplyMask(const CKIPImage* image, const CKIPMask& mask,
                                     ProgressCallback progress) {
  return Filtered(image, mask, Output::kResponse, progress);
}

std::unique_ptr<CKIPImage> EdgeEnhance(const CKIPImage* image, const CKIPMask& mask,
                                       ProgressCallback progress) {
  return Filtered(image, mask, Output::kPixelPlusResponse, progress);
}

std::unique_ptr<CKIPDeepImage> DeepApplyMask(const CKIPDeepImage* image, const CKIPMask& mask,
                                             ProgressCallback progress) {
  return DeepFiltered(image, mask, Output::kResponse, progress);
}

std::unique_ptr<CKIPDeepImage> DeepSharpen(const CKIPDeepImage* image, uint32_t size,
                                           int32_t percent, ProgressCallback progress) {
  CKIPMask mask;
  mask.MakeSharpen(size, percent);
  return DeepApplyMask(image, mask, progress);
}

std::unique_ptr<CKIPDeepImage> DeepSmooth(const CKIPDeepImage* image, uint32_t size,
                                          int32_t percent, ProgressCallback progress) {
  CKIPMask mask;
  mask.MakeSmooth(size, percent);
  return DeepApplyMask(image, mask, progress);
}

std::unique_ptr<CKIPDeepImage> DeepEdgeEnhance(const CKIPDeepImage* image, uint32_t size,
                                               double strength, ProgressCallback progress) {
  CKIPMask mask;
  mask.MakeEdge(size, size, strength);
  return DeepFiltered(image, mask, Output::kPixelPlusResponse, progress);
}

}  // namespace zyr
