#include "controls/dialog_font.h"

#include <cstring>
#include <cwchar>

#include "platform/resources.h"

namespace zyr {
namespace {

constexpr int kPlainDpi = 96;
constexpr int kPointsPerInch = 72;

// Offsets in an extended dialog template.
constexpr size_t kWidthAt = 22;
constexpr size_t kHeightAt = 24;
constexpr size_t kTextsAt = 26;       // menu, class and title follow each other here
constexpr size_t kFontHeadBytes = 6;  // size, weight, italic and character set
constexpr WORD kOrdinal = 0xFFFF;     // a number stands in place of a text

std::vector<uint8_t> LoadTemplate(WORD id) {
  const auto module = static_cast<HMODULE>(platform::OwnResources());
  const HRSRC found =
      FindResourceW(module, MAKEINTRESOURCEW(id), MAKEINTRESOURCEW(5));  // RT_DIALOG
  const HGLOBAL loaded = found != nullptr ? LoadResource(module, found) : nullptr;
  const auto* bytes =
      loaded != nullptr ? static_cast<const uint8_t*>(LockResource(loaded)) : nullptr;
  if (bytes == nullptr) return {};
  return {bytes, bytes + SizeofResource(module, found)};
}

WORD WordAt(const std::vector<uint8_t>& bytes, size_t at) {
  WORD word;
  std::memcpy(&word, bytes.data() + at, sizeof word);
  return word;
}

// Where the text or number at `at` ends.
size_t TextEnd(const std::vector<uint8_t>& bytes, size_t at) {
  if (WordAt(bytes, at) == kOrdinal) return at + 2 * sizeof(WORD);
  while (WordAt(bytes, at) != 0) at += sizeof(WORD);
  return at + sizeof(WORD);
}

// Controls begin at multiples of four.
size_t Aligned(size_t at) { return (at + 3) / 4 * 4; }

void Append(std::vector<uint8_t>& bytes, const void* added, size_t count) {
  const auto* first = static_cast<const uint8_t*>(added);
  bytes.insert(bytes.end(), first, first + count);
}

}  // namespace

LOGFONTW MessageFont() {
  NONCLIENTMETRICSW metrics = {};
  metrics.cbSize = sizeof metrics;
  SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0);
  return metrics.lfMessageFont;
}

LOGFONTW BoldMessageFont() {
  LOGFONTW font = MessageFont();
  font.lfWeight = FW_BOLD;
  return font;
}

int ScreenDpi() {
  const HDC screen = GetDC(nullptr);
  if (screen == nullptr) return kPlainDpi;
  const int dpi = GetDeviceCaps(screen, LOGPIXELSY);
  ReleaseDC(nullptr, screen);
  return dpi;
}

int Scaled(int pixels) { return MulDiv(pixels, ScreenDpi(), kPlainDpi); }

std::vector<uint8_t> TemplateWithMessageFont(WORD id) {
  const std::vector<uint8_t> original = LoadTemplate(id);
  if (original.empty()) return {};
  size_t fontAt = kTextsAt;
  for (int i = 0; i < 3; ++i) fontAt = TextEnd(original, fontAt);
  const size_t controlsAt = Aligned(TextEnd(original, fontAt + kFontHeadBytes));

  const LOGFONTW font = MessageFont();
  const auto points = static_cast<WORD>(MulDiv(-font.lfHeight, kPointsPerInch, ScreenDpi()));
  const WORD head[3] = {points, FW_NORMAL, static_cast<WORD>(font.lfCharSet << 8)};
  std::vector<uint8_t> changed(original.begin(), original.begin() + fontAt);
  Append(changed, head, sizeof head);
  Append(changed, font.lfFaceName, (std::wcslen(font.lfFaceName) + 1) * sizeof(wchar_t));
  changed.resize(Aligned(changed.size()));
  changed.insert(changed.end(), original.begin() + controlsAt, original.end());
  return changed;
}

SIZE TemplateSize(const std::vector<uint8_t>& dialogTemplate) {
  return {WordAt(dialogTemplate, kWidthAt), WordAt(dialogTemplate, kHeightAt)};
}

}  // namespace zyr
