#include "platform/drawing.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "platform/win32/system.h"

namespace zyr::platform {
namespace {

struct Info {
  BITMAPINFOHEADER header;
  RGBQUAD colors[256];
};

// `mirrored` calls the rows top-down, which turns the picture over: where a source rectangle of
// negative height begins is nowhere said, and drawing fails when it is not there.
Info InfoOf(const DibView& dib, bool mirrored) {
  Info info = {};
  info.header.biSize = sizeof info.header;
  info.header.biWidth = static_cast<LONG>(dib.width);
  info.header.biHeight = static_cast<LONG>(mirrored ? 0 - dib.height : dib.height);
  info.header.biPlanes = 1;
  info.header.biBitCount = static_cast<WORD>(dib.bitsPerPixel);
  info.header.biCompression = BI_RGB;
  if (dib.palette != nullptr && dib.bitsPerPixel <= 8) {
    info.header.biClrUsed = std::min<DWORD>(dib.colorCount, 1u << dib.bitsPerPixel);
    std::memcpy(info.colors, dib.palette, info.header.biClrUsed * sizeof(RGBQUAD));
  }
  return info;
}

}  // namespace

bool DrawDib(DeviceContext target, const DrawRect& to, const DibView& dib, const DrawRect& from) {
  if (target == nullptr || dib.bits == nullptr) return false;
  const Info info = InfoOf(dib, from.height < 0);
  const int64_t height = std::abs(int64_t{from.height});
  // Counted in the order of the rows in memory, either way up.
  const int64_t firstRow = dib.height - from.y - height;
  const int lines =
      StretchDIBits(static_cast<HDC>(target), to.x, to.y, to.width, to.height, from.x,
                    static_cast<int>(firstRow), from.width, static_cast<int>(height), dib.bits,
                    reinterpret_cast<const BITMAPINFO*>(&info), DIB_RGB_COLORS, SRCCOPY);
  return lines != 0 && lines != static_cast<int>(GDI_ERROR);
}

}  // namespace zyr::platform
