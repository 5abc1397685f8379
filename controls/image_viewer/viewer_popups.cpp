#include "controls/image_viewer/viewer_popups.h"

#include "foundation/support/phrase_lookup.h"
#include "imaging/viewer/image_viewer_control.h"

namespace zyr {
namespace {

class Menu {
 public:
  Menu() : handle_(CreatePopupMenu()) {}
  ~Menu() {
    if (handle_ != nullptr) DestroyMenu(handle_);
  }
  Menu(const Menu&) = delete;
  Menu& operator=(const Menu&) = delete;

  void Add(uint32_t choice, const char* text) {
    AppendMenuA(handle_, MF_STRING, choice, GetPhrase(text).c_str());
  }
  void AddSeparator() { AppendMenuA(handle_, MF_SEPARATOR, 0, nullptr); }
  void AddSubmenu(Menu& submenu, const char* text) {  // which is this menu's from now on
    if (!AppendMenuA(handle_, MF_POPUP, reinterpret_cast<UINT_PTR>(submenu.handle_),
                     GetPhrase(text).c_str())) {
      return;
    }
    submenu.handle_ = nullptr;
  }
  // Of a range of which one is in use.
  void Mark(uint32_t first, uint32_t last, uint32_t choice) {
    CheckMenuRadioItem(handle_, first, last, choice, MF_BYCOMMAND);
  }

  uint32_t Track(HWND owner, POINT at) const {
    return static_cast<uint32_t>(TrackPopupMenuEx(
        handle_, TPM_RETURNCMD | TPM_NONOTIFY | TPM_LEFTALIGN | TPM_TOPALIGN | TPM_LEFTBUTTON, at.x,
        at.y, owner, nullptr));
  }

 private:
  HMENU handle_;
};

constexpr uint32_t kSpotSizes[] = {25, 50, 100, 150, 200};
constexpr const char* kSpotSizeTexts[] = {
    PhraseKey("25 x 25 Pixels"), PhraseKey("50 x 50 Pixels"), PhraseKey("100 x 100 Pixels"),
    PhraseKey("150 x 150 Pixels"), PhraseKey("200 x 200 Pixels")};
constexpr uint32_t kLeastMagnification = 2;
constexpr uint32_t kMostMagnification = 5;
constexpr const char* kMagnificationTexts[] = {
    PhraseKey("Magnify 2 Times"), PhraseKey("Magnify 3 Times"), PhraseKey("Magnify 4 Times"),
    PhraseKey("Magnify 5 Times")};
constexpr uint32_t kMagnificationChoice = 1000;  // plus the magnification

void AddSizes(Menu& menu, uint32_t present) {
  for (size_t i = 0; i < std::size(kSpotSizes); ++i) menu.Add(kSpotSizes[i], kSpotSizeTexts[i]);
  menu.Mark(kSpotSizes[0], kSpotSizes[std::size(kSpotSizes) - 1], present);
}

void AddMagnifications(Menu& menu, uint32_t present) {
  menu.AddSeparator();
  for (uint32_t times = kLeastMagnification; times <= kMostMagnification; ++times) {
    menu.Add(kMagnificationChoice + times, kMagnificationTexts[times - kLeastMagnification]);
  }
  menu.Mark(kMagnificationChoice + kLeastMagnification, kMagnificationChoice + kMostMagnification,
            kMagnificationChoice + present);
}

}  // namespace

uint32_t ChooseOperation(HWND owner, POINT at, uint32_t spectrum) {
  Menu spectrums;
  spectrums.Add(kOperationColorizeStandard, PhraseKey("Spot Colorize - &Standard"));
  spectrums.Add(kOperationColorizeFire, PhraseKey("Spot Colorize - &Fire"));
  spectrums.Add(kOperationColorizeIce, PhraseKey("Spot Colorize - &Ice"));
  spectrums.Add(kOperationColorizeRedGreenBlue, PhraseKey("Spot Colorize - &RedGreenBlue"));
  spectrums.Add(kOperationColorizeGreenRedBlue, PhraseKey("Spot Colorize - &GreenRedBlue"));
  if (spectrum != 0) {
    spectrums.Mark(kOperationColorizeStandard, kOperationColorizeGreenRedBlue, spectrum);
  }

  Menu menu;
  menu.Add(kOperationOriginal, PhraseKey("&Original Image"));
  menu.Add(kOperationCopy, PhraseKey("&Copy Image To Clipboard"));
  menu.AddSeparator();
  menu.Add(kOperationInvert, PhraseKey("&Invert"));
  menu.Add(kOperationAutoBrightnessContrast, PhraseKey("&Auto Brightness/Contrast"));
  menu.Add(kOperationEmboss, PhraseKey("&Emboss"));
  menu.AddSeparator();
  menu.Add(kOperationColorizeStandard, PhraseKey("&Spot Colorize"));
  menu.AddSubmenu(spectrums, PhraseKey("&Other Spot Colorize Spectrums"));
  return menu.Track(owner, at);
}

std::optional<SpotSettings> ChooseSpot(HWND owner, POINT at, const SpotSettings& present) {
  Menu menu;
  AddSizes(menu, present.size);
  if (present.magnification != 0) AddMagnifications(menu, present.magnification);
  const uint32_t choice = menu.Track(owner, at);
  if (choice == 0) return std::nullopt;
  if (choice > kMagnificationChoice) {
    return SpotSettings{present.size, choice - kMagnificationChoice};
  }
  return SpotSettings{choice, present.magnification};
}

}  // namespace zyr
