// The driver's one lock and the two kinds of its devices. Everything that belongs to a sensor or to
// the list of them is read and written under the lock. No call of the system that comes back into
// this driver is made while it is held: completing a request, reporting a change, deleting a
// device.
#pragma once

#include "simulator/driver/ddk.h"

namespace zyr::simulator {

enum DeviceKind : uint32_t { kBusDevice, kSensorDevice };

// At the head of every device extension.
struct DeviceExtension {
  DeviceKind kind;
};

void InitializeLock();

class Guard {
 public:
  Guard();
  ~Guard();
  Guard(const Guard&) = delete;
  Guard& operator=(const Guard&) = delete;

 private:
  KIRQL before_;
};

// Microseconds, from some moment on; never back.
uint64_t Now();
inline constexpr uint64_t kNever = ~uint64_t{0};

// Ends a request whose status the caller has decided on.
NTSTATUS Complete(PIRP irp, NTSTATUS status, ULONG_PTR information = 0);

// A status that DeviceIoControl turns into that system error number; success for 0.
NTSTATUS StatusOfError(uint32_t error);

// The buffers of an I/O control, whichever way the caller's code hands them over. False for codes
// that hand over bare addresses.
struct ControlBuffers {
  uint32_t code;
  uint8_t* input;
  uint32_t inputSize;
  uint8_t* output;
  uint32_t outputSize;
};
bool BuffersOf(PIRP irp, ControlBuffers* buffers);

}  // namespace zyr::simulator
