// What the capture dialog asks of whoever opened it.
#pragma once

namespace zyr {

// Both may come back into the dialog, and may even delete it, before they return.
class CaptureDialogOwner {
 public:
  virtual ~CaptureDialogOwner() = default;
  // Images are ready to be fetched.
  virtual void NotifyXferReady() = 0;
  // The user or the dialog is done.
  virtual void NotifyCloseDSReq() = 0;
};

}  // namespace zyr
