#include "simulator/detector_defects.h"

#include <algorithm>
#include <cstdlib>

#include "simulator/random.h"

namespace zyr::simulator {
namespace {

constexpr uint64_t kDefectStream = 1;

constexpr uint32_t kPixelsPerDefect = 9248;
constexpr uint32_t kEveryPair = 10;     // of so many bad pixels one has a bad neighbour
constexpr uint32_t kEdge = 40;          // pixels that lines keep away from it
constexpr uint32_t kLineDistance = 24;  // pixels

bool IsNear(uint32_t position, uint32_t other) {
  return std::abs(static_cast<int>(position) - static_cast<int>(other)) <
         static_cast<int>(kLineDistance);
}

// `length` is the frame's extent across the lines; `avoid` lists where none may be near.
std::vector<uint32_t> ChooseLines(Random& random, uint32_t count, uint32_t length,
                                  std::vector<uint32_t> avoid) {
  std::vector<uint32_t> lines;
  while (lines.size() < count) {
    const uint32_t line = kEdge + random.Below(length - 2 * kEdge);
    const auto tooNear = [line](uint32_t other) { return IsNear(line, other); };
    if (std::any_of(avoid.begin(), avoid.end(), tooNear)) continue;
    avoid.push_back(line);
    lines.push_back(line);
  }
  return lines;
}

}  // namespace

uint32_t SeamRow(Size size, uint32_t height) { return height - (size == kSizeC ? 409 : 535); }

std::vector<Defect> ChooseDefects(const DetectorOptions& options, const Geometry& geometry) {
  Random random(options.seed, kDefectStream);
  std::vector<Defect> defects;
  const uint32_t lines = options.size == kSizeA || options.size == kSizeB ? 2 : 4;
  const bool is303 = options.family == kFamily303;

  std::vector<uint32_t> seam;
  if (is303) seam.push_back(SeamRow(options.size, geometry.height));
  for (uint32_t y : ChooseLines(random, lines, geometry.height, seam)) {
    defects.push_back({kBadRow, 0, y});
  }
  const std::vector<uint32_t> columns = ChooseLines(random, lines, geometry.width, {});
  for (uint32_t x : columns) defects.push_back({kBadColumn, x, 0});
  if (!is303) {
    // Two side by side, and one at the edge. The 303's column statistics can take neither.
    defects.push_back({kBadColumn, columns.front() + 1, 0});
    defects.push_back({kBadColumn, 2, 0});
  }

  const uint32_t pixels = geometry.width * geometry.height / kPixelsPerDefect;
  for (uint32_t i = 0; i < pixels; ++i) {
    const uint32_t x = 2 + random.Below(geometry.width - 2);
    const uint32_t y = 1 + random.Below(geometry.height - 2);
    defects.push_back({kBadPixel, x, y});
    if (i % kEveryPair == 0) defects.push_back({kBadPixel, x - 1, y});
  }
  return defects;
}

}  // namespace zyr::simulator
