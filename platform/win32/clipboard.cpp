#include "platform/clipboard.h"

#include "platform/win32/system.h"

namespace zyr::platform {
namespace {

// Programs that watch the clipboard hold it for a moment after each change.
constexpr int kTries = 10;
constexpr DWORD kPause = 20;  // milliseconds

class OpenedClipboard {
 public:
  explicit OpenedClipboard(HWND owner) {
    for (int i = 0; i < kTries && !open_; ++i) {
      if (i != 0) Sleep(kPause);
      open_ = OpenClipboard(owner);
    }
  }
  ~OpenedClipboard() {
    if (open_) CloseClipboard();
  }
  OpenedClipboard(const OpenedClipboard&) = delete;
  OpenedClipboard& operator=(const OpenedClipboard&) = delete;

  bool isOpen() const { return open_; }

 private:
  bool open_ = false;
};

}  // namespace

// Nothing can be put on the clipboard in the name of no window.
bool PutDibOnClipboard(Window owner, GlobalHandle packedDib) {
  if (BlockSize(packedDib) != 0 && IsWindowAlive(owner)) {
    const OpenedClipboard clipboard(static_cast<HWND>(owner));
    if (clipboard.isOpen() && EmptyClipboard() && SetClipboardData(CF_DIB, packedDib) != nullptr) {
      return true;
    }
  }
  FreeBlock(packedDib);
  return false;
}

}  // namespace zyr::platform
