// CKIPImage: a bottom-up bitmap of 1, 8 or 24 bits per pixel. It is what is displayed, saved and
// handed out.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "imaging/image/attached_block.h"
#include "platform/drawing.h"

namespace zyr {

// In memory and in files four bytes: blue, green, red, 0.
struct PaletteEntry {
  uint8_t blue = 0;
  uint8_t green = 0;
  uint8_t red = 0;
  uint8_t reserved = 0;

  bool operator==(const PaletteEntry&) const = default;
};
static_assert(sizeof(PaletteEntry) == 4);

using Palette = std::vector<PaletteEntry>;

// Red in the low byte, then green, then blue.
using ColorRef = uint32_t;

// Rows lie bottom-up: memory row 0 is the bottom of the picture. Accessors that take (x, y) count y
// from the top. Each row is padded to a multiple of 4 bytes. 1-bit pixels are packed most
// significant bit first; 24-bit pixels are blue, green, red. Resolutions are dots per inch and
// never 0 (0 becomes 1). Operations that fail return false or null and leave the reason in the
// package's last error. Not copyable; no locks.
class CKIPImage {
 public:
  CKIPImage() = default;
  CKIPImage(const CKIPImage&) = delete;
  CKIPImage& operator=(const CKIPImage&) = delete;

  virtual ~CKIPImage() = default;
  virtual void Clear();
  virtual std::string GetLastErrorText() const;
  virtual bool IsValid() const;
  // Bytes of pixels and palette.
  virtual uint32_t GetTotalSize() const;
  virtual bool Copy(const CKIPImage& source);
  // The same geometry and palette; without `copyPixels` the new image keeps the fill of a new one.
  // Null if there is no memory or this image is not valid.
  virtual std::unique_ptr<CKIPImage> Clone(bool copyPixels) const;
  // Moves everything out of `source`, which is deleted if asked.
  virtual void TakeOver(CKIPImage* source, bool deleteSource);
  virtual void TakeExtra(CKIPImage& source);
  // Both must be valid and of the same number of bytes.
  virtual bool CopyPixelsFrom(const CKIPImage& source);
  struct CreateArguments {
    std::string name;
    uint32_t width = 0;
    uint32_t height = 0;
    uint32_t xResolution = 1;
    uint32_t yResolution = 1;
    uint32_t bitsPerPixel = 24;
  };
  virtual bool Create(const CreateArguments& arguments);
  virtual bool CreateLike(const CKIPImage& source);
  virtual bool Create(uint32_t width, uint32_t height, uint32_t bitsPerPixel);
  virtual bool Create(uint32_t width, uint32_t height, uint32_t xResolution, uint32_t yResolution,
                      uint32_t bitsPerPixel);
  // Replaces the pixels, filled with white: all bits set, or at 8 bits the palette's index nearest
  // to white. Leaves an existing palette in place. Refuses sizes whose pixels take more than 32
  // bits to count. Without memory the image is left invalid, and nothing is reported.
  virtual bool Create(const std::string& name, uint32_t width, uint32_t height,
                      uint32_t xResolution, uint32_t yResolution, uint32_t bitsPerPixel);
  // Like Create, but only the padding of the rows is filled: for a caller that writes every pixel.
  bool CreateUnfilled(const CreateArguments& arguments);
  // Makes `target` of the rectangle's size and copies the part of the rectangle that lies inside.
  virtual bool CopyRect(CKIPImage& target, int32_t left, int32_t top, uint32_t width,
                        uint32_t height) const;
  virtual bool LoadFromResource(const std::string& resourceName);
  virtual bool LoadFromResource(uint16_t resourceId);
  // Drawing; source rectangles count y from the top of the picture.
  virtual bool BitBlt(platform::DeviceContext target, int x, int y, int width, int height,
                      int sourceX, int sourceY) const;
  virtual bool StretchBlt(platform::DeviceContext target, int x, int y, int width, int height,
                          int sourceX, int sourceY, int sourceWidth, int sourceHeight) const;
  virtual bool Draw(platform::DeviceContext target, int x, int y, int width, int height) const;
  virtual bool StretchDIBits(platform::DeviceContext target, int x, int y, int width, int height,
                             int sourceX, int sourceY, int sourceWidth, int sourceHeight) const;

