#include "imaging/viewer/scaled_picture.h"

#include <algorithm>
#include <cstring>
#include <utility>
#include <vector>

#include "imaging/viewer/picture_rows.h"
#include "imaging/viewer/scale_rows.h"
#include "imaging/viewer/scale_taps.h"

namespace zyr {
namespace {

struct Target {
  ViewRect part;
  uint32_t* pixels;
  size_t rowPixels;

  size_t width() const { return static_cast<size_t>(part.right - part.left); }
  uint32_t* Row(int32_t y) const { return pixels + static_cast<size_t>(y - part.top) * rowPixels; }
};

struct Axes {
  ScaleAxis x;
  ScaleAxis y;
};

// The means along a row, tap by tap: all first weights, then all second ones. Pixels with fewer
// taps have weights of 0 at the end.
class MeanColumns {
 public:
  MeanColumns(const ScaleAxis& axis, const ViewRect& part) {
    const auto width = static_cast<size_t>(part.right - part.left);
    firsts_.resize(width);
    MeanTaps taps;
    for (size_t i = 0; i < width; ++i) {
      FindMeanTaps(axis, part.left + static_cast<int32_t>(i), &taps);
      if (i == 0) firstColumn = taps.first;
      firsts_[i] = taps.first - firstColumn;
      taps_ = std::max(taps_, taps.weights.size());
    }
    columns = firsts_.back() + static_cast<int32_t>(taps.weights.size());
    weights_.resize(width * taps_);
    for (size_t i = 0; i < width; ++i) {
      FindMeanTaps(axis, part.left + static_cast<int32_t>(i), &taps);
      for (size_t t = 0; t < taps.weights.size(); ++t) weights_[t * width + i] = taps.weights[t];
    }
  }

  size_t taps() const { return taps_; }

  // `sums` have as many more as there are taps.
  void AddUp(const std::vector<uint32_t>& sums, std::vector<uint32_t>* means) const {
    std::fill(means->begin(), means->end(), 1u << 23);
    for (size_t t = 0; t < taps_; ++t) {
      ScaleRowLoops().addTap(sums.data() + t, firsts_.data(), weights_.data() + t * firsts_.size(),
                             firsts_.size(), means->data());
    }
  }

  int32_t firstColumn = 0;
  int32_t columns = 0;

 private:
  size_t taps_ = 0;
  std::vector<int32_t> firsts_;
  std::vector<uint32_t> weights_;
};

// Half the size is what users choose most, and has no weights.
void DrawHalves(const CKIPImage& image, const Target& target) {
  const size_t width = target.width();
  PictureRows rows(image, target.part.left * 2, static_cast<int32_t>(width * 2));
  std::vector<uint8_t> levels(width);
  std::vector<uint32_t> upper(width * 2);
  std::vector<uint32_t> lower(width * 2);
  for (int32_t y = target.part.top; y < target.part.bottom; ++y) {
    if (rows.planes() == 1) {
      ScaleRowLoops().halve(rows.Plane(y * 2, 0), rows.Plane(y * 2 + 1, 0), width, levels.data());
      rows.Finish(levels.data(), width, target.Row(y));
    } else {
      rows.Colors(y * 2, upper.data());
      rows.Colors(y * 2 + 1, lower.data());
      ScaleRowLoops().halveColors(upper.data(), lower.data(), width, target.Row(y));
    }
  }
}

void DrawMeans(const CKIPImage& image, const Axes& axes, const Target& target) {
  const ScaleRows& loops = ScaleRowLoops();
  const size_t width = target.width();
  const MeanColumns columns(axes.x, target.part);
  PictureRows rows(image, columns.firstColumn, columns.columns);
  const auto count = static_cast<size_t>(columns.columns);
  const size_t planes = rows.planes();
  std::vector<std::vector<uint32_t>> sums(planes, std::vector<uint32_t>(count + columns.taps()));
  std::vector<uint32_t> means(width);
  std::vector<uint8_t> bytes(width * planes);
  MeanTaps taps;
  for (int32_t y = target.part.top; y < target.part.bottom; ++y) {
    FindMeanTaps(axes.y, y, &taps);
    for (size_t i = 0; i < taps.weights.size(); ++i) {
      for (size_t plane = 0; plane < planes; ++plane) {
        (i == 0 ? loops.setWeighted : loops.addWeighted)(
            rows.Plane(taps.first + static_cast<int32_t>(i), plane), taps.weights[i], count,
            sums[plane].data());
      }
    }
    for (size_t plane = 0; plane < planes; ++plane) {
      loops.roundSums(count, sums[plane].data());
      columns.AddUp(sums[plane], &means);
      loops.meansToBytes(means.data(), width, bytes.data() + plane * width);
    }
    rows.Finish(bytes.data(), width, target.Row(y));
  }
}

// Rows of the image blended along themselves; the two used last are kept.
class BlendedRows {
 public:
  BlendedRows(const CKIPImage& image, const ScaleAxis& axis, const ViewRect& part)
      : firsts_(static_cast<size_t>(part.right - part.left)),
        fractions_(firsts_.size()),
        firstColumn_(FindBlendTap(axis, part.left).first),
        columns_(std::min(FindBlendTap(axis, part.right - 1).first + 2, axis.size) - firstColumn_),
        rows(image, firstColumn_, columns_) {
    for (size_t i = 0; i < firsts_.size(); ++i) {
      const BlendTap tap = FindBlendTap(axis, part.left + static_cast<int32_t>(i));
      firsts_[i] = tap.first - firstColumn_;
      fractions_[i] = tap.fraction;
    }
    for (std::vector<int16_t>& row : blended_) row.resize(firsts_.size() * rows.planes());
    pairs_.resize(static_cast<size_t>(columns_) + 8);
  }

