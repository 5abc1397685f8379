#include "platform/host/host.h"

namespace zyr::platform::host {

void ResetAll() {
  ResetThreads();  // first: they may use the rest
  ResetFiles();
  ClearRegistry();
  ResetGlobalMemory();
  ResetClock();
  ResetMessages();
  ResetPrompts();
  ResetManager();
  ResetEscapeKey();
  ResetProgressWindows();
  ResetDrawing();
  ResetResources();
  ResetShell();
  ResetSounds();
  ResetClipboard();
  ResetDirectories();
  ResetDrives();
  ResetVersions();
  ResetSystemInfo();
  ResetUsbDrivers();
  ResetDeviceBus();
  ResetWaitCursor();
  ResetWindowPlacements();
  ResetPasswordHash();
}

}  // namespace zyr::platform::host