  void GetSize(uint32_t* width, uint32_t* height) const;
  void GetResolution(uint32_t* x, uint32_t* y) const;
  void SetResolution(uint32_t x, uint32_t y);
  void GetResolutionPerMetre(uint32_t* x, uint32_t* y) const;
  void SetResolutionPerMetre(uint32_t x, uint32_t y);

  bool GetPaletteEntry(uint32_t index, PaletteEntry* out) const;
  void SetPalette(Palette entries) { palette_ = std::move(entries); }
  const Palette& palette() const { return palette_; }
  Palette& palette() { return palette_; }

  // Exact match anywhere first, then the smallest squared distance, the earlier entry on a tie.
  // False without a palette.
  bool FindNearestPaletteIndex(const PaletteEntry& colour, uint32_t* index) const;
  bool MapToNearestPaletteColour(const PaletteEntry& colour, PaletteEntry* out) const;
  bool FindNearestPaletteIndexRgb(ColorRef colour, uint32_t* index) const;

  // Unchecked.
  bool GetBit(uint32_t x, uint32_t y) const;
  void SetBit(uint32_t x, uint32_t y, bool value);
  void GetByte(uint32_t x, uint32_t y, uint8_t* out) const;
  void SetByte(uint32_t x, uint32_t y, uint8_t value);
  // Below 24 bits the nearest palette colour.
  void SetRgb(uint32_t x, uint32_t y, ColorRef colour);
  void SetBgr(uint32_t x, uint32_t y, uint32_t packed);  // blue in the low byte
  // False if the pixel's value has no palette entry.
  bool GetColor(uint32_t x, uint32_t y, PaletteEntry* out) const;
  // Checked, with its reasons in the last error.
  bool GetColorChecked(uint32_t x, uint32_t y, PaletteEntry* out) const;

  // True for 8 bits with a palette whose every entry has red = green = blue.
  bool IsGrey() const;

  uint32_t width() const { return width_; }
  uint32_t height() const { return height_; }
  uint32_t bitsPerPixel() const { return bitsPerPixel_; }
  uint32_t colorCount() const { return static_cast<uint32_t>(palette_.size()); }
  uint32_t rowPadding() const { return rowPadding_; }
  uint32_t stride() const { return stride_; }      // bytes per row, padding included
  uint32_t dataSize() const { return dataSize_; }  // stride x height
  uint32_t xResolution() const { return xResolution_; }
  uint32_t yResolution() const { return yResolution_; }

  // Pixels in memory order; null if the image is not valid.
  uint8_t* bits() { return bits_.get(); }
  const uint8_t* bits() const { return bits_.get(); }
  uint8_t* MemoryRow(uint32_t row) { return bits_.get() + size_t{row} * stride_; }
  const uint8_t* MemoryRow(uint32_t row) const { return bits_.get() + size_t{row} * stride_; }
  // The row of pixels that accessors call `y`.
  uint8_t* PictureRow(uint32_t y) { return MemoryRow(height_ - 1 - y); }
  const uint8_t* PictureRow(uint32_t y) const { return MemoryRow(height_ - 1 - y); }

  uint32_t fileFormat = 0;  // of the file last read or written: 1 BMP, 3 JPEG, 5 TIFF, 0 unknown
  std::string name;
  uint32_t fileSize = 0;  // bytes, 0 unknown
  bool flipped = false;   // drawn with the rows reversed
  AttachedBlock extra;

 private:
  bool CreateLike(const CKIPImage& source, bool fill);
  bool Allocate(const CreateArguments& arguments);
  void FillRowPadding();
  uint8_t FillByte() const;
  void CopyPixels(CKIPImage& target, uint32_t targetX, uint32_t targetY, uint32_t x, uint32_t y,
                  uint32_t count) const;
  bool LoadFromResource(std::span<const uint8_t> dib, uint32_t systemError);
  bool DrawPart(platform::DeviceContext target, const platform::DrawRect& to,
                platform::DrawRect from) const;

  uint32_t width_ = 0;
  uint32_t height_ = 0;
  uint32_t xResolution_ = 0;
  uint32_t yResolution_ = 0;
  uint32_t bitsPerPixel_ = 24;
  Palette palette_;
  uint32_t rowPadding_ = 0;
  uint32_t stride_ = 0;
  uint32_t dataSize_ = 0;
  std::unique_ptr<uint8_t[]> bits_;
};

}  // namespace zyr
