// Test control of the USB drivers: what answers behind a device path.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "platform/usb_driver.h"

namespace zyr::platform::host {

// Serves one device; calls come on the threads of the code under test, one call at a time. A call
// may take its own device away: it fails then, whatever it answers.
class FakeDriver {
 public:
  virtual ~FakeDriver() = default;
  virtual DriverAnswer Control(uint32_t code, uint8_t* input, size_t inputSize, uint8_t* output,
                               size_t outputSize) = 0;
};

inline constexpr uint32_t kInvalidHandle = 6;
inline constexpr uint32_t kNotConnected = 1167;

// Paths compare without regard to case. A device that is taken away, or has another put in its
// place, leaves its handles behind: they fail with kNotConnected from then on. OpenDriver of an
// unknown path fails; a call with no handle, or a closed one, fails with kInvalidHandle.
void PutDriver(const std::string& path, std::shared_ptr<FakeDriver> driver);
void TakeDriver(const std::string& path);

// Handles that the code under test has not closed.
size_t OpenDriverHandles();

// Takes all devices away and forgets all handles: closing one later is harmless.
void ResetUsbDrivers();

}  // namespace zyr::platform::host
