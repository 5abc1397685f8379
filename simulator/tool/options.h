// The command line of zyrsim.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "simulator/sensor.h"

namespace zyr::simulator {

enum class SimCommand {
  kHelp,
  kInstall,
  kRemove,
  kPlug,
  kUnplug,
  kLoad,
  kExpose,
  kFault,
  kStat,
  kScene,
};

struct SimOptions {
  SimCommand command = SimCommand::kHelp;
  std::string error;  // not empty: what is wrong with the command line

  uint32_t driverVersion = 3;
  // As its record has it; empty: the one sensor that is plugged in, or a new one's first free.
  std::string instance;
  Family family = kFamily2000;
  Size size = kSizeD;
  uint64_t seed = 1;
  bool noMemory = false;
  Timing timing;
  uint64_t patience = 2'000'000;  // of Setup
  std::string frame;              // a picture file; empty: the phantom
  bool signal = false;            // the picture is bright where the rays come through
  std::optional<uint64_t> exposure;
  uint32_t waitSeconds = 0;  // for the sensor to be armed
  Fault fault;
  std::string out;
};

SimOptions ParseSimOptions(const std::vector<std::string>& arguments);
extern const char kSimHelp[];

}  // namespace zyr::simulator
