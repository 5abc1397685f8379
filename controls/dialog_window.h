// What the module's dialogs have in common as windows.
#pragma once

#include <windows.h>

#include <string>

#include "platform/messages.h"

namespace zyr {

// The top-level window of an owner that an application has named, null for what cannot be one:
// applications pass null, the desktop and handles that are long gone.
HWND UsableOwner(platform::Window owner);

std::string WindowText(HWND window);
int WindowHeight(HWND window);
// Anew, with nothing kept of what was painted: in another width texts break into other lines.
// Sizes below nothing are nothing.
void PlaceWindow(HWND window, int left, int top, int width, int height);
// With its frame, where it stands.
void ResizeWindow(HWND window, LONG width, LONG height);

// Moves controls of a dialog, all at once when the object goes.
class ControlMoves {
 public:
  // `flags` of SetWindowPos, besides those that every move has.
  ControlMoves(HWND dialog, int most, UINT flags = 0);
  ~ControlMoves();
  ControlMoves(const ControlMoves&) = delete;
  ControlMoves& operator=(const ControlMoves&) = delete;

  // Sizes below nothing are nothing.
  void Move(int control, const RECT& to);

 private:
  HWND dialog_;
  UINT flags_;
  HDWP moves_;
};

// Gives a control of a dialog the keyboard, and a button the looks of the one that Enter presses.
void MoveFocusTo(HWND control);

// Puts translations in the place of the captions of a dialog and its controls.
void TranslateCaptions(HWND dialog);

// The part of the window's screen that belongs to windows.
RECT WorkAreaOf(HWND window);
// `client`, with the window's frame, as far as that screen has room for it.
SIZE WithFrameOnScreen(HWND window, SIZE client);
// Answers WM_GETMINMAXINFO: the user makes the window no smaller than that, with its frame.
void SetLeastSize(LPARAM minMaxInfo, SIZE least);

// In the middle of the owner's screen, or of its own without one, and no larger than that.
void CenterOnScreen(HWND window, HWND owner);
// In the middle of the owner, if that can be seen; otherwise the same.
void CenterAbove(HWND window, HWND owner);

}  // namespace zyr
