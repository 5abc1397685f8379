// Test control of the resources double: a table that the test fills. Names compare without regard
// to case.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/resources.h"

namespace zyr::platform::host {

ResourceModule HostProgramResources();

void AddBitmap(ResourceModule module, const std::string& name, std::vector<uint8_t> bytes);
void AddBitmap(ResourceModule module, uint16_t id, std::vector<uint8_t> bytes);

// Empty tables, and the host program is the current module.
void ResetResources();

}  // namespace zyr::platform::host
