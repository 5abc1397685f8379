// The command line of zyrsensor.
#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace zyr {

// What the program ends with; the numbers stand in its help.
enum SensorExit {
  kSensorDone = 0,
  kSensorFailed = 1,
  kSensorUsage = 2,
  kSensorNone = 3,
  kSensorNotWritten = 4,
};

enum class SensorCommand { kNone, kList, kInfo, kCapture, kWatch, kTrigger };

struct SensorOptions {
  bool help = false;
  std::string error;  // not empty: what is wrong with the command line

  SensorCommand command = SensorCommand::kNone;
  std::string sensor;     // part of an instance identity; empty: the only one, or the first
  int32_t type = 5;       // an ImageType
  std::string out;        // file of the picture
  std::string allOut;     // folder for the picture of every type
  bool film = false;      // pictures bright where rays were stopped
  std::string reference;  // picture to compare with
  std::vector<std::pair<std::string, std::string>> properties;  // to set ahead of the capture
  uint32_t seconds = 0;   // of watching, 0: until the program is ended
  std::string log;        // folder of a log of all that happens
};

SensorOptions ParseSensorOptions(const std::vector<std::string>& arguments);
extern const char kSensorHelp[];

}  // namespace zyr
