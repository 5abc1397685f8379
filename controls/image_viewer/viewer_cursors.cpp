#include "controls/image_viewer/viewer_cursors.h"

#include <cstdint>
#include <vector>

#include "controls/dialog_font.h"
#include "controls/image_viewer/viewer_icons.h"
#include "controls/pixel_icon.h"

namespace zyr {
namespace {

constexpr int kSide = 32;  // pixels of a plain screen

// Where there is no opacity, the mask decides.
Bitmap MaskOf(const std::vector<uint32_t>& pixels, int side) {
  const size_t stride = static_cast<size_t>(side + 15) / 16 * 2;
  std::vector<uint8_t> bits(stride * static_cast<size_t>(side));
  for (size_t i = 0; i < pixels.size(); ++i) {
    const size_t row = i / static_cast<size_t>(side);
    const size_t column = i % static_cast<size_t>(side);
    if (pixels[i] >> 24 < 0x80) {
      bits[row * stride + column / 8] |= static_cast<uint8_t>(0x80 >> column % 8);
    }
  }
  return Bitmap(CreateBitmap(side, side, 1, 1, bits.data()));
}

HICON MakeCursor(const CursorDesign& design) {
  const int side = Scaled(kSide);
  const double scale = static_cast<double>(side) / kSide;
  std::vector<IconLayer> layers;
  for (const ColoredStrokes& layer : design.layers) layers.push_back({layer.color, layer.strokes});
  const std::vector<uint32_t> pixels = RenderIcon(layers, side, {{0, 0}, scale});
  const Bitmap color = BitmapFromPixels(pixels, side);
  const Bitmap mask = MaskOf(pixels, side);
  ICONINFO info = {FALSE, static_cast<DWORD>(design.hotSpot.x * scale),
                   static_cast<DWORD>(design.hotSpot.y * scale), mask.get(), color.get()};
  return CreateIconIndirect(&info);
}

}  // namespace

ViewerCursors::~ViewerCursors() {
  const HCURSOR shown = GetCursor();
  for (const auto& [cursor, made] : made_) {
    if (made != nullptr && made.get() == shown) SetCursor(LoadCursor(nullptr, IDC_ARROW));
  }
}

HCURSOR ViewerCursors::Get(ViewerCursor cursor) {
  const HCURSOR arrow = LoadCursor(nullptr, IDC_ARROW);
  if (cursor == ViewerCursor::kArrow) return arrow;
  if (cursor == ViewerCursor::kCross) return LoadCursor(nullptr, IDC_CROSS);
  if (cursor == ViewerCursor::kHidden) return nullptr;
  auto& made = made_[cursor];
  if (made == nullptr) made.reset(MakeCursor(DesignOfCursor(cursor)));
  return made != nullptr ? made.get() : arrow;
}

}  // namespace zyr
