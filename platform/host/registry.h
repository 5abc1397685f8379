// Test control of the registry double: a store in memory. Key paths and value names compare without
// regard to case.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/registry.h"

namespace zyr::platform::host {

// Removes all keys, lifts both refusals and sets the counts of calls to 0. Keys that are open stay
// open, and find nothing.
void ClearRegistry();

// The user may not write: keys open for reading only and none can be created.
void DenyRegistryWrites(bool deny);
// Keys open for writing, but every write fails.
void FailRegistryWrites(bool fail);

void PokeValue(RootKey root, const std::string& path, const std::string& name,
               const RegistryValue& value);
void PokeDword(RootKey root, const std::string& path, const std::string& name, uint32_t number);
// With its terminating zero.
void PokeString(RootKey root, const std::string& path, const std::string& name,
                const std::string& text);
std::optional<RegistryValue> PeekValue(RootKey root, const std::string& path,
                                       const std::string& name);
bool RemoveValue(RootKey root, const std::string& path, const std::string& name);
bool HasKey(RootKey root, const std::string& path);

struct StoredValue {
  std::string path;  // of the key
  std::string name;
  RegistryValue value;
};
// All values under a root, in alphabetical order of path and name.
std::vector<StoredValue> DumpRegistry(RootKey root);

// Keys that are open now.
int OpenRegistryKeys();
// Values written through RegistryKey::Write.
int RegistryWrites();

}  // namespace zyr::platform::host
