// Capability: one value that application and source negotiate.
#pragma once

#include <string>

#include "twain/twain_types.h"

namespace zyr {

class CapabilityStore;

// The sets of TWQC_ flags that occur.
inline constexpr TW_UINT32 kQueryAll =
    TWQC_GET | TWQC_SET | TWQC_GETDEFAULT | TWQC_GETCURRENT | TWQC_RESET;
inline constexpr TW_UINT32 kQueryReadOnly = TWQC_GET | TWQC_GETDEFAULT | TWQC_GETCURRENT;

// Each message operation answers in a container of the caller's TW_CAPABILITY, writes a TWCC_ value
// through `conditionCode` and returns TWRC_SUCCESS or TWRC_FAILURE. Set reads the caller's
// container and leaves it alone; when it fails, the value is as it was. Operations that a class
// does not have fail with TWCC_CAPBADOPERATION.
class Capability {
 public:
  Capability(TW_UINT16 capabilityId, TW_UINT32 query) : id(capabilityId), querySupport(query) {}
  Capability(const Capability&) = delete;
  Capability& operator=(const Capability&) = delete;

  virtual ~Capability() = default;
  virtual TW_UINT16 Get(TW_CAPABILITY* capability, TW_UINT16* conditionCode);
  virtual TW_UINT16 GetDefault(TW_CAPABILITY* capability, TW_UINT16* conditionCode);
  virtual TW_UINT16 GetCurrent(TW_CAPABILITY* capability, TW_UINT16* conditionCode);
  virtual TW_UINT16 Set(TW_CAPABILITY* capability, TW_UINT16* conditionCode);
  virtual TW_UINT16 Reset(TW_CAPABILITY* capability, TW_UINT16* conditionCode);
  // Name and value in words, for the log and the settings view.
  virtual void Describe(std::string* name, std::string* value) const;

  TW_UINT16 QuerySupport(TW_CAPABILITY* capability, TW_UINT16* conditionCode) const;

  const TW_UINT16 id;
  const TW_UINT32 querySupport;
  CapabilityStore* store = nullptr;  // the owner; capabilities that depend on another find it there

 protected:
  // Writes the TWCC_ value and gives the result that goes with it.
  static TW_UINT16 Finish(TW_UINT16 status, TW_UINT16* conditionCode);
};

}  // namespace zyr
