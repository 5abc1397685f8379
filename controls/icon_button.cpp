#include "controls/icon_button.h"

#include <commctrl.h>

#include <algorithm>
#include <map>

#include "controls/button_icon_design.h"
#include "controls/dialog_font.h"
#include "controls/pixel_icon.h"

namespace zyr {
namespace {

constexpr int kIconSize = 18;  // pixels of a plain screen
constexpr int kGap = 7;        // around it

struct ImageListDeleter {
  using pointer = HIMAGELIST;
  void operator()(HIMAGELIST list) const { ImageList_Destroy(list); }
};
using ImageList = std::unique_ptr<HIMAGELIST, ImageListDeleter>;

Icon IconOf(ButtonIcon design, int size, bool enabled) {
  return IconFromPixels(DrawButtonIcon(design, size, enabled), size);
}

// One picture for each state of a button, in the order of the theme's states.
ImageList ImagesOf(ButtonIcon design, int size) {
  constexpr bool kEnabled[] = {true, true, true, false, true, true};
  ImageList images(ImageList_Create(size, size, ILC_COLOR32 | ILC_MASK, std::size(kEnabled), 0));
  const Icon normal = IconOf(design, size, true);
  const Icon pale = IconOf(design, size, false);
  for (const bool enabled : kEnabled) {
    ImageList_ReplaceIcon(images.get(), -1, (enabled ? normal : pale).get());
  }
  return images;
}

int CaptionHeight(HWND button) {
  const HDC dc = GetDC(button);
  const auto font = reinterpret_cast<HFONT>(SendMessageA(button, WM_GETFONT, 0, 0));
  const HGDIOBJ previous = font != nullptr ? SelectObject(dc, font) : nullptr;
  TEXTMETRICA metrics = {};
  GetTextMetricsA(dc, &metrics);
  if (previous != nullptr) SelectObject(dc, previous);
  ReleaseDC(button, dc);
  return static_cast<int>(metrics.tmHeight);
}

}  // namespace

int ButtonIconSize(int captionHeight) { return std::max(Scaled(kIconSize), captionHeight); }

struct ButtonIcons::Impl {
  std::map<HWND, ImageList> images;
};

ButtonIcons::ButtonIcons() : impl_(std::make_unique<Impl>()) {}
ButtonIcons::~ButtonIcons() = default;

void ButtonIcons::Set(HWND button, ButtonIcon icon) {
  ImageList& shown = impl_->images[button];
  ImageList images = ImagesOf(icon, ButtonIconSize(CaptionHeight(button)));
  const int gap = Scaled(kGap);
  BUTTON_IMAGELIST place = {images.get(), {gap, 0, gap, 0}, BUTTON_IMAGELIST_ALIGN_LEFT};
  // Under one another, captions that begin at the same place are read more easily.
  SetWindowLongPtrA(button, GWL_STYLE, GetWindowLongPtrA(button, GWL_STYLE) | BS_LEFT);
  SendMessageA(button, BCM_SETIMAGELIST, 0, reinterpret_cast<LPARAM>(&place));
  InvalidateRect(button, nullptr, TRUE);
  shown = std::move(images);  // only now is the former list unused
}

}  // namespace zyr
