// The capabilities that are a list of 16-bit values of which one is current, given as an
// enumeration.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "twain/capabilities/capability.h"

namespace zyr {

// What tells one list capability from another.
struct ListTerms {
  TW_UINT16 id = 0;
  std::vector<uint16_t> values;
  uint16_t defaultValue = 0;
  bool resetRefills = false;  // Reset brings the whole list back, not only the current value
  std::string (*describe)(uint32_t value) = nullptr;
};

// Set takes one value, or from a list the first that is supported. It never narrows the own list.
class ListCapability : public Capability {
 public:
  explicit ListCapability(const ListTerms& terms);
  TW_UINT16 Get(TW_CAPABILITY* capability, TW_UINT16* conditionCode) override;
  TW_UINT16 GetDefault(TW_CAPABILITY* capability, TW_UINT16* conditionCode) override;
  TW_UINT16 GetCurrent(TW_CAPABILITY* capability, TW_UINT16* conditionCode) override;
  TW_UINT16 Set(TW_CAPABILITY* capability, TW_UINT16* conditionCode) override;
  TW_UINT16 Reset(TW_CAPABILITY* capability, TW_UINT16* conditionCode) override;
  void Describe(std::string* name, std::string* value) const override;

  // List, default and current value as at construction.
  virtual void FillValues();
  virtual bool IsSupported(uint16_t value) const;
  // Makes `value` the only member, the default and the current value.
  virtual void SetOnly(uint16_t value);

  std::vector<uint16_t> values;
  uint16_t defaultValue = 0;
  uint16_t currentValue = 0;

 protected:
  // The member of the application's list to take, if there is one.
  virtual std::optional<uint16_t> Choose(const std::vector<uint16_t>& offered) const;
  std::string ValueName(uint16_t value) const { return terms_.describe(value); }

 private:
  TW_UINT16 SetOneValue(const TW_CAPABILITY& capability);
  TW_UINT16 SetFromList(const TW_CAPABILITY& capability);

  const ListTerms terms_;
};

// ICAP_XFERMECH: prefers memory transfers wherever they stand in the application's list.
class XferMechCapability : public ListCapability {
 public:
  XferMechCapability();
  TW_UINT16 Get(TW_CAPABILITY* capability, TW_UINT16* conditionCode) override;
  virtual bool ListHasMemory(const std::vector<uint16_t>& list) const;

 protected:
  std::optional<uint16_t> Choose(const std::vector<uint16_t>& offered) const override;
};

// ICAP_PIXELTYPE.
class PixelTypeCapability : public ListCapability {
 public:
  PixelTypeCapability();

 protected:
  std::optional<uint16_t> Choose(const std::vector<uint16_t>& offered) const override;
};

// ICAP_UNITS and its conversions, by the current unit.
class UnitsCapability : public ListCapability {
 public:
  UnitsCapability();
  // `inches`, the same in centimetres, or `pixels`.
  virtual double ConvertFromInches(double inches, double pixels) const;
  virtual double ResolutionToUnits(double dotsPerInch) const;
  virtual double ResolutionFromUnits(double value) const;
};

}  // namespace zyr
