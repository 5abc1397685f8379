// Push buttons with a picture before their caption.
#pragma once

#include <windows.h>

#include <memory>
#include <vector>

namespace zyr {

enum class ButtonIcon {
  kAcquire,
  kAcquireSeries,
  kSelectSensor,
  kDeleteSelected,
  kDeleteAll,
  kOptions,
  kThumbnails,
  kHelp,
  kManualTrigger,
  kReturn,
  kCancel,
  kStop,
  kFlip,
  kRotate,
  kEnhance,
  kUndo,
  kAccept,
};

// The pictures' width and height in pixels: by the screen's scale, and no smaller than the letters
// beside them, which are so high.
int ButtonIconSize(int captionHeight);

// Gives ordinary push buttons their pictures, pale while the button is disabled. Lives as long as
// the buttons show them. User-interface thread only.
class ButtonIcons {
 public:
  ButtonIcons();
  ~ButtonIcons();
  ButtonIcons(const ButtonIcons&) = delete;
  ButtonIcons& operator=(const ButtonIcons&) = delete;

  // Once more with another icon: replaces the picture.
  void Set(HWND button, ButtonIcon icon);

 private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
};

}  // namespace zyr
