// Resources linked into a module.
#pragma once

#include <cstdint>
#include <span>
#include <string>

namespace zyr::platform {

using ResourceModule = void*;

// The module whose resources are looked up, process-wide within this module: the host program at
// first.
ResourceModule CurrentResources();
ResourceModule OwnResources();
void SetCurrentResources(ResourceModule module);

// Looks resources up in this module for its life, and puts the previous choice back.
class OwnResourcesScope {
 public:
  OwnResourcesScope() : previous_(CurrentResources()) { SetCurrentResources(OwnResources()); }
  ~OwnResourcesScope() { SetCurrentResources(previous_); }
  OwnResourcesScope(const OwnResourcesScope&) = delete;
  OwnResourcesScope& operator=(const OwnResourcesScope&) = delete;

  ResourceModule previous() const { return previous_; }

 private:
  ResourceModule previous_;
};

// A bitmap resource as stored: header, colour table, pixels, without the file header. Lives as long
// as the module. Empty if missing; `error` then holds the system's error number.
std::span<const uint8_t> BitmapResource(const std::string& name, uint32_t* error);
std::span<const uint8_t> BitmapResource(uint16_t id, uint32_t* error);

}  // namespace zyr::platform
