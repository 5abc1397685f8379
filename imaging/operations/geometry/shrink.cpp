#include "imaging/operations/geometry/shrink.h"

#include <algorithm>
#include <array>
#include <new>
#include <utility>
#include <vector>

#include "imaging/image/grey.h"
#include "imaging/operations/clone.h"
#include "imaging/operations/geometry/shrink_rows.h"
#include "imaging/operations/row_progress.h"

namespace zyr {
namespace {

double FactorFor(uint32_t limit, uint32_t size) {
  return limit < size ? static_cast<double>(limit) / size : 1.0;
}

// The source pixels `first` to `last` that lie under one target pixel along one side, and the
// weights of these two and of each between. The weights add up to 1.
struct Area {
  uint32_t first;
  uint32_t last;
  float head;
  float middle;
  float tail;
};

// `targetSize` must be the smaller one, so that each area has two pixels or more.
Area AreaOf(uint64_t target, uint64_t targetSize, uint64_t sourceSize) {
  // In units that divide pixels of both.
  const uint64_t from = target * sourceSize;
  const uint64_t to = from + sourceSize;
  const uint64_t first = from / targetSize;
  const uint64_t last = (to - 1) / targetSize;
  const auto weight = [&](uint64_t part) {
    return static_cast<float>(static_cast<double>(part) / static_cast<double>(sourceSize));
  };
  return {static_cast<uint32_t>(first), static_cast<uint32_t>(last),
          weight((first + 1) * targetSize - from), weight(targetSize),
          weight(to - last * targetSize)};
}

// Gives the rows of a picture one channel if it is grey, else as blue, green, red. Values without a
// palette entry are black, as in drawing.
class ChannelRows {
 public:
  explicit ChannelRows(const CKIPImage& image) : image_(image) {
    const Palette& palette = image.palette();
    if (image.bitsPerPixel() == 24) {
      channels_ = 3;
      isPlain_ = true;
      return;
    }
    std::copy_n(palette.begin(), std::min(palette.size(), colors_.size()), colors_.begin());
    const bool isGrey = std::all_of(colors_.begin(), colors_.end(), [](const PaletteEntry& color) {
      return color.red == color.green && color.green == color.blue;
    });
    channels_ = isGrey ? 1 : 3;
    isPlain_ = image.bitsPerPixel() == 8 && palette == NewIdentityPalette();
    if (!isPlain_) row_ = NewVector<uint8_t>(values());
  }

  uint32_t channels() const { return channels_; }
  uint64_t values() const { return uint64_t{image_.width()} * channels_; }

  // Until the next call.
  const uint8_t* At(uint32_t memoryRow) {
    const uint8_t* pixels = image_.MemoryRow(memoryRow);
    if (isPlain_) return pixels;
    uint8_t* target = row_.data();
    for (uint32_t x = 0; x < image_.width(); ++x, target += channels_) {
      const PaletteEntry& color =
          colors_[image_.bitsPerPixel() == 8 ? pixels[x] : pixels[x >> 3] >> (7 - (x & 7)) & 1];
      target[0] = color.blue;
      if (channels_ == 1) continue;
      target[1] = color.green;
      target[2] = color.red;
    }
    return row_.data();
  }

 private:
  const CKIPImage& image_;
  std::array<PaletteEntry, 256> colors_ = {};
  uint32_t channels_ = 1;
  bool isPlain_ = false;
  std::vector<uint8_t> row_;
};

void SumRows(ChannelRows& source, const Area& area, std::vector<float>* sums) {
  SetWeighted(sums->data(), source.At(area.first), area.head, sums->size());
  for (uint32_t row = area.first + 1; row < area.last; ++row) {
    AddWeighted(sums->data(), source.At(row), area.middle, sums->size());
  }
  AddWeighted(sums->data(), source.At(area.last), area.tail, sums->size());
}

uint8_t MeanOf(const float* sums, const Area& area, uint32_t channels) {
  float middle = 0;
  for (uint32_t x = area.first + 1; x < area.last; ++x) middle += sums[size_t{x} * channels];
  const float mean = sums[size_t{area.first} * channels] * area.head + middle * area.middle +
                     sums[size_t{area.last} * channels] * area.tail;
  return static_cast<uint8_t>(std::min(mean + 0.5f, 255.0f));
}

void WriteRow(const std::vector<float>& sums, const std::vector<Area>& columns, uint32_t channels,
              uint8_t* target) {
  for (const Area& area : columns) {
    for (uint32_t channel = 0; channel < 3; ++channel, ++target) {
      *target = channel < channels ? MeanOf(sums.data() + channel, area, channels) : target[-1];
    }
  }
}

// False on cancel.
bool ShrinkInto(const CKIPImage& image, CKIPImage& small, ProgressCallback progress) {
  const RowProgress rows(progress, small.height());
  ChannelRows source(image);
  std::vector<float> sums = NewVector<float>(source.values());
  std::vector<Area> columns = NewVector<Area>(small.width());
  for (uint32_t x = 0; x < small.width(); ++x) {
    columns[x] = AreaOf(x, small.width(), image.width());
  }
  for (uint32_t row = 0; row < small.height(); ++row) {
    const uint32_t from = image.flipped ? small.height() - 1 - row : row;
    SumRows(source, AreaOf(from, small.height(), image.height()), &sums);
    WriteRow(sums, columns, source.channels(), small.MemoryRow(row));
    if (!rows.Continue(row)) return false;
  }
  return true;
}

}  // namespace

std::unique_ptr<CKIPImage> ShrinkToLimit(const CKIPImage* image, uint32_t limit,
                                         ProgressCallback progress) try {
  if (image == nullptr || !image->IsValid()) return nullptr;
  const double factor =
      limit == 0 ? 1.0
                 : std::min(FactorFor(limit, image->width()), FactorFor(limit, image->height()));
  if (factor >= 1.0) return image->Clone(true);
  std::unique_ptr<CKIPImage> small(new (std::nothrow) CKIPImage);
  if (small == nullptr) return nullptr;
  small->SetPalette(image->palette());
  if (!small->CreateUnfilled({image->name, static_cast<uint32_t>(image->width() * factor),
                              static_cast<uint32_t>(image->height() * factor), 0, 0, 24})) {
    return nullptr;
  }
  if (!ShrinkInto(*image, *small, progress)) return nullptr;
  return small;
} catch (const std::bad_alloc&) {
  return nullptr;
}

}  // namespace zyr
