#include "platform/drawing.h"

#include <algorithm>
#include <cstring>

#include "platform/win32/system.h"

namespace zyr::platform {
namespace {

struct Info {
  BITMAPINFOHEADER header;
  RGBQUAD colors[256];
};

Info InfoOf(const DibView& dib) {
  Info info = {};
  info.header.biSize = sizeof info.header;
  info.header.biWidth = static_cast<LONG>(dib.width);
  info.header.biHeight = static_cast<LONG>(dib.height);
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
  const Info info = InfoOf(dib);
  const int lines = StretchDIBits(
      static_cast<HDC>(target), to.x, to.y, to.width, to.height, from.x, from.y, from.width,
      from.height, dib.bits, reinterpret_cast<const BITMAPINFO*>(&info), DIB_RGB_COLORS, SRCCOPY);
  return lines != 0 && lines != static_cast<int>(GDI_ERROR);
}

}  // namespace zyr::platform
