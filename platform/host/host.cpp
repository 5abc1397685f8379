#include "platform/host/host.h"

namespace zyr::platform::host {

void ResetAll() {
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
  ResetDirectories();
  ResetVersions();
  ResetSystemInfo();
  ResetUsbDrivers();
  ResetDeviceBus();
  ResetWaitCursor();
  ResetWindowPlacements();
}

}  // namespace zyr::platform::host
