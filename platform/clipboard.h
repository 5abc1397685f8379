// The clipboard, through which the user takes pictures to other programs. The thread that has the
// windows.
#pragma once

#include "platform/global_memory.h"
#include "platform/messages.h"

namespace zyr::platform {

// Puts a packed bitmap (header, colour table, pixels) in the place of what the clipboard holds, for
// the user's window. The block is taken over: it is the system's afterwards, or freed. False, with
// the clipboard empty or as it was, if it cannot be had: another program holds it, or there is no
// block.
bool PutDibOnClipboard(Window owner, GlobalHandle packedDib);

}  // namespace zyr::platform
