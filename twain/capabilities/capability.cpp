#include "twain/capabilities/capability.h"

#include "twain/containers.h"
#include "twain/names.h"

namespace zyr {

TW_UINT16 Capability::Get(TW_CAPABILITY*, TW_UINT16* conditionCode) {
  return Finish(TWCC_CAPBADOPERATION, conditionCode);
}

TW_UINT16 Capability::GetDefault(TW_CAPABILITY*, TW_UINT16* conditionCode) {
  return Finish(TWCC_CAPBADOPERATION, conditionCode);
}

TW_UINT16 Capability::GetCurrent(TW_CAPABILITY*, TW_UINT16* conditionCode) {
  return Finish(TWCC_CAPBADOPERATION, conditionCode);
}

TW_UINT16 Capability::Set(TW_CAPABILITY*, TW_UINT16* conditionCode) {
  return Finish(TWCC_CAPBADOPERATION, conditionCode);
}

TW_UINT16 Capability::Reset(TW_CAPABILITY*, TW_UINT16* conditionCode) {
  return Finish(TWCC_CAPBADOPERATION, conditionCode);
}

void Capability::Describe(std::string* name, std::string* value) const {
  *name = CapabilityName(id);
  value->clear();
}

TW_UINT16 Capability::QuerySupport(TW_CAPABILITY* capability, TW_UINT16* conditionCode) const {
  return Finish(BuildOneValue(capability, TWTY_UINT32, &querySupport), conditionCode);
}

TW_UINT16 Capability::Finish(TW_UINT16 status, TW_UINT16* conditionCode) {
  *conditionCode = status;
  return status == TWCC_SUCCESS ? TWRC_SUCCESS : TWRC_FAILURE;
}

}  // namespace zyr
