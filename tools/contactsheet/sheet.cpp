#include "tools/contactsheet/sheet.h"

#include <algorithm>
#include <utility>

#include "imaging/image/grey.h"
#include "tools/contactsheet/font.h"

namespace zyr {
namespace {

constexpr uint16_t kPaper = 246;
constexpr uint16_t kInk = 24;
constexpr uint16_t kFaintInk = 96;
constexpr uint16_t kFrame = 176;

constexpr uint32_t kMargin = 36;
constexpr uint32_t kTileGap = 8;
constexpr uint32_t kEntryGapX = 34;
constexpr uint32_t kEntryGapY = 28;
constexpr uint32_t kHeadingScale = 3;
constexpr uint32_t kTitleScale = 2;
constexpr uint32_t kCaptionScale = 1;
constexpr uint32_t kLineGap = 8;  // between text and picture

constexpr uint32_t TextHeight(uint32_t scale) { return kGlyphHeight * scale; }

constexpr uint32_t kEntryHeight =
    TextHeight(kTitleScale) + kLineGap + kTileHeight + kLineGap + TextHeight(kCaptionScale);

uint32_t EntryWidth(size_t tiles) {
  return static_cast<uint32_t>(tiles * (kTileWidth + kTileGap)) - kTileGap;
}

class Page {
 public:
  Page(uint32_t width, uint32_t height) {
    picture_.width = width;
    picture_.height = height;
    picture_.samples.assign(size_t{width} * height, kPaper);
  }

  // What lies outside the page is left out.
  void Fill(uint32_t x, uint32_t y, uint32_t width, uint32_t height, uint16_t grey) {
    for (uint32_t row = y; row < std::min(y + height, picture_.height); ++row) {
      for (uint32_t column = x; column < std::min(x + width, picture_.width); ++column) {
        picture_.samples[size_t{row} * picture_.width + column] = grey;
      }
    }
  }

  void Write(uint32_t x, uint32_t y, const std::string& text, uint32_t scale, uint16_t grey) {
    for (const char character : text) {
      for (uint32_t dot = 0; dot < kGlyphWidth * kGlyphHeight; ++dot) {
        const uint32_t column = dot % kGlyphWidth;
        const uint32_t row = dot / kGlyphWidth;
        if (!GlyphDot(character, column, row)) continue;
        Fill(x + column * scale, y + row * scale, scale, scale, grey);
      }
      x += (kGlyphWidth + 1) * scale;
    }
  }

  // In the middle of a framed tile.
  void Place(uint32_t x, uint32_t y, const CKIPImage& image) {
    Fill(x - 1, y - 1, kTileWidth + 2, kTileHeight + 2, kFrame);
    Fill(x, y, kTileWidth, kTileHeight, kPaper);
    const uint32_t width = std::min(image.width(), kTileWidth);
    const uint32_t height = std::min(image.height(), kTileHeight);
    x += (kTileWidth - width) / 2;
    y += (kTileHeight - height) / 2;
    for (uint32_t row = 0; row < height; ++row) {
      for (uint32_t column = 0; column < width; ++column) {
        PaletteEntry color;
        if (!image.GetColor(column, row, &color)) continue;
        Fill(x + column, y + row, 1, 1, GreyFromRgb(color.red, color.green, color.blue));
      }
    }
  }

  GreyPicture Take() { return std::move(picture_); }

 private:
  GreyPicture picture_;
};

void Draw(Page& page, uint32_t x, uint32_t y, const Entry& entry) {
  page.Write(x, y, entry.title, kTitleScale, kInk);
  const uint32_t top = y + TextHeight(kTitleScale) + kLineGap;
  for (const Tile& tile : entry.tiles) {
    page.Place(x, top, *tile.picture);
    page.Write(x, top + kTileHeight + kLineGap, tile.caption, kCaptionScale, kFaintInk);
    x += kTileWidth + kTileGap;
  }
}

}  // namespace

GreyPicture LayOut(const std::string& heading, const std::vector<Entry>& entries,
                   uint32_t columns) {
  size_t mostTiles = 1;
  for (const Entry& entry : entries) mostTiles = std::max(mostTiles, entry.tiles.size());
  const uint32_t stepX = EntryWidth(mostTiles) + kEntryGapX;
  const uint32_t stepY = kEntryHeight + kEntryGapY;
  const uint32_t rows = (static_cast<uint32_t>(entries.size()) + columns - 1) / columns;
  const uint32_t top = kMargin + TextHeight(kHeadingScale) + kEntryGapY;

  Page page(2 * kMargin + columns * stepX - kEntryGapX, top + rows * stepY - kEntryGapY + kMargin);
  page.Write(kMargin, kMargin, heading, kHeadingScale, kInk);
  for (uint32_t i = 0; i < entries.size(); ++i) {
    Draw(page, kMargin + i % columns * stepX, top + i / columns * stepY, entries[i]);
  }
  return page.Take();
}

}  // namespace zyr
