#include "imaging/viewer/local_contrast.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdlib>

#include "imaging/image/grey.h"

namespace zyr {
namespace {

constexpr float kMostGain = 3;
constexpr float kLeastLimit = 1.3f;  // however noisy the picture is
constexpr float kMostNoise = 5;      // levels, of the result
constexpr float kMargin = 8;         // levels at either end that a neighbourhood leaves free
constexpr float kMoved = 0.15f;      // of the way, that a neighbourhood goes towards middle grey
constexpr size_t kTail = 100;        // one pixel in so many is darker, or brighter, than the limits
constexpr float kFadedPart = 0.2f;   // of the spot's width, at each edge

size_t Span(int32_t from, int32_t to) { return static_cast<size_t>(to - from); }

// The standard deviation from one image pixel to the next, by second differences, which edges and
// slopes touch little.
float NoiseOf(const std::vector<uint8_t>& levels, size_t width, double zoom) {
  const auto step = static_cast<size_t>(
      std::clamp(std::ceil(zoom), 1.0, std::max(1.0, static_cast<double>(width) / 4)));
  uint64_t sum = 0;
  size_t count = 0;
  for (size_t row = 0; row < levels.size(); row += width) {
    for (size_t x = row + step; x + step < row + width; ++x, ++count) {
      sum += static_cast<uint64_t>(std::abs(levels[x - step] - 2 * levels[x] + levels[x + step]));
    }
  }
  return count == 0 ? 0 : 0.51f * static_cast<float>(sum) / static_cast<float>(count);
}

// The level below which `rank` of the counted pixels lie.
template <typename Iterator>
size_t StepsTo(size_t rank, Iterator count) {
  size_t level = 0;
  for (size_t seen = count[0]; seen <= rank && level < 255; seen += count[0]) {
    ++count;
    ++level;
  }
  return level;
}

// 0 at both ends, 1 from the faded part on, smooth in between.
std::vector<float> FadeOver(size_t length) {
  std::vector<float> fade(length);
  const float reach = std::max(1.0f, static_cast<float>(length) * kFadedPart);
  for (size_t i = 0; i < length; ++i) {
    const float distance = static_cast<float>(std::min(i, length - 1 - i)) + 0.5f;
    const float part = std::min(distance / reach, 1.0f);
    fade[i] = part * part * (3 - 2 * part);
  }
  return fade;
}

uint32_t Stretched(uint32_t value, float gain, float offset, float fade) {
  const auto old = static_cast<float>(value);
  const float wanted = std::clamp(gain * old + offset, 0.0f, 255.0f);
  return static_cast<uint32_t>(old + (wanted - old) * fade + 0.5f);
}

}  // namespace

uint8_t LevelOfColor(uint32_t color) {
  return GreyFromRgb(static_cast<uint8_t>(color >> 16), static_cast<uint8_t>(color >> 8),
                     static_cast<uint8_t>(color));
}

LocalContrast::LocalContrast(const uint32_t* pixels, const ViewRect& shown, const ViewRect& spot,
                             double zoom)
    : shown_(shown),
      spot_(spot),
      fadeX_(FadeOver(Span(spot.left, spot.right))),
      fadeY_(FadeOver(Span(spot.top, spot.bottom))) {
  const size_t width = Span(shown.left, shown.right);
  std::vector<uint8_t> levels(width * Span(shown.top, shown.bottom));
  std::transform(pixels, pixels + levels.size(), levels.begin(), LevelOfColor);
  const float noise = std::max(NoiseOf(levels, width, zoom), 0.1f);
  for (int y = 0; y < kNodes; ++y) {
    for (int x = 0; x < kNodes; ++x) nodes_[y][x] = FindStretch(levels, x, y, noise);
  }
}

LocalContrast::Stretch LocalContrast::FindStretch(const std::vector<uint8_t>& levels, int nodeX,
                                                  int nodeY, float noise) const {
  const size_t width = Span(shown_.left, shown_.right);
  const size_t height = Span(shown_.top, shown_.bottom);
  // As far as the next node but one on either side.
  const auto from = [](int node, size_t length) {
    return static_cast<size_t>(std::max(node - 1, 0)) * (length - 1) / (kNodes - 1);
  };
  const auto to = [](int node, size_t length) {
    return static_cast<size_t>(std::min(node + 1, kNodes - 1)) * (length - 1) / (kNodes - 1);
  };
  std::array<uint32_t, 256> counts{};
  size_t total = 0;
  for (size_t y = from(nodeY, height); y <= to(nodeY, height); ++y) {
    for (size_t x = from(nodeX, width); x <= to(nodeX, width); ++x, ++total) {
      ++counts[levels[y * width + x]];
    }
  }
  const auto low = static_cast<float>(StepsTo(total / kTail, counts.begin()));
  const auto high = 255 - static_cast<float>(StepsTo(total / kTail, counts.rbegin()));
  const auto middle = static_cast<float>(StepsTo(total / 2, counts.begin()));
  // Noise alone is worth nothing: its own tails are 2.3 deviations from the middle.
  const float signal = std::clamp((high - low) / (4.6f * noise) - 1, 0.0f, 1.0f);
  const float newMiddle = middle + (127.5f - middle) * kMoved * signal;
  // Both tails stay inside the range.
  const float down = (newMiddle - kMargin) / std::max(middle - low, 1.0f);
  const float up = (255 - kMargin - newMiddle) / std::max(high - middle, 1.0f);
  const float most = std::clamp(kMostNoise / noise, kLeastLimit, kMostGain);
  const float limit = 1 + (most - 1) * signal;
  Stretch stretch;
  stretch.gain = std::clamp(std::min(down, up), 1.0f, limit);
  stretch.offset = newMiddle - stretch.gain * middle;
  return stretch;
}

LocalContrast::Stretch LocalContrast::Between(int32_t x, int32_t y) const {
  const auto place = [](int32_t at, int32_t from, int32_t to, int* node) {
    const float position = to - from < 2 ? 0
                                         : static_cast<float>(at - from) * (kNodes - 1) /
                                               static_cast<float>(to - from - 1);
    *node = std::min(static_cast<int>(position), kNodes - 2);
    return position - static_cast<float>(*node);
  };
  int nodeX = 0;
  int nodeY = 0;
  const float right = place(x, shown_.left, shown_.right, &nodeX);
  const float down = place(y, shown_.top, shown_.bottom, &nodeY);
  const auto mix = [](const Stretch& a, const Stretch& b, float part) {
    return Stretch{a.gain + (b.gain - a.gain) * part, a.offset + (b.offset - a.offset) * part};
  };
  return mix(mix(nodes_[nodeY][nodeX], nodes_[nodeY][nodeX + 1], right),
             mix(nodes_[nodeY + 1][nodeX], nodes_[nodeY + 1][nodeX + 1], right), down);
}

void LocalContrast::Apply(int32_t y, int32_t left, int32_t right, uint32_t* pixels) const {
  const float fadeY = fadeY_[Span(spot_.top, y)];
  for (int32_t x = left; x < right; ++x, ++pixels) {
    const Stretch stretch = Between(x, y);
    const float fade = fadeY * fadeX_[Span(spot_.left, x)];
    uint32_t color = 0;
    for (int shift = 0; shift < 24; shift += 8) {
      color |= Stretched(*pixels >> shift & 0xFF, stretch.gain, stretch.offset, fade) << shift;
    }
    *pixels = color;
  }
}

}  // namespace zyr
