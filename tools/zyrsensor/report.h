// The words that zyrsensor prints.
#pragma once

#include <string>

#include "hardware/device/device_2000.h"
#include "hardware/result.h"
#include "tools/zyrsensor/frame_picture.h"

namespace zyr {

struct SensorEntry {
  std::string name;  // of the family
  std::string instanceId;
  std::string sensorId;

  friend bool operator==(const SensorEntry&, const SensorEntry&) = default;
};

// "2000     CCD0000001D      USB\VID_082E&PID_2000\0001", without line end.
std::string DescribeSensor(const SensorEntry& sensor);

// Properties, memory and defects, a line each.
std::string DescribeDevice(Device2000& device);

// "no sensor answered (0x8AAA2004): The ..." from a result and the last error.
std::string DescribeFailure(const std::string& what, Result result);

std::string DescribeDifference(const Difference& difference);

}  // namespace zyr
