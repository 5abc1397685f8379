#include "imaging/viewer/viewer_geometry.h"

#include <algorithm>
#include <cmath>

namespace zyr {
namespace {

constexpr int32_t kMost = INT32_MAX;

int32_t Held(double value) {
  if (std::isnan(value)) return 0;
  return static_cast<int32_t>(std::clamp<double>(value, INT32_MIN, kMost));
}

int32_t Held(int64_t value) {
  return static_cast<int32_t>(std::clamp<int64_t>(value, INT32_MIN, kMost));
}

// Below 0 too.
int32_t FloorToTen(int32_t value) {
  const int64_t tens = value >= 0 ? value / 10 : (int64_t{value} - 9) / 10;
  return Held(tens * 10);
}

int32_t CeilToTen(int32_t value) {
  const int64_t tens = value >= 0 ? (int64_t{value} + 9) / 10 : value / 10;
  return Held(tens * 10);
}

int32_t Scaled(uint32_t pixels, double zoom) {
  return pixels == 0 ? 0 : std::max(Held(std::trunc(pixels * zoom)), 1);
}

int32_t OriginAlong(int32_t content, int32_t client, int32_t scroll) {
  return content < client ? (client - content) / 2 : -scroll;
}

int32_t HeldAlong(double scroll, int32_t content, int32_t client) {
  return std::clamp(Held(std::round(scroll)), 0, std::max(content - std::max(client, 0), 0));
}

int32_t LastPixel(uint32_t pixels) { return Held(int64_t{pixels} - 1); }

}  // namespace

ViewRect Intersection(const ViewRect& a, const ViewRect& b) {
  const ViewRect both{std::max(a.left, b.left), std::max(a.top, b.top), std::min(a.right, b.right),
                      std::min(a.bottom, b.bottom)};
  return IsEmpty(both) ? ViewRect{} : both;
}

ViewRect RectBetween(ViewPoint a, ViewPoint b) {
  return {std::min(a.x, b.x), std::min(a.y, b.y), Held(int64_t{std::max(a.x, b.x)} + 1),
          Held(int64_t{std::max(a.y, b.y)} + 1)};
}

bool IsEmpty(const ViewRect& rect) { return rect.left >= rect.right || rect.top >= rect.bottom; }

ViewSize ViewerGeometry::Content() const {
  if (!HasImage()) return {};
  return {Scaled(imageWidth, zoom), Scaled(imageHeight, zoom)};
}

bool ViewerGeometry::Fits() const {
  return HasImage() && std::trunc(imageWidth * zoom) <= client.width &&
         std::trunc(imageHeight * zoom) <= client.height;
}

ViewPoint ViewerGeometry::Origin() const {
  const ViewSize content = Content();
  return {OriginAlong(content.width, client.width, scroll.x),
          OriginAlong(content.height, client.height, scroll.y)};
}

ViewPoint ViewerGeometry::HeldScroll(double x, double y) const {
  const ViewSize content = Content();
  return {HeldAlong(x, content.width, client.width), HeldAlong(y, content.height, client.height)};
}

ViewPoint ViewerGeometry::ScrollFor(ImagePoint point, double clientX, double clientY) const {
  return HeldScroll(point.x * zoom - clientX, point.y * zoom - clientY);
}

ImagePoint ViewerGeometry::ImageAt(double clientX, double clientY) const {
  if (!HasImage()) return {};
  const ViewPoint origin = Origin();
  return {(clientX - origin.x) / zoom, (clientY - origin.y) / zoom};
}

ViewPoint ViewerGeometry::ClientToImage(ViewPoint point, bool limit, double offset) const {
  if (!HasImage()) return {};
  const ImagePoint at = ImageAt(point.x + offset, point.y + offset);
  const ViewPoint pixel{Held(std::floor(at.x)), Held(std::floor(at.y))};
  if (!limit) return pixel;
  return {std::clamp(pixel.x, 0, LastPixel(imageWidth)),
          std::clamp(pixel.y, 0, LastPixel(imageHeight))};
}

ViewPoint ViewerGeometry::ImageToClient(ViewPoint point) const {
  if (!HasImage()) return {};
  const ViewPoint origin = Origin();
  return {Held(std::floor(point.x * zoom) + origin.x), Held(std::floor(point.y * zoom) + origin.y)};
}

ViewRect ViewerGeometry::VisiblePicture() const {
  const ViewSize content = Content();
  const ViewPoint origin = Origin();
  return Intersection({origin.x, origin.y, Held(int64_t{origin.x} + content.width),
                       Held(int64_t{origin.y} + content.height)},
                      {0, 0, client.width, client.height});
}

ViewRect ViewerGeometry::ScaledPart(const ViewRect& clientRect) const {
  const ViewSize content = Content();
  const ViewPoint origin = Origin();
  return Intersection(
      {Held(int64_t{clientRect.left} - origin.x), Held(int64_t{clientRect.top} - origin.y),
       Held(int64_t{clientRect.right} - origin.x), Held(int64_t{clientRect.bottom} - origin.y)},
      {0, 0, content.width, content.height});
}

ViewRect ViewerGeometry::DirtyImageRect(const ViewRect& clientRect) const {
  if (!HasImage()) return {};
  const ViewPoint first = ClientToImage({clientRect.left, clientRect.top}, false, 0);
  const ViewPoint last = ClientToImage({clientRect.right, clientRect.bottom}, false, 0);
  const ViewRect dirty{Held(int64_t{first.x} - 1), Held(int64_t{first.y} - 1),
                       Held(int64_t{last.x} + 1), Held(int64_t{last.y} + 1)};
  if (zoom <= 1) return dirty;
  return {FloorToTen(dirty.left), FloorToTen(dirty.top), CeilToTen(dirty.right),
          CeilToTen(dirty.bottom)};
}

}  // namespace zyr
