#include "controls/image_viewer/viewer_cursors.h"

#include <cstdint>
#include <cstring>
#include <vector>

#include "controls/dialog_font.h"
#include "controls/image_viewer/viewer_icons.h"

namespace zyr {
namespace {

constexpr int kSide = 32;  // pixels of a plain screen

class Bitmap {
 public:
  explicit Bitmap(HBITMAP handle) : handle_(handle) {}
  ~Bitmap() {
    if (handle_ != nullptr) DeleteObject(handle_);
  }
  Bitmap(const Bitmap&) = delete;
  Bitmap& operator=(const Bitmap&) = delete;

  HBITMAP handle() const { return handle_; }

 private:
  HBITMAP handle_;
};

HBITMAP ColorBitmap(const std::vector<uint32_t>& pixels, int side) {
  BITMAPINFO info = {};
  info.bmiHeader.biSize = sizeof info.bmiHeader;
  info.bmiHeader.biWidth = side;
  info.bmiHeader.biHeight = -side;  // first row on top
  info.bmiHeader.biPlanes = 1;
  info.bmiHeader.biBitCount = 32;
  void* bits = nullptr;
  const HBITMAP bitmap = CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
  if (bitmap != nullptr) std::memcpy(bits, pixels.data(), pixels.size() * sizeof pixels[0]);
  return bitmap;
}

// Where there is no opacity, the mask decides.
HBITMAP MaskOf(const std::vector<uint32_t>& pixels, int side) {
  const size_t stride = static_cast<size_t>(side + 15) / 16 * 2;
  std::vector<uint8_t> bits(stride * static_cast<size_t>(side));
  for (size_t i = 0; i < pixels.size(); ++i) {
    const size_t row = i / static_cast<size_t>(side);
    const size_t column = i % static_cast<size_t>(side);
    if (pixels[i] >> 24 < 0x80) {
      bits[row * stride + column / 8] |= static_cast<uint8_t>(0x80 >> column % 8);
    }
  }
  return CreateBitmap(side, side, 1, 1, bits.data());
}

HICON MakeCursor(const CursorDesign& design) {
  const int side = Scaled(kSide);
  const double scale = static_cast<double>(side) / kSide;
  std::vector<IconLayer> layers;
  for (const ColoredStrokes& layer : design.layers) layers.push_back({layer.color, layer.strokes});
  const std::vector<uint32_t> pixels = RenderIcon(layers, side, {{0, 0}, scale});
  const Bitmap color(ColorBitmap(pixels, side));
  const Bitmap mask(MaskOf(pixels, side));
  ICONINFO info = {FALSE, static_cast<DWORD>(design.hotSpot.x * scale),
                   static_cast<DWORD>(design.hotSpot.y * scale), mask.handle(), color.handle()};
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
