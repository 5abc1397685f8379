// CapabilityStore: the list of the source's capabilities, and the way of a capability triplet
// through it.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "settings/settings_list.h"
#include "twain/capabilities/capability.h"
#include "twain/triplet.h"

namespace zyr {

// Application's thread only.
class CapabilityStore {
 public:
  CapabilityStore() = default;
  CapabilityStore(const CapabilityStore&) = delete;
  CapabilityStore& operator=(const CapabilityStore&) = delete;

  virtual void Clear();
  // Makes the source's capabilities, once until the next Clear.
  virtual void Load();
  // Replaces a capability of the same number; the new one stands at the end. Null does nothing.
  virtual void AddCapability(std::unique_ptr<Capability> capability);
  virtual void RemoveCapability(TW_UINT16 id);
  // Null if there is none; writes its position into `index` if that is not null.
  virtual Capability* FindCapStorageItem(TW_UINT16 id, size_t* index = nullptr) const;
  virtual void FillSettingsList(SettingsListControl* listControl) const;
  // Null or empty: "Current TWAIN settings:".
  virtual void LogSettings(const char* title) const;
  virtual ~CapabilityStore();

  // Runs a DAT_CAPABILITY triplet, in any state of the source. Messages without an operation fail
  // and leave `conditionCode` as it was. A data pointer without a TW_CAPABILITY behind it gives
  // TWCC_OPERATIONERROR.
  TW_UINT16 HandleCapMessage(const Triplet& triplet, TW_UINT16* conditionCode);

  // The capability as its own class; null if it is missing. Numbers and classes belong together in
  // capability_set.cpp alone.
  template <typename T>
  T* Find(TW_UINT16 id) const {
    return dynamic_cast<T*>(FindCapStorageItem(id));
  }
  // The same, with a line in the log if it is missing.
  template <typename T>
  T* FindOrLog(TW_UINT16 id) const {
    T* found = Find<T>(id);
    if (found == nullptr) LogMissing(id);
    return found;
  }

 private:
  static void LogMissing(TW_UINT16 id);
  TW_UINT16 Run(TW_UINT16 message, TW_CAPABILITY* data, TW_UINT16* conditionCode);
  TW_UINT16 RunSet(Capability& item, TW_CAPABILITY* data, TW_UINT16* conditionCode);

  std::vector<std::unique_ptr<Capability>> capabilities_;
  bool loaded_ = false;
};

// Another capability of the same store; null if it is missing, or for a capability without a store.
template <typename T>
T* FindSibling(const Capability& capability, TW_UINT16 id) {
  return capability.store != nullptr ? capability.store->Find<T>(id) : nullptr;
}

}  // namespace zyr
