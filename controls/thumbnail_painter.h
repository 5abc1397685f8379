// How a thumbnail grid looks.
#pragma once

#include <windows.h>

#include <string>

#include "controls/dialog_font.h"
#include "imaging/image/image.h"

namespace zyr {

struct ThumbnailLook {
  size_t number = 0;  // counted from 1
  bool selected = false;
  bool focused = false;  // has the keyboard
  bool known = false;    // false until there is a picture, or is known that there is none
  const CKIPImage* picture = nullptr;
};

class ThumbnailPainter {
 public:
  ThumbnailPainter();

  // Of the window's client area: what all cells fill together, and the strip of the caption.
  RECT CellsIn(const RECT& client) const;
  RECT CaptionIn(const RECT& client) const;
  // The room for the picture in a cell; empty if the cell is too small.
  RECT PictureBoxIn(const RECT& cell) const;

  void PaintBackground(HDC dc, const RECT& area) const;
  void PaintCaption(HDC dc, const RECT& client, const std::string& caption) const;
  void PaintItem(HDC dc, const RECT& cell, const ThumbnailLook& look) const;

 private:
  struct Metrics {
    int margin;   // around all cells
    int gap;      // from the edge of a cell to its tile: half the distance of two tiles
    int padding;  // from the edge of a tile to its picture
    int line;     // height of a line of text
    int captionHeight;
    int thin;
    int thick;
  };

  RECT TileIn(const RECT& cell) const;
  bool HasRoomForNumber(const RECT& tile) const;
  void PaintNumber(HDC dc, const RECT& tile, size_t number) const;
  void PaintPicture(HDC dc, const RECT& box, const CKIPImage& picture) const;
  void PaintBroken(HDC dc, const RECT& box, COLORREF background) const;

  Font font_;
  Metrics metrics_;
};

}  // namespace zyr
