// Any operation on any small image with any parameters: the source stays as it was, the result is
// whole, and both forms of the loops agree.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <iterator>
#include <memory>
#include <vector>

#include "foundation/support/cpu.h"
#include "imaging/image/grey.h"
#include "imaging/image/raw_pixels.h"
#include "imaging/operations/geometry/flip.h"
#include "imaging/operations/geometry/rotate.h"
#include "imaging/operations/geometry/shrink.h"
#include "imaging/operations/levels/brightness_contrast.h"
#include "imaging/operations/levels/gamma.h"
#include "imaging/operations/levels/histogram.h"
#include "imaging/operations/levels/invert.h"
#include "imaging/operations/levels/stamp.h"
#include "imaging/operations/masks/emboss.h"
#include "imaging/operations/masks/mask.h"
#include "imaging/operations/masks/mask_filters.h"
#include "imaging/operations/medians/fast_noise.h"
#include "imaging/operations/medians/median.h"
#include "platform/host/host.h"

namespace {

using namespace zyr;
using Picture = std::unique_ptr<CKIPImage>;
using DeepPicture = std::unique_ptr<CKIPDeepImage>;

void Require(bool holds) {
  if (!holds) std::abort();
}

// Gives the input's bytes one after the other, and zeros behind its end.
class Input {
 public:
  Input(const uint8_t* data, size_t size) : data_(data), size_(size) {}

  template <typename T>
  T Take() {
    T value{};
    const size_t count = std::min(sizeof(T), size_);
    std::memcpy(&value, data_, count);
    data_ += count;
    size_ -= count;
    return value;
  }
  uint32_t TakeBelow(uint32_t limit) { return Take<uint8_t>() % limit; }
  // What is left, over and over.
  void Fill(uint8_t* target, size_t count) const {
    for (size_t i = 0; i < count; ++i) target[i] = size_ == 0 ? 0 : data_[i % size_];
  }

