#include "twain/capabilities/supported_caps_capability.h"

#include <algorithm>

#include "foundation/support/format.h"
#include "foundation/support/phrase_lookup.h"
#include "twain/containers.h"
#include "twain/names.h"

namespace zyr {

SupportedCapsCapability::SupportedCapsCapability()
    : Capability(CAP_SUPPORTEDCAPS, kQueryReadOnly), ids_{CAP_SUPPORTEDCAPS} {}

TW_UINT16 SupportedCapsCapability::Get(TW_CAPABILITY* capability, TW_UINT16* conditionCode) {
  return Finish(BuildArray(capability, ids_), conditionCode);
}

TW_UINT16 SupportedCapsCapability::GetDefault(TW_CAPABILITY* capability, TW_UINT16* conditionCode) {
  return Get(capability, conditionCode);
}

TW_UINT16 SupportedCapsCapability::GetCurrent(TW_CAPABILITY* capability, TW_UINT16* conditionCode) {
  return Get(capability, conditionCode);
}

void SupportedCapsCapability::Describe(std::string* name, std::string* value) const {
  *name = CapabilityName(id);
  *value = FormatText(GetFormatPhrase("%lu capabilities specified").c_str(),
                      Lu(static_cast<uint32_t>(ids_.size())));
}

void SupportedCapsCapability::Add(TW_UINT16 capabilityId) {
  if (std::find(ids_.begin(), ids_.end(), capabilityId) == ids_.end()) {
    ids_.push_back(capabilityId);
  }
}

void SupportedCapsCapability::Remove(TW_UINT16 capabilityId) { std::erase(ids_, capabilityId); }

}  // namespace zyr
