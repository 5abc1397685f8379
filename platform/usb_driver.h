// The kernel driver of a sensor: open, control, close. Every call blocks its thread until the
// driver has answered; two threads may use one handle, and the driver serves them in turn.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace zyr::platform {

using DriverHandle = void*;  // null is none

// For reading and writing, shared with other programs. Null if there is no such device or it does
// not let itself be opened.
DriverHandle OpenDriver(const std::string& path);
// Once for each handle: what was closed may soon be the name of another one. Harmless for null.
void CloseDriver(DriverHandle driver);

struct DriverAnswer {
  bool done = false;
  uint32_t error = 0;  // the system's number if not done; 0 is possible even then
};
// Sends a control code. What the buffers mean, and which way they go, is the code's affair: an
// "output" buffer can carry bytes to the device, so both must be writable memory. They may be the
// same; either may be null with size 0. The driver may fill less than `outputSize` and not tell.
DriverAnswer ControlDriver(DriverHandle driver, uint32_t code, void* input, size_t inputSize,
                           void* output, size_t outputSize);

}  // namespace zyr::platform
