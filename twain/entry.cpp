#include "twain/entry.h"

#include <exception>
#include <new>

#include "foundation/log/log.h"
#include "twain/source.h"

namespace zyr {
namespace {

TW_UINT16 Report(TwainSource& source, TW_UINT16 conditionCode, const char* what) noexcept {
  source.SetConditionCode(conditionCode);
  try {
    Log().WriteLine("Exception in DS_Entry: %s", what);
  } catch (...) {
    // No memory for the line either; the condition code has to do.
  }
  return TWRC_FAILURE;
}

}  // namespace

TW_UINT16 RunEntry(const Triplet& triplet) noexcept {
  TwainSource* source = sourceInstance;
  if (source == nullptr) return TWRC_FAILURE;
  try {
    source->Start();
    return source->Enter(triplet);
  } catch (const std::bad_alloc& exception) {
    return Report(*source, TWCC_LOWMEMORY, exception.what());
  } catch (const std::exception& exception) {
    return Report(*source, TWCC_BUMMER, exception.what());
  } catch (...) {
    return Report(*source, TWCC_BUMMER, "unknown");
  }
}

}  // namespace zyr
