#include "platform/resources.h"

#include <atomic>

#include "platform/win32/system.h"

namespace zyr::platform {
namespace {

std::atomic<ResourceModule>& Current() {
  static std::atomic<ResourceModule> current = GetModuleHandleA(nullptr);
  return current;
}

std::span<const uint8_t> Bitmap(const char* name, uint32_t* error) {
  const auto module = static_cast<HMODULE>(CurrentResources());
  const HRSRC resource = FindResourceA(module, name, MAKEINTRESOURCEA(2));  // RT_BITMAP
  const HGLOBAL loaded = resource != nullptr ? LoadResource(module, resource) : nullptr;
  const void* bytes = loaded != nullptr ? LockResource(loaded) : nullptr;
  if (bytes == nullptr) {
    *error = GetLastError();
    return {};
  }
  return {static_cast<const uint8_t*>(bytes), SizeofResource(module, resource)};
}

}  // namespace

ResourceModule CurrentResources() { return Current(); }
ResourceModule OwnResources() { return OwnModule(); }
void SetCurrentResources(ResourceModule module) { Current() = module; }

std::span<const uint8_t> BitmapResource(const std::string& name, uint32_t* error) {
  return Bitmap(name.c_str(), error);
}

std::span<const uint8_t> BitmapResource(uint16_t id, uint32_t* error) {
  return Bitmap(MAKEINTRESOURCEA(id), error);
}

}  // namespace zyr::platform
