// What the capture dialog asks of whoever opened it.
#pragma once

#include <cstdint>

#include "settings/settings_list.h"

namespace zyr {

// The notifications may come back into the dialog, and may even delete it, before they return.
class CaptureDialogOwner {
 public:
  virtual ~CaptureDialogOwner() = default;
  // Images are ready to be fetched.
  virtual void NotifyXferReady() = 0;
  // The user or the dialog is done.
  virtual void NotifyCloseDSReq() = 0;
  // Whether the application has been told of images and has not fetched them all: what is captured
  // meanwhile goes out with them.
  virtual bool IsDelivering() const = 0;
  // What goes out from now on has so many bits, 8 or 16; an image that is on its way stays as it is.
  virtual void SetGrayscaleDepth(uint32_t bits) = 0;
  // What has been negotiated with the application. Null does nothing.
  virtual void FillSettingsList(SettingsListControl* list) const = 0;
};

}  // namespace zyr