 private:
  const uint8_t* data_;
  size_t size_;
};

struct Parameters {
  int32_t first;
  int32_t second;
  uint32_t keep;
  uint32_t percents[2];  // mostly sensible
  double reals[3];
  bool hasReference;
  CKIPMask mask;
  uint32_t size;  // of a square mask
};

void MakeMask(Input& input, CKIPMask* mask) {
  const uint32_t columns = input.TakeBelow(12);
  const uint32_t rows = input.TakeBelow(12);
  switch (input.TakeBelow(6)) {
    case 0:
      mask->MakeSmooth(columns, rows, input.Take<int32_t>());
      break;
    case 1:
      mask->MakeSharpen(columns, rows, input.Take<int32_t>());
      break;
    case 2:
      mask->MakeEdge(columns, rows, input.Take<double>());
      break;
    case 3:
      mask->Resize(columns, rows);
      mask->FillByDistance(input.Take<double>());
      mask->factor = input.Take<double>();
      break;
    case 4:
      mask->weights.reset();
      break;
    default:
      mask->rows = 0;
  }
}

Parameters TakeParameters(Input& input) {
  Parameters p = {};
  p.first = input.Take<int32_t>();
  p.second = input.Take<int32_t>();
  p.keep = input.Take<uint32_t>();
  for (uint32_t& percent : p.percents) percent = input.Take<uint8_t>();
  if (p.percents[0] == 255) p.percents[0] = input.Take<uint32_t>();
  for (double& real : p.reals) real = input.Take<double>();
  p.hasReference = input.TakeBelow(2) != 0;
  p.size = input.TakeBelow(12);
  MakeMask(input, &p.mask);
  return p;
}

Palette TakePalette(Input& input) {
  if (input.TakeBelow(3) == 0) return NewIdentityPalette();
  Palette palette(input.Take<uint8_t>());
  input.Fill(reinterpret_cast<uint8_t*>(palette.data()), palette.size() * sizeof(PaletteEntry));
  return palette;
}

// Without a width or a height it is not valid.
void MakeImage(Input& input, CKIPImage* image) {
  const uint32_t width = input.TakeBelow(70);
  const uint32_t height = input.TakeBelow(40);
  constexpr uint32_t kDepths[] = {1, 8, 8, 24};
  const uint32_t depth = kDepths[input.TakeBelow(4)];
  if (depth != 24) image->SetPalette(TakePalette(input));
  if (!image->Create(width, height, depth)) return;
  image->flipped = input.TakeBelow(2) != 0;
  input.Fill(image->bits(), image->dataSize());
}

void MakeDeepImage(Input& input, CKIPDeepImage* image) {
  const uint32_t width = input.TakeBelow(70);
  const uint32_t height = input.TakeBelow(40);
  const uint32_t stride = width + input.TakeBelow(4);
  if (!image->Create(width, height, stride, input.TakeBelow(18), 0, 0)) return;
  input.Fill(reinterpret_cast<uint8_t*>(image->GetPixels()), size_t{stride} * height * 2);
}

using Operation = std::function<Picture(const CKIPImage&, const CKIPImage*, const Parameters&)>;
using DeepOperation = std::function<DeepPicture(const CKIPDeepImage&, const Parameters&)>;

using Image = const CKIPImage&;
using Deep = const CKIPDeepImage&;
using Reference = const CKIPImage*;
using P = const Parameters&;

void Ignore(double) {}

const Operation kOperations[] = {
    [](Image i, Reference, P p) {
      return AdjustBrightnessContrast(&i, p.first, p.second, p.keep, Ignore);
    },
    [](Image i, Reference, P p) {
      return AdjustGamma(&i, p.reals[0], p.reals[1], p.reals[2], p.keep, Ignore);
    },
    [](Image i, Reference, P p) {
      Picture copy = i.Clone(true);
      AdjustPaletteBrightnessContrast(copy.get(), p.first, p.second);
      AdjustPaletteGamma(copy.get(), p.reals[0], p.reals[1], p.reals[2], p.keep);
      return copy;
    },
    [](Image i, Reference, P) { return Invert(&i, Ignore); },
    [](Image i, Reference r, P) { return Normalize(&i, r, Ignore); },
    [](Image i, Reference r, P) { return Equalize(&i, r, Ignore); },
    [](Image i, Reference r, P p) {
      return AutoBrightnessContrast(&i, p.percents[0], p.percents[1], r, Ignore);
    },
    [](Image i, Reference, P) { return AutoBrightnessContrastDefault(&i, Ignore); },
    [](Image i, Reference, P p) { return ApplyMask(&i, p.mask, Ignore); },
    [](Image i, Reference, P p) { return EdgeEnhance(&i, p.mask, Ignore); },
    [](Image i, Reference, P p) { return MedianFilter(&i, p.mask, Ignore); },
    [](Image i, Reference, P) { return FastNoiseReduction(&i, Ignore); },
    [](Image i, Reference, P p) { return Emboss(&i, p.reals[0], p.reals[1], p.reals[2], Ignore); },
    [](Image i, Reference, P) { return FlipHorizontal(&i, Ignore); },
    [](Image i, Reference, P) { return FlipVertical(&i, Ignore); },
    [](Image i, Reference, P) { return Rotate90(&i, Ignore); },
    [](Image i, Reference, P) { return Rotate180(&i, Ignore); },
    [](Image i, Reference, P) { return Rotate270(&i, Ignore); },
    [](Image i, Reference, P p) { return ShrinkToLimit(&i, p.percents[0], Ignore); },
};

const DeepOperation kDeepOperations[] = {
    [](Deep d, P p) { return DeepAdjustBrightnessContrast(&d, p.first, p.second, Ignore); },
    [](Deep d, P p) { return DeepAdjustGamma(&d, p.reals[0], Ignore); },
    [](Deep d, P) { return DeepInvert(&d, Ignore); },
    [](Deep d, P) { return DeepNormalize(&d, Ignore); },
    [](Deep d, P) { return DeepEqualize(&d, Ignore); },
    [](Deep d, P p) {
      return DeepAutoBrightnessContrast(&d, p.percents[0], p.percents[1], Ignore);
    },
    [](Deep d, P p) { return DeepApplyMask(&d, p.mask, Ignore); },
    [](Deep d, P p) { return DeepSharpen(&d, p.size, p.first, Ignore); },
    [](Deep d, P p) { return DeepSmooth(&d, p.size, p.first, Ignore); },
    [](Deep d, P p) { return DeepEdgeEnhance(&d, p.size, p.reals[0], Ignore); },
    [](Deep d, P p) { return DeepMedianFilter(&d, p.size, Ignore); },
    [](Deep d, P) { return DeepFastNoiseReduction(&d, Ignore); },
    [](Deep d, P) { return DeepFlipHorizontal(&d, Ignore); },
    [](Deep d, P) { return DeepFlipVertical(&d, Ignore); },
    [](Deep d, P) { return DeepRotate90(&d, Ignore); },
    [](Deep d, P) { return DeepRotate180(&d, Ignore); },
    [](Deep d, P) { return DeepRotate270(&d, Ignore); },
};

std::vector<uint8_t> PixelsOf(Image image) {
  if (!image.IsValid()) return {};
  return {image.bits(), image.bits() + image.dataSize()};
}

// Without what lies between the rows: operations may leave that as the memory was.
std::vector<uint16_t> PixelsOf(Deep image) {
  std::vector<uint16_t> pixels;
  for (uint32_t y = 0; image.IsValid() && y < image.GetHeight(); ++y) {
    pixels.insert(pixels.end(), image.GetRow(y), image.GetRow(y) + image.GetWidth());
  }
  return pixels;
}

bool AreEqual(const Picture& a, const Picture& b) {
  if (a == nullptr || b == nullptr) return a == b;
  return a->width() == b->width() && a->height() == b->height() && a->palette() == b->palette() &&
         PixelsOf(*a) == PixelsOf(*b);
}

bool AreEqual(const DeepPicture& a, const DeepPicture& b) {
  if (a == nullptr || b == nullptr) return a == b;
  return a->GetWidth() == b->GetWidth() && a->GetBits() == b->GetBits() &&
         PixelsOf(*a) == PixelsOf(*b);
}

// `run` must give the same with all vector units and without, cancelled or not.
template <typename Run>
void RunBothForms(const Run& run, int cancelAt) {
  platform::host::ResetAll();
  DenyAvx2(false);
  if (cancelAt != 0) platform::host::PressEscapeAtQuestion(cancelAt);
  const auto result = run();
  platform::host::ResetAll();
  DenyAvx2(true);
  if (cancelAt != 0) platform::host::PressEscapeAtQuestion(cancelAt);
  Require(AreEqual(run(), result));
  Require(result == nullptr || result->IsValid());
}

void FuzzImages(Input& input, uint32_t operation, const Parameters& parameters, int cancelAt) {
  CKIPImage reference;
  MakeImage(input, &reference);
  CKIPImage image;
  MakeImage(input, &image);
  const auto before = PixelsOf(image);
  const Operation& work = kOperations[operation % std::size(kOperations)];
  const CKIPImage* other = parameters.hasReference ? &reference : nullptr;
  RunBothForms([&] { return work(image, other, parameters); }, cancelAt);
  Require(PixelsOf(image) == before);
}

void FuzzDeepImages(Input& input, uint32_t operation, const Parameters& parameters, int cancelAt) {
  CKIPDeepImage image;
  MakeDeepImage(input, &image);
  const auto before = PixelsOf(image);
  const DeepOperation& work = kDeepOperations[operation % std::size(kDeepOperations)];
  RunBothForms([&] { return work(image, parameters); }, cancelAt);
  Require(PixelsOf(image) == before);
}

void FuzzStampAndDepth(Input& input, uint32_t mode, const Parameters& parameters, int cancelAt) {
  CKIPImage stamp;
  MakeImage(input, &stamp);
  CKIPDeepImage image;
  MakeDeepImage(input, &image);
  StampInverted(&stamp, &image, parameters.first % 100, parameters.second, Ignore);
  const DepthMapping mapping = {.positive = parameters.hasReference,
                                .mode = mode,
                                .lowBit = parameters.size,
                                .detectDepth = parameters.percents[0] % 2 != 0,
                                .transpose = parameters.percents[1] % 2 != 0,
                                .brightness = parameters.first,
                                .contrast = parameters.second,
                                .gamma = parameters.reals[0],
                                .percent = parameters.reals[1]};
  RunBothForms([&] { return ImageFromDeepImage(image, mapping, Ignore); }, cancelAt);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  Input input(data, size);
  constexpr decltype(&FuzzImages) kKinds[] = {FuzzImages, FuzzDeepImages, FuzzStampAndDepth};
  const auto fuzz = kKinds[input.TakeBelow(std::size(kKinds))];
  const uint32_t operation = input.Take<uint8_t>();
  const int cancelAt = static_cast<int>(input.TakeBelow(8)) * 3 % 8;
  const Parameters parameters = TakeParameters(input);
  fuzz(input, operation, parameters, cancelAt);
  return 0;
}
