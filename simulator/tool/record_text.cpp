#include "simulator/tool/record_text.h"

#include <cstdio>

namespace zyr::simulator {
namespace {

std::string Hexadecimal(uint32_t value) {
  char text[16];
  std::snprintf(text, sizeof text, "0x%02X", static_cast<unsigned>(value));
  return text;
}

const char* FamilyName(uint32_t family) { return family == kFamily2000 ? "2000" : "303"; }

const char* StateName(uint32_t state) {
  switch (state) {
    case kPlugged:
      return "plugged";
    case kStarted:
      return "started";
    default:
      return "leaving";
  }
}

}  // namespace

std::string IdentityText(Family family, const std::string& instance) {
  return std::string("USB\\VID_082E&PID_") + (family == kFamily2000 ? "2000" : "1005") + "\\" +
         instance;
}

std::string StatusLine(const StatRecord& record) {
  std::string line = record.instance;
  const auto add = [&line](const char* name, const std::string& value) {
    line += std::string(" ") + name + "=" + value;
  };
  const auto number = [&add](const char* name, uint64_t value) {
    add(name, std::to_string(value));
  };
  add("family", FamilyName(record.family));
  add("size", std::string(1, static_cast<char>('A' + record.size)));
  add("calls", record.generation == kPipeDriver ? "pipes" : "endpoints");
  add("memory", record.hasMemory != 0 ? "yes" : "no");
  number("seed", record.seed);
  number("exposure", record.exposure);
  add("state", StateName(record.state));
  add("armed", record.armed != 0 ? "yes" : "no");
  number("handles", record.handles);
  number("transfers", record.statistics.transfers);
  number("resets", record.statistics.resets);
  number("exposures", record.statistics.exposures);
  number("frames", record.statistics.framesRead);
  number("bytes-in", record.statistics.bytesIn);
  number("bytes-out", record.statistics.bytesOut);
  number("power", record.commanded.power);
  number("threshold", record.commanded.threshold);
  add("sensitivity", Hexadecimal(record.commanded.sensitivity));
  number("integration", record.commanded.integrationTime);
  add("size-command", Hexadecimal(record.commanded.sizeCommand));
  return line + "\n";
}

std::string SystemErrorText(uint32_t error) {
  switch (error) {
    case kBusBadRecord:
      return "this zyrsim and the installed driver do not match (error 87).";
    case kBusStillLeaving:
      return "the last sensor of that name is still leaving (error 170).";
    case kBusNoSuchSensor:
      return "it is not plugged in any more (error 1168).";
    case kBusNoMemory:
      return "the driver gets no memory (error 1450).";
    default:
      return "system error " + std::to_string(error) + ".";
  }
}

}  // namespace zyr::simulator
