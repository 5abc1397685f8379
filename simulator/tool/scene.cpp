#include "simulator/tool/scene.h"

#include <algorithm>
#include <cstddef>
#include <vector>

#include "tools/makephantom/phantom.h"

namespace zyr::simulator {
namespace {

// Part of a line of source pixels.
struct Span {
  uint32_t first;
  uint32_t count;
};

// What pixel `index` of `count` covers of the span: whole pixels, at least one.
Span Covered(const Span& span, uint32_t index, uint32_t count) {
  const auto edge = [&](uint32_t i) {
    return static_cast<uint32_t>(uint64_t{span.count} * i / count);
  };
  const uint32_t first = edge(index);
  return {span.first + first, std::max(edge(index + 1) - first, 1u)};
}

// The middle `part` of `whole`.
Span Middle(uint64_t part, uint32_t whole) {
  const auto count = static_cast<uint32_t>(std::clamp<uint64_t>(part, 1, whole));
  return {(whole - count) / 2, count};
}

uint16_t Mean(const GreyPicture& picture, const Span& rows, const Span& columns) {
  uint64_t sum = 0;
  for (uint32_t y = rows.first; y < rows.first + rows.count; ++y) {
    const uint16_t* row = picture.Row(y);
    for (uint32_t x = columns.first; x < columns.first + columns.count; ++x) sum += row[x];
  }
  const uint64_t count = uint64_t{rows.count} * columns.count;
  return static_cast<uint16_t>((sum + count / 2) / count);
}

uint16_t TwelveBits(uint16_t sample, uint32_t bits) {
  return static_cast<uint16_t>(bits == 8 ? (sample * 4095u + 127) / 255 : sample >> 4);
}

// The sensor is read from the bottom of the picture up.
std::vector<uint16_t> TurnedOver(const std::vector<uint16_t>& samples, uint32_t width) {
  std::vector<uint16_t> turned;
  turned.reserve(samples.size());
  for (size_t end = samples.size(); end > 0; end -= width) {
    const auto row = samples.begin() + static_cast<std::ptrdiff_t>(end - width);
    turned.insert(turned.end(), row, row + width);
  }
  return turned;
}

Scene EmptyScene(Family family, Size size) {
  const Geometry geometry = GeometryOf(family, size);
  return {geometry.width, geometry.height, {}};
}

}  // namespace

double PixelPitch(Family family) { return family == kFamily2000 ? 22.5 : 33; }

Scene SceneOfPicture(const GreyPicture& picture, Family family, Size size, bool film) {
  Scene scene = EmptyScene(family, size);
  const Span rows = Middle(uint64_t{picture.width} * scene.height / scene.width, picture.height);
  const Span columns = Middle(uint64_t{picture.height} * scene.width / scene.height, picture.width);
  scene.samples.reserve(size_t{scene.width} * scene.height);
  for (uint32_t y = scene.height; y-- > 0;) {
    const Span fromRows = Covered(rows, y, scene.height);
    for (uint32_t x = 0; x < scene.width; ++x) {
      const uint16_t sample =
          TwelveBits(Mean(picture, fromRows, Covered(columns, x, scene.width)), picture.bits);
      scene.samples.push_back(film ? static_cast<uint16_t>(kBrightest - sample) : sample);
    }
  }
  return scene;
}

Scene SceneOfPhantom(Family family, Size size, uint64_t seed) {
  Scene scene = EmptyScene(family, size);
  scene.samples = TurnedOver(
      DrawPhantom({scene.width, scene.height, PixelPitch(family), seed}), scene.width);
  for (uint16_t& sample : scene.samples) sample = static_cast<uint16_t>(kBrightest - sample);
  return scene;
}

GreyPicture PictureOfScene(const Scene& scene) {
  GreyPicture picture;
  picture.width = scene.width;
  picture.height = scene.height;
  picture.bits = 16;
  picture.samples = TurnedOver(scene.samples, scene.width);
  for (uint16_t& sample : picture.samples) sample = static_cast<uint16_t>(sample << 4);
  return picture;
}

}  // namespace zyr::simulator
