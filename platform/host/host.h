// All test controls.
#pragma once

#include "platform/host/clipboard.h"
#include "platform/host/clock.h"
#include "platform/host/device_bus.h"
#include "platform/host/directories.h"
#include "platform/host/drawing.h"
#include "platform/host/drives.h"
#include "platform/host/escape_key.h"
#include "platform/host/file_version.h"
#include "platform/host/files.h"
#include "platform/host/global_memory.h"
#include "platform/host/manager.h"
#include "platform/host/messages.h"
#include "platform/host/password_hash.h"
#include "platform/host/progress_window.h"
#include "platform/host/prompt.h"
#include "platform/host/registry.h"
#include "platform/host/resources.h"
#include "platform/host/shell.h"
#include "platform/host/sound.h"
#include "platform/host/system_info.h"
#include "platform/host/thread.h"
#include "platform/host/usb_driver.h"
#include "platform/host/wait_cursor.h"
#include "platform/host/window_placement.h"

namespace zyr::platform::host {

// Puts every double into its first state; for SetUp and TearDown of a test. Ask for leaks before.
void ResetAll();

}  // namespace zyr::platform::host
