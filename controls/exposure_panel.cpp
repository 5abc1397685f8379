#include "controls/exposure_panel.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <iterator>
#include <sstream>
#include <vector>

#include "controls/dialog_font.h"
#include "controls/dialog_window.h"
#include "controls/paint.h"
#include "controls/vector_icon.h"
#include "controls/window_class.h"
#include "resources/resource.h"

namespace zyr {
namespace {

constexpr COLORREF kSurface = RGB(0x2C, 0x77, 0x57);
constexpr COLORREF kInk = RGB(0xFF, 0xFF, 0xFF);
constexpr wchar_t kFace[] = L"Arial";
constexpr int kLeastFont = 8;     // pixels
constexpr int kWorthOfCalm = 65;  // percent of the largest font that fewer lines are worth
constexpr size_t kMostCalmLines = 4;

// The sign is a dot from which a pulse goes out: rings that fade. In halves of the sign's size.
struct Ring {
  double radius;
  double halfWidth;
  double strength;
};
constexpr double kDot = 0.24;
constexpr Ring kRings[] = {{0.44, 0.045, 0.85}, {0.67, 0.04, 0.55}, {0.9, 0.035, 0.3}};

// Where sign and text go.
struct Places {
  POINT signAt;
  int signSize;
  RECT text;
};

// Beside each other where the window is wide.
bool IsWide(const RECT& client) { return client.right > 2 * client.bottom; }

int MarginOf(const RECT& client) {
  return std::max<int>(std::min(client.right, client.bottom) / 12, 1);
}

Places Arrange(const RECT& client) {
  const int width = client.right;
  const int height = client.bottom;
  const int margin = MarginOf(client);
  Places places;
  if (IsWide(client)) {
    const int size = std::max(std::min(height - 2 * margin, width / 5), 0);
    places.signAt = {2 * margin, (height - size) / 2};
    places.signSize = size;
    places.text = {3 * margin + size, margin, width - 2 * margin, height - margin};
  } else {
    const int size = std::max(std::min(width, height) * 3 / 10, 0);
    places.signAt = {(width - size) / 2, margin};
    places.signSize = size;
    places.text = {margin, 2 * margin + size, width - margin, height - margin};
  }
  return places;
}

// Puts sign and text, now that its height is known, in the middle together.
void Gather(Places& places, const RECT& client, int textHeight) {
  const int room = static_cast<int>(places.text.bottom - places.text.top);
  const int spare = std::max(room - textHeight, 0);
  places.text.top += spare / 2;
  if (!IsWide(client)) places.signAt.y += spare / 2;
}

double Coverage(double distance) { return std::clamp(0.5 - distance, 0.0, 1.0); }

// How much ink a point has, `distance` pixels from the middle.
double InkAt(double distance, double half) {
  double ink = Coverage(distance - kDot * half);
  for (const Ring& ring : kRings) {
    const double fromRing = std::abs(distance - ring.radius * half) - ring.halfWidth * half;
    ink = std::max(ink, ring.strength * Coverage(fromRing));
  }
  return ink;
}

uint32_t PixelOf(double ink) {
  const auto channel = [&](BYTE surface, BYTE full) {
    return static_cast<uint32_t>(std::lround(surface + (full - surface) * ink));
  };
  return channel(GetRValue(kSurface), GetRValue(kInk)) << 16 |
         channel(GetGValue(kSurface), GetGValue(kInk)) << 8 |
         channel(GetBValue(kSurface), GetBValue(kInk));
}

void DrawSign(HDC dc, POINT at, int size) {
  if (size <= 0) return;
  std::vector<uint32_t> pixels;
  pixels.reserve(static_cast<size_t>(size) * static_cast<size_t>(size));
  const double half = size / 2.0;
  for (int row = 0; row < size; ++row) {
    for (int column = 0; column < size; ++column) {
      pixels.push_back(PixelOf(InkAt(std::hypot(column + 0.5 - half, row + 0.5 - half), half)));
    }
  }
  DrawIconPixels(dc, at.x, at.y, size, pixels);
}

LOGFONTW BoldArial(int height) {
  LOGFONTW description = {};
  description.lfHeight = -height;
  description.lfWeight = FW_BOLD;
  description.lfQuality = CLEARTYPE_QUALITY;
  std::copy(std::begin(kFace), std::end(kFace), description.lfFaceName);
  return description;
}

int LineHeight(HDC dc) {
  TEXTMETRICA metrics = {};
  GetTextMetricsA(dc, &metrics);
  return static_cast<int>(metrics.tmHeight);
}

int WidthOf(HDC dc, const std::string& text) {
  SIZE size = {};
  GetTextExtentPoint32A(dc, text.c_str(), static_cast<int>(text.size()), &size);
  return static_cast<int>(size.cx);
}

// Lines that fit the width as far as words do. The system would also break at hyphens, and "X-ray"
// is to stay whole.
std::vector<std::string> LinesOf(HDC dc, const std::string& text, int width) {
  std::vector<std::string> lines;
  std::istringstream words(text);
  for (std::string word; words >> word;) {
    const std::string longer = lines.empty() ? word : lines.back() + ' ' + word;
    if (!lines.empty() && WidthOf(dc, longer) <= width) {
      lines.back() = longer;
    } else {
      lines.push_back(word);
    }
  }
  return lines;
}

// Whether so few lines of that font hold the text.
bool Fits(HDC dc, const std::string& text, SIZE room, size_t mostLines, int fontHeight) {
  const Font font(BoldArial(fontHeight));
  const HGDIOBJ previous = SelectObject(dc, font.handle());
  const std::vector<std::string> lines = LinesOf(dc, text, room.cx);
  const bool fits =
      lines.size() <= mostLines && static_cast<int>(lines.size()) * LineHeight(dc) <= room.cy &&
      std::all_of(lines.begin(), lines.end(),
                  [&](const std::string& line) { return WidthOf(dc, line) <= room.cx; });
  SelectObject(dc, previous);
  return fits;
}

// The largest font, or the least one if none fits.
int FittingFont(HDC dc, const std::string& text, SIZE room, size_t mostLines) {
  int fits = kLeastFont;
  int tooLarge = std::max(static_cast<int>(room.cy), kLeastFont) + 1;
  while (tooLarge - fits > 1) {
    const int middle = (fits + tooLarge) / 2;
    (Fits(dc, text, room, mostLines, middle) ? fits : tooLarge) = middle;
  }
  return fits;
}

// Words that belong together stay on a line as long as the letters lose little by it.
int CalmFont(HDC dc, const std::string& text, SIZE room) {
  const int largest = FittingFont(dc, text, room, text.size());
  for (size_t lines = 1; lines < kMostCalmLines; ++lines) {
    const int font = FittingFont(dc, text, room, lines);
    if (font * 100 >= largest * kWorthOfCalm) return font;
  }
  return largest;
}

void DrawLines(HDC dc, const std::vector<std::string>& lines, int step, RECT place) {
  SetBkMode(dc, TRANSPARENT);
  SetTextColor(dc, kInk);
  for (const std::string& line : lines) {
    DrawTextA(dc, line.c_str(), static_cast<int>(line.size()), &place,
              DT_CENTER | DT_SINGLELINE | DT_NOPREFIX);
    place.top += step;
  }
}

void PaintCall(HDC dc, const RECT& client, const std::string& text) {
  FillArea(dc, client, kSurface);
  Places places = Arrange(client);
  const SIZE room = {places.text.right - places.text.left, places.text.bottom - places.text.top};
  const Font font(BoldArial(CalmFont(dc, text, room)));
  const HGDIOBJ previous = SelectObject(dc, font.handle());
  const std::vector<std::string> lines = LinesOf(dc, text, room.cx);
  const int step = LineHeight(dc);
  Gather(places, client, static_cast<int>(lines.size()) * step);
  DrawLines(dc, lines, step, places.text);
  SelectObject(dc, previous);
  DrawSign(dc, places.signAt, places.signSize);
}

void Paint(HWND window) {
  const BufferedPaint paint(window);
  if (paint.dc() == nullptr) return;
  RECT client;
  GetClientRect(window, &client);
  PaintCall(paint.dc(), client, WindowText(window));
}

LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_PAINT:
      try {
        Paint(window);
      } catch (...) {  // out of memory: the picture stays as it is
      }
      return 0;
    case WM_ERASEBKGND:
      return 1;
    case WM_SIZE:
    case WM_SETTEXT:
      InvalidateRect(window, nullptr, FALSE);
      break;
    default:
      break;
  }
  return DefWindowProcA(window, message, wParam, lParam);
}

}  // namespace

struct ExposurePanel::Impl {
  // Two dialogs can be there for a moment, one of them on its way out.
  std::shared_ptr<const WindowClass> windowClass =
      SharedWindowClass(EXPOSURE_PANEL_CLASS, Procedure);
  HWND window = nullptr;
};

ExposurePanel::ExposurePanel() : impl_(std::make_unique<Impl>()) {}

ExposurePanel::~ExposurePanel() = default;

void ExposurePanel::Attach(HWND window) { impl_->window = window; }

void ExposurePanel::SetText(const std::string& text) {
  if (IsWindow(impl_->window)) SetWindowTextA(impl_->window, text.c_str());
}

}  // namespace zyr
