#include "platform/host/drawing.h"

#include <cstddef>
#include <utility>

namespace zyr::platform {
namespace {

struct State {
  std::vector<host::DrawnDib> drawn;
  bool fail = false;
};

State& TheState() {
  static State state;
  return state;
}

size_t BytesOf(const DibView& dib) {
  const size_t stride = (size_t{dib.width} * dib.bitsPerPixel + 31) / 32 * 4;
  return stride * dib.height;
}

}  // namespace

bool DrawDib(DeviceContext target, const DrawRect& to, const DibView& dib, const DrawRect& from) {
  if (TheState().fail || dib.bits == nullptr) return false;
  host::DrawnDib drawn{target, to, from, dib.width, dib.height, dib.bitsPerPixel, {}, {}};
  if (dib.palette != nullptr) {
    drawn.palette.assign(dib.palette, dib.palette + size_t{dib.colorCount} * 4);
  }
  drawn.bits.assign(dib.bits, dib.bits + BytesOf(dib));
  TheState().drawn.push_back(std::move(drawn));
  return true;
}

namespace host {

const std::vector<DrawnDib>& DrawnDibs() { return TheState().drawn; }
void FailDrawing(bool fail) { TheState().fail = fail; }
void ResetDrawing() { TheState() = {}; }

}  // namespace host
}  // namespace zyr::platform
