// Test control of the clipboard double.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "platform/messages.h"

namespace zyr::platform::host {

// What was put there last, empty at first, for which window, and how many times something was.
const std::vector<uint8_t>& ClipboardDib();
Window ClipboardOwner();
size_t ClipboardChanges();

// Another program holds the clipboard.
void SetClipboardHeld(bool held);

void ResetClipboard();

}  // namespace zyr::platform::host
