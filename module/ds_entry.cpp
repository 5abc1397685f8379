// The module's one export.
#include "platform/own_module.h"
#include "twain/entry.h"
#include "twain/twain_types.h"

extern "C" zyr::TW_UINT16 ZYR_PASCAL DS_Entry(zyr::pTW_IDENTITY origin, zyr::TW_UINT32 dataGroup,
                                              zyr::TW_UINT16 dataArgumentType,
                                              zyr::TW_UINT16 message, zyr::TW_MEMREF data) {
  const zyr::platform::EntryVisit visit;
  return zyr::RunEntry({origin, dataGroup, dataArgumentType, message, data});
}
