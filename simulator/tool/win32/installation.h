// The bus driver and the sensors' driver file in this Windows. Needs an administrator.
#pragma once

#include <cstdint>
#include <string>

namespace zyr::simulator {

// The files are looked for in the folder "simulator" beside the program. An empty text, or what
// failed.
std::string InstallBus(uint32_t driverVersion);
std::string RemoveBus();

// The major version of the installed sensors' driver file; 0 if it is not there.
uint32_t InstalledVersion();

}  // namespace zyr::simulator
