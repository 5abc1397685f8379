// What the flow of an acquisition needs of the outside: a data source manager, and a message loop
// that waits.
#pragma once

#include "twain/twain_types.h"

namespace zyr {

class ManagerPort {
 public:
  virtual ~ManagerPort() = default;

  // `source` is null for what the manager itself does. After TWRC_FAILURE the condition code has
  // been asked for.
  virtual TW_UINT16 Call(TW_IDENTITY* source, TW_UINT32 dataGroup, TW_UINT16 dataArgumentType,
                         TW_UINT16 message, void* data) = 0;
  // Of the last call that failed.
  virtual TW_UINT16 conditionCode() const = 0;
};

enum class SourceEvent { kXferReady, kCloseRequest, kTimeout };

// A source that has been opened, by way of its manager.
class OpenSource {
 public:
  OpenSource(ManagerPort& manager, TW_IDENTITY* identity)
      : manager_(manager), identity_(identity) {}

  TW_UINT16 Control(TW_UINT16 dataArgumentType, TW_UINT16 message, void* data) {
    return manager_.Call(identity_, DG_CONTROL, dataArgumentType, message, data);
  }
  TW_UINT16 Image(TW_UINT16 dataArgumentType, TW_UINT16 message, void* data) {
    return manager_.Call(identity_, DG_IMAGE, dataArgumentType, message, data);
  }
  TW_UINT16 conditionCode() const { return manager_.conditionCode(); }

 private:
  ManagerPort& manager_;
  TW_IDENTITY* identity_;
};

}  // namespace zyr
