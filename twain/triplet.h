// A TWAIN triplet as the entry received it.
#pragma once

#include "platform/global_memory.h"
#include "twain/twain_types.h"

namespace zyr {

struct Triplet {
  pTW_IDENTITY origin = nullptr;
  TW_UINT32 dataGroup = 0;
  TW_UINT16 dataArgumentType = 0;
  TW_UINT16 message = 0;
  TW_MEMREF data = nullptr;
};

// The record behind the triplet's data pointer, null if the application's memory does not hold a
// whole one that may be read, or read and written. Valid while the application stays inside its
// call.
template <typename Record>
const Record* ReadableRecord(const Triplet& triplet) {
  const bool usable = platform::IsReadable(triplet.data, sizeof(Record));
  return usable ? static_cast<const Record*>(triplet.data) : nullptr;
}

template <typename Record>
Record* WritableRecord(const Triplet& triplet) {
  const bool usable = platform::IsWritable(triplet.data, sizeof(Record));
  return usable ? static_cast<Record*>(triplet.data) : nullptr;
}

}  // namespace zyr
