#include "twain/capabilities/value_capabilities.h"

#include "twain/capabilities/capability_store.h"
#include "twain/containers.h"
#include "twain/names.h"

namespace zyr {

ValueCapability::ValueCapability(const ValueTerms& terms)
    : Capability(terms.id, terms.querySupport), current(terms.defaultValue), terms_(terms) {}

TW_UINT16 ValueCapability::Get(TW_CAPABILITY* capability, TW_UINT16* conditionCode) {
  return Finish(BuildOneValue(capability, terms_.itemType, &current), conditionCode);
}

TW_UINT16 ValueCapability::GetDefault(TW_CAPABILITY* capability, TW_UINT16* conditionCode) {
  return Finish(BuildOneValue(capability, terms_.itemType, &terms_.defaultValue), conditionCode);
}

TW_UINT16 ValueCapability::GetCurrent(TW_CAPABILITY* capability, TW_UINT16* conditionCode) {
  return Get(capability, conditionCode);
}

TW_UINT16 ValueCapability::Set(TW_CAPABILITY* capability, TW_UINT16* conditionCode) {
  if (IsReadOnly()) return Capability::Set(capability, conditionCode);
  uint16_t value = 0;
  const TW_UINT16 status = terms_.itemType == TWTY_BOOL ? ReadOneValueBool(capability, &value)
                                                        : ReadOneValueUint16(capability, &value);
  if (status == TWCC_SUCCESS) current = value;
  return Finish(status, conditionCode);
}

TW_UINT16 ValueCapability::Reset(TW_CAPABILITY* capability, TW_UINT16* conditionCode) {
  if (IsReadOnly()) return Capability::Reset(capability, conditionCode);
  current = terms_.defaultValue;
  return GetCurrent(capability, conditionCode);
}

void ValueCapability::Describe(std::string* name, std::string* value) const {
  *name = CapabilityName(id);
  *value = terms_.describe(current);
}

FeederEnabledCapability::FeederEnabledCapability()
    : ValueCapability({.id = CAP_FEEDERENABLED, .itemType = TWTY_BOOL, .describe = EnabledName}) {}

TW_UINT16 FeederEnabledCapability::Set(TW_CAPABILITY* capability, TW_UINT16* conditionCode) {
  if (feederAvailable == 0) return Finish(TWCC_BADVALUE, conditionCode);
  return ValueCapability::Set(capability, conditionCode);
}

AutoFeedCapability::AutoFeedCapability()
    : ValueCapability({.id = CAP_AUTOFEED, .itemType = TWTY_BOOL, .describe = EnabledName}) {}

TW_UINT16 AutoFeedCapability::Set(TW_CAPABILITY* capability, TW_UINT16* conditionCode) {
  const auto* feeder = FindSibling<ValueCapability>(*this, CAP_FEEDERENABLED);
  if (feeder == nullptr || feeder->current == 0) {
    return Finish(TWCC_CAPUNSUPPORTED, conditionCode);
  }
  return ValueCapability::Set(capability, conditionCode);
}

}  // namespace zyr
