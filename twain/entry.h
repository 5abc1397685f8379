// The module's entry, behind its calling convention.
#pragma once

#include "twain/triplet.h"

namespace zyr {

// Runs one triplet on the one source, which starts at the first. TWRC_FAILURE if there is no
// source. An exception ends the triplet with TWRC_FAILURE, and TWCC_LOWMEMORY or TWCC_BUMMER for
// DAT_STATUS.
TW_UINT16 RunEntry(const Triplet& triplet) noexcept;

}  // namespace zyr
