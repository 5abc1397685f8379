// What enumeration and monitor of the USB bus share.
#pragma once

#include "platform/win32/system.h"

namespace zyr::platform {

// Interfaces of USB devices: every device on the bus has one, whatever driver serves it.
inline constexpr GUID kUsbDeviceInterface = {
    0xA5DCBF10, 0x6530, 0x11D2, {0x90, 0x1F, 0x00, 0xC0, 0x4F, 0xB9, 0x51, 0xED}};

}  // namespace zyr::platform
