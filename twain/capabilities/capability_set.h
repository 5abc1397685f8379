// The capabilities of this source: grayscale, uncompressed, chunky images.
#pragma once

#include <memory>
#include <vector>

#include "twain/capabilities/author_capability.h"
#include "twain/capabilities/bit_depth_capability.h"
#include "twain/capabilities/capability.h"
#include "twain/capabilities/list_capabilities.h"
#include "twain/capabilities/physical_size_capability.h"
#include "twain/capabilities/resolution_capability.h"
#include "twain/capabilities/supported_caps_capability.h"
#include "twain/capabilities/value_capabilities.h"

namespace zyr {

// All but CAP_SUPPORTEDCAPS, in load order.
std::vector<std::unique_ptr<Capability>> MakeCapabilities();

}  // namespace zyr
