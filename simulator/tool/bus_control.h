// What zyrsim needs of Windows.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "simulator/bus_protocol.h"

namespace zyr::simulator {

// The control device of the bus.
class BusControl {
 public:
  virtual ~BusControl() = default;
  // Sends a code and waits for the answer. 0 or a system error number. `output` comes with the room
  // that there is for the answer, and has its size afterwards.
  virtual uint32_t Send(BusCode code, const std::vector<uint8_t>& input,
                        std::vector<uint8_t>* output) = 0;
};

// Windows with or without the bus on it.
class Machine {
 public:
  virtual ~Machine() = default;

  // Null if the bus is not installed or does not run.
  virtual std::unique_ptr<BusControl> OpenBus() = 0;

  // Installing returns when the bus runs; removing, when it is gone. An empty text, or what failed.
  virtual std::string Install(uint32_t driverVersion) = 0;
  virtual std::string Remove() = 0;
  // The file's major version; 0 if it is not there.
  virtual uint32_t InstalledDriverVersion() = 0;

  virtual void Sleep(uint32_t milliseconds) = 0;
};

}  // namespace zyr::simulator
