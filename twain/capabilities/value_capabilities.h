// The capabilities that are a single value, given as a OneValue.
#pragma once

#include <cstdint>
#include <string>

#include "twain/capabilities/capability.h"

namespace zyr {

// What tells one single-value capability from another.
struct ValueTerms {
  TW_UINT16 id = 0;
  TW_UINT32 querySupport = kQueryAll;  // kQueryReadOnly: Set and Reset are refused
  TW_UINT16 itemType = TWTY_UINT16;    // TWTY_BOOL, TWTY_INT16 or TWTY_UINT16
  uint16_t defaultValue = 0;
  std::string (*describe)(uint32_t value) = nullptr;
};

// Takes any number of its item type: no range is tested.
class ValueCapability : public Capability {
 public:
  explicit ValueCapability(const ValueTerms& terms);
  TW_UINT16 Get(TW_CAPABILITY* capability, TW_UINT16* conditionCode) override;
  TW_UINT16 GetDefault(TW_CAPABILITY* capability, TW_UINT16* conditionCode) override;
  TW_UINT16 GetCurrent(TW_CAPABILITY* capability, TW_UINT16* conditionCode) override;
  TW_UINT16 Set(TW_CAPABILITY* capability, TW_UINT16* conditionCode) override;
  TW_UINT16 Reset(TW_CAPABILITY* capability, TW_UINT16* conditionCode) override;
  void Describe(std::string* name, std::string* value) const override;

  uint16_t current = 0;

 private:
  bool IsReadOnly() const { return querySupport == kQueryReadOnly; }

  const ValueTerms terms_;
};

// CAP_FEEDERENABLED: takes values only where there is a feeder, which no sensor has.
class FeederEnabledCapability : public ValueCapability {
 public:
  FeederEnabledCapability();
  TW_UINT16 Set(TW_CAPABILITY* capability, TW_UINT16* conditionCode) override;

  uint16_t feederAvailable = 0;
};

// CAP_AUTOFEED: takes values only while CAP_FEEDERENABLED is on.
class AutoFeedCapability : public ValueCapability {
 public:
  AutoFeedCapability();
  TW_UINT16 Set(TW_CAPABILITY* capability, TW_UINT16* conditionCode) override;
};

}  // namespace zyr
