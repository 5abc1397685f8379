// Where the settings stand in the registry.
#pragma once

#include "platform/registry.h"

namespace zyr {

inline constexpr platform::RootKey kSettingsRoot = platform::RootKey::kLocalMachine;
inline constexpr char kSettingsKey[] = "SOFTWARE\\ZYR\\TWAIN";

}  // namespace zyr
