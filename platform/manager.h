// The TWAIN data source manager that loaded this module.
#pragma once

#include <cstdint>

namespace zyr::platform {

// Calls the manager's DSM_Entry and then wakes the calling thread's message loop, since an
// application that sleeps in it would not look for the manager's notification otherwise. `origin`
// and `destination` are TW_IDENTITY records, `data` may be null. The manager is looked up at each
// call: TWAINDSM.dll if the process has it loaded, else TWAIN_32.DLL. False if there is no manager;
// its own answer is of no use here.
bool CallManager(void* origin, void* destination, uint32_t dataGroup, uint16_t dataArgumentType,
                 uint16_t message, void* data);

}  // namespace zyr::platform
