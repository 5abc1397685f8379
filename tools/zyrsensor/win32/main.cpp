// zyrsensor: see kSensorHelp.
#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <vector>

#include "foundation/log/log.h"
#include "platform/prompt.h"
#include "tools/zyrsensor/capture.h"
#include "tools/zyrsensor/options.h"
#include "tools/zyrsensor/report.h"
#include "tools/zyrsensor/sensors.h"

namespace zyr {
namespace {

constexpr char kLogName[] = "ZYRSensor.Log";

bool StdoutIsConsole() {
  DWORD mode = 0;
  return GetConsoleMode(GetStdHandle(STD_OUTPUT_HANDLE), &mode) != 0;
}

SensorExit List() {
  const std::vector<SensorEntry> sensors = FoundSensors();
  for (const SensorEntry& sensor : sensors) std::printf("%s\n", DescribeSensor(sensor).c_str());
  if (!sensors.empty()) return kSensorDone;
  std::fprintf(stderr, "zyrsensor: There is no sensor.\n");
  return kSensorNone;
}

SensorExit Info(const SensorOptions& options) {
  const Held<Device> device = OpenSensorLike(options.sensor);
  if (device == nullptr) return kSensorNone;
  std::fputs(DescribeDevice(static_cast<Device2000&>(*device)).c_str(), stdout);
  return kSensorDone;
}

// Handles window messages until `deadline`, on the clock of GetTickCount64, but returns as soon as
// the queue is empty again.
void HandleMessages(ULONGLONG deadline) {
  const ULONGLONG now = GetTickCount64();
  const DWORD wait =
      deadline == 0 ? INFINITE : static_cast<DWORD>(deadline - std::min(now, deadline));
  MsgWaitForMultipleObjects(0, nullptr, FALSE, wait, QS_ALLINPUT);
  MSG message{};
  while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE)) DispatchMessageA(&message);
}

void PrintChanges(const std::vector<SensorEntry>& before, const std::vector<SensorEntry>& now) {
  const auto print = [](const char* what, const auto& some, const auto& others) {
    for (const SensorEntry& sensor : some) {
      if (std::find(others.begin(), others.end(), sensor) == others.end())
        std::printf("%s %s\n", what, DescribeSensor(sensor).c_str());
    }
  };
  print("out", before, now);
  print("in ", now, before);
  std::fflush(stdout);
}

SensorExit Watch(const SensorOptions& options) {
  const ULONGLONG deadline =
      options.seconds == 0 ? 0 : GetTickCount64() + options.seconds * ULONGLONG{1000};
  std::vector<SensorEntry> known;
  do {
    std::vector<SensorEntry> now = FoundSensors();
    PrintChanges(known, now);
    known = std::move(now);
    HandleMessages(deadline);
  } while (deadline == 0 || GetTickCount64() < deadline);
  return kSensorDone;
}

SensorExit TriggerSensor(const SensorOptions& options) {
  bool isThere = false;
  if (TriggerSensorLike(options.sensor, &isThere)) return kSensorDone;
  return isThere ? kSensorFailed : kSensorNone;
}

SensorExit RunWithSensors(const SensorOptions& options) {
  const bool isConsole = StdoutIsConsole();
  platform::PrintPrompts();
  const bool started = StartHardware([=](const std::string& text, int32_t code, int32_t percent) {
    ShowProgress(text, code, percent, isConsole);
  });
  SensorExit exit = kSensorFailed;
  if (started && options.command == SensorCommand::kList) exit = List();
  if (started && options.command == SensorCommand::kInfo) exit = Info(options);
  if (started && options.command == SensorCommand::kCapture) exit = Capture(options);
  if (started && options.command == SensorCommand::kWatch) exit = Watch(options);
  StopHardware();
  return exit;
}

SensorExit Run(const SensorOptions& options) {
  if (options.help) {
    std::fputs(kSensorHelp, stdout);
    return kSensorDone;
  }
  if (!options.error.empty()) {
    std::fprintf(stderr, "zyrsensor: %s Try --help.\n", options.error.c_str());
    return kSensorUsage;
  }
  if (!options.log.empty()) Log().Open(options.log, kLogName);
  if (options.command == SensorCommand::kTrigger) return TriggerSensor(options);
  return RunWithSensors(options);
}

}  // namespace
}  // namespace zyr

int main(int argc, char** argv) {
  return zyr::Run(zyr::ParseSensorOptions({argv + 1, argv + argc}));
}