  // All planes, one behind the other; valid until two other rows have been asked for.
  const int16_t* Row(int32_t y) {
    const size_t slot = static_cast<size_t>(y) & 1;
    if (at_[slot] != y) Blend(y, blended_[slot].data());
    at_[slot] = y;
    return blended_[slot].data();
  }

 private:
  void Blend(int32_t y, int16_t* target) {
    const ScaleRows& loops = ScaleRowLoops();
    for (size_t plane = 0; plane < rows.planes(); ++plane) {
      loops.pairUp(rows.Plane(y, plane), static_cast<size_t>(columns_), pairs_.data());
      loops.blendPairs(pairs_.data(), firsts_.data(), fractions_.data(), firsts_.size(),
                       target + plane * firsts_.size());
    }
  }

  std::vector<int32_t> firsts_;
  std::vector<int16_t> fractions_;
  int32_t firstColumn_;
  int32_t columns_;
  std::vector<uint32_t> pairs_;
  std::vector<int16_t> blended_[2];
  int32_t at_[2] = {-1, -1};

 public:
  PictureRows rows;
};

void DrawBlends(const CKIPImage& image, const Axes& axes, const Target& target) {
  BlendedRows blended(image, axes.x, target.part);
  std::vector<uint8_t> bytes(target.width() * blended.rows.planes());
  for (int32_t y = target.part.top; y < target.part.bottom; ++y) {
    const BlendTap tap = FindBlendTap(axes.y, y);
    const int16_t* upper = blended.Row(tap.first);
    const int16_t* lower = blended.Row(std::min(tap.first + 1, axes.y.size - 1));
    ScaleRowLoops().blendRows(upper, lower, tap.fraction, bytes.size(), bytes.data());
    blended.rows.Finish(bytes.data(), target.width(), target.Row(y));
  }
}

void DrawSquares(const CKIPImage& image, const Axes& axes, const Target& target) {
  const int32_t first = FindNearest(axes.x, target.part.left);
  const int32_t columns = FindNearest(axes.x, target.part.right - 1) - first + 1;
  const PictureRows rows(image, first, columns);
  std::vector<uint32_t> colors(static_cast<size_t>(columns));
  std::vector<int32_t> firsts(target.width());
  for (size_t i = 0; i < firsts.size(); ++i) {
    firsts[i] = FindNearest(axes.x, target.part.left + static_cast<int32_t>(i)) - first;
  }
  int32_t above = -1;
  for (int32_t y = target.part.top; y < target.part.bottom; ++y) {
    const int32_t row = FindNearest(axes.y, y);
    if (row == above) {
      std::memcpy(target.Row(y), target.Row(y - 1), firsts.size() * sizeof(uint32_t));
      continue;
    }
    above = row;
    rows.Colors(row, colors.data());
    uint32_t* out = target.Row(y);
    for (size_t i = 0; i < firsts.size(); ++i) out[i] = colors[static_cast<size_t>(firsts[i])];
  }
}

void DrawCopy(const CKIPImage& image, const Target& target) {
  const PictureRows rows(image, target.part.left, static_cast<int32_t>(target.width()));
  for (int32_t y = target.part.top; y < target.part.bottom; ++y) rows.Colors(y, target.Row(y));
}

bool IsEmpty(const ViewRect& part) { return part.left >= part.right || part.top >= part.bottom; }

Axes AxesOf(const CKIPImage& image, double scale, double left, double top) {
  left = std::clamp(left, -1e9, 1e9);
  top = std::clamp(top, -1e9, 1e9);
  return {{scale, left, static_cast<int32_t>(image.width())},
          {scale, top, static_cast<int32_t>(image.height())}};
}

// Whether the image has `times` x `times` pixels for each of the part.
bool HoldsTimes(const CKIPImage& image, int64_t times, const ViewRect& part) {
  return part.left >= 0 && part.top >= 0 && part.right * times <= image.width() &&
         part.bottom * times <= image.height();
}

}  // namespace

void DrawScaled(const CKIPImage& image, double scale, const ViewRect& part, uint32_t* target,
                uint32_t rowPixels) {
  if (IsEmpty(part) || !(scale > 0)) return;
  const Axes axes = AxesOf(image, scale, 0, 0);
  if (scale == 0.5 && HoldsTimes(image, 2, part)) {
    DrawHalves(image, {part, target, rowPixels});
  } else if (scale < 1) {
    DrawMeans(image, axes, {part, target, rowPixels});
  } else if (scale == 1 && HoldsTimes(image, 1, part)) {
    DrawCopy(image, {part, target, rowPixels});
  } else if (scale < kSharpScale) {
    DrawBlends(image, axes, {part, target, rowPixels});
  } else {
    DrawSquares(image, axes, {part, target, rowPixels});
  }
}

void DrawSmooth(const CKIPImage& image, double scale, double left, double top, const ViewRect& part,
                uint32_t* target, uint32_t rowPixels) {
  if (IsEmpty(part) || !(scale > 0)) return;
  const Axes axes = AxesOf(image, scale, left, top);
  (scale < 1 ? DrawMeans : DrawBlends)(image, axes, {part, target, rowPixels});
}

}  // namespace zyr
