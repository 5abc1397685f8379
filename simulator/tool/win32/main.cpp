// zyrsim: see kSimHelp.
#include <windows.h>

#include <cstdio>

#include "simulator/tool/commands.h"
#include "simulator/tool/win32/bus_port.h"
#include "simulator/tool/win32/installation.h"

namespace zyr::simulator {
namespace {

class ThisMachine : public Machine {
 public:
  std::unique_ptr<BusControl> OpenBus() override { return OpenBusPort(); }
  std::string Install(uint32_t driverVersion) override { return InstallBus(driverVersion); }
  std::string Remove() override { return RemoveBus(); }
  uint32_t InstalledDriverVersion() override { return InstalledVersion(); }
  void Sleep(uint32_t milliseconds) override { ::Sleep(milliseconds); }
};

int Run(const std::vector<std::string>& arguments) {
  const SimOptions options = ParseSimOptions(arguments);
  if (!options.error.empty()) {
    std::fprintf(stderr, "zyrsim: %s Try --help.\n", options.error.c_str());
    return 2;
  }
  ThisMachine machine;
  const SimOutcome outcome = RunSimCommand(options, &machine);
  std::fputs(outcome.report.c_str(), stdout);
  if (outcome.error.empty()) return 0;
  std::fprintf(stderr, "zyrsim: %s\n", outcome.error.c_str());
  return 1;
}

}  // namespace
}  // namespace zyr::simulator

int main(int argc, char** argv) { return zyr::simulator::Run({argv + 1, argv + argc}); }
