#include "controls/thumbnail_painter.h"

#include <algorithm>

#include "controls/paint.h"
#include "controls/thumbnail_layout.h"
#include "controls/vector_icon.h"

namespace zyr {
namespace {

constexpr int kLeastLinesWithNumber = 6;
constexpr SIZE kPlaceholder = {3, 4};  // the shape of most sensors

COLORREF Background() { return GetSysColor(COLOR_WINDOW); }
COLORREF TextColor() { return GetSysColor(COLOR_WINDOWTEXT); }
COLORREF QuietTextColor() { return Mix(TextColor(), Background(), 25); }
COLORREF Toned(int percent) { return Mix(Background(), TextColor(), percent); }

COLORREF TileColor(bool selected) {
  return selected ? Mix(Background(), GetSysColor(COLOR_HIGHLIGHT), 18) : Toned(4);
}

// A sheet, struck through; units are halves of its side.
constexpr IconStroke kBrokenSign[] = {
    {{-0.62, -0.8}, {0.62, -0.8}, 0.07},  {{0.62, -0.8}, {0.62, 0.8}, 0.07},
    {{0.62, 0.8}, {-0.62, 0.8}, 0.07},    {{-0.62, 0.8}, {-0.62, -0.8}, 0.07},
    {{-0.26, -0.26}, {0.26, 0.26}, 0.07}, {{-0.26, 0.26}, {0.26, -0.26}, 0.07}};

int LineHeight(HFONT font) {
  const HDC dc = GetDC(nullptr);
  if (dc == nullptr) return 0;
  const HGDIOBJ previous = SelectObject(dc, font);
  TEXTMETRICA metrics = {};
  GetTextMetricsA(dc, &metrics);
  SelectObject(dc, previous);
  ReleaseDC(nullptr, dc);
  return metrics.tmHeight;
}

void PaintLine(HDC dc, HFONT font, RECT area, const std::string& text, COLORREF color) {
  const HGDIOBJ previous = SelectObject(dc, font);
  SetBkMode(dc, TRANSPARENT);
  SetTextColor(dc, color);
  DrawTextA(dc, text.c_str(), static_cast<int>(text.size()), &area,
            DT_CENTER | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX | DT_END_ELLIPSIS);
  SelectObject(dc, previous);
}

RECT Shrunk(RECT area, int by) {
  InflateRect(&area, -by, -by);
  return area;
}

}  // namespace

ThumbnailPainter::ThumbnailPainter() : font_(MessageFont()) {
  const int line = LineHeight(font_.handle());
  metrics_ = {Scaled(5), Scaled(5), Scaled(8), line, line + Scaled(12), Scaled(1), Scaled(2)};
}

// In a window too low for both, the caption gives way.
RECT ThumbnailPainter::CaptionIn(const RECT& client) const {
  RECT area = client;
  if (client.bottom - client.top >= 3 * metrics_.captionHeight) {
    area.top = area.bottom - metrics_.captionHeight;
  } else {
    area.top = area.bottom;
  }
  return area;
}

RECT ThumbnailPainter::CellsIn(const RECT& client) const {
  RECT area = client;
  area.bottom = CaptionIn(client).top;
  InflateRect(&area, -metrics_.margin, -metrics_.margin);
  area.right = std::max(area.left, area.right);
  area.bottom = std::max(area.top, area.bottom);
  return area;
}

RECT ThumbnailPainter::TileIn(const RECT& cell) const { return Shrunk(cell, metrics_.gap); }

bool ThumbnailPainter::HasRoomForNumber(const RECT& tile) const {
  return tile.bottom - tile.top >= kLeastLinesWithNumber * metrics_.line;
}

RECT ThumbnailPainter::PictureBoxIn(const RECT& cell) const {
  const RECT tile = TileIn(cell);
  RECT box = Shrunk(tile, metrics_.padding);
  if (HasRoomForNumber(tile)) box.bottom = tile.bottom - metrics_.line - metrics_.padding;
  return IsRectEmpty(&box) ? RECT{} : box;
}

void ThumbnailPainter::PaintBackground(HDC dc, const RECT& area) const {
  FillArea(dc, area, Background());
}

void ThumbnailPainter::PaintCaption(HDC dc, const RECT& client, const std::string& caption) const {
  const RECT area = CaptionIn(client);
  if (IsRectEmpty(&area)) return;
  FillArea(dc, {area.left, area.top, area.right, area.top + metrics_.thin}, Toned(10));
  PaintLine(dc, font_.handle(), area, caption, QuietTextColor());
}

// The frame of the keyboard stands apart from the tile, that of the selection is its edge.
void ThumbnailPainter::PaintItem(HDC dc, const RECT& cell, const ThumbnailLook& look) const {
  const RECT tile = TileIn(cell);
  if (IsRectEmpty(&tile)) return;
  const COLORREF ground = TileColor(look.selected);
  FillArea(dc, tile, ground);
  const RECT box = PictureBoxIn(cell);
  if (look.picture != nullptr) {
    PaintPicture(dc, box, *look.picture);
  } else if (look.known) {
    PaintBroken(dc, box, ground);
  } else {
    FillArea(dc, FitInto(box, kPlaceholder), Mix(ground, TextColor(), 6));
  }
  PaintNumber(dc, tile, look.number);
  if (look.selected) FrameArea(dc, tile, metrics_.thick, GetSysColor(COLOR_HIGHLIGHT));
  if (look.focused)
    FrameArea(dc, Shrunk(tile, -2 * metrics_.thick), metrics_.thin, QuietTextColor());
}

void ThumbnailPainter::PaintNumber(HDC dc, const RECT& tile, size_t number) const {
  if (!HasRoomForNumber(tile)) return;
  const RECT line = {tile.left, tile.bottom - metrics_.line - metrics_.padding / 2, tile.right,
                     tile.bottom - metrics_.padding / 2};
  PaintLine(dc, font_.handle(), line, std::to_string(number), QuietTextColor());
}

void ThumbnailPainter::PaintPicture(HDC dc, const RECT& box, const CKIPImage& picture) const {
  if (IsRectEmpty(&box)) return;
  const RECT place =
      FitInto(box, {static_cast<LONG>(picture.width()), static_cast<LONG>(picture.height())});
  SetStretchBltMode(dc, HALFTONE);
  picture.Draw(dc, place.left, place.top, place.right - place.left, place.bottom - place.top);
}

void ThumbnailPainter::PaintBroken(HDC dc, const RECT& box, COLORREF background) const {
  const int width = box.right - box.left;
  const int height = box.bottom - box.top;
  const int size = std::min({width, height, Scaled(40)});
  if (size <= 0) return;
  const IconLayer sign[] = {{Mix(background, TextColor(), 40), kBrokenSign}};
  const double middle = size / 2.0;
  DrawIconPixels(dc, box.left + (width - size) / 2, box.top + (height - size) / 2, size,
                 RenderIcon(sign, size, {{middle, middle}, middle}, background));
}

}  // namespace zyr
