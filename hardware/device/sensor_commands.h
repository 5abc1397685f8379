// The commands of a sensor, and its answers, on an open port. There is no framing: an answer
// belongs to a command only by being what is read next.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "hardware/result.h"
#include "hardware/usb/usb_port.h"

namespace zyr {

inline constexpr size_t kMacIdSize = 8;  // bytes
using MacId = std::array<uint8_t, kMacIdSize>;

// None of these is answered; they fail only if they cannot be sent.
Result SendSensorReset(UsbPort& port);
Result SendThreshold(UsbPort& port, uint8_t threshold);
Result SendIntegrationTime(UsbPort& port, uint32_t time);  // ms, 16 bits of it
Result SendSensorSize(UsbPort& port, uint8_t sizeByte);
Result TriggerExposure(UsbPort& port);
// Outside 1 to 7 it sends nothing and returns 1, a success.
Result DetectExposure(UsbPort& port, uint32_t sensitivity);

// The state of the CCD logic is the upper four bits of the block's first byte. `block` keeps its
// content on failure.
using CcdStatus = std::array<uint8_t, 5>;
Result ReadCcdStatus(UsbPort& port, CcdStatus* block);

// `size` bytes of memory from `address` on, of the 303 and of the 2000 family.
Result ReadSensorMemory(UsbPort& port, uint8_t* buffer, uint16_t size, uint16_t address);
Result ReadIdentityMemory(UsbPort& port, uint8_t* buffer, uint16_t size, uint16_t address);

inline constexpr uint32_t kMemoryPresent = 1;
// 1 on success; `status` is then kMemoryPresent, or anything else if there is no identity memory.
// Takes 0.7 s. The last error tells of a failure.
Result CheckMemoryPresent(UsbPort& port, uint32_t* status);
// All zero for a sensor without identity memory. After a failure `mac` may hold anything.
Result ReadMacID(UsbPort& port, MacId* mac);

}  // namespace zyr
