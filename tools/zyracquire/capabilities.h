// Asking a source for its capabilities, and setting them.
#pragma once

#include <optional>

#include "tools/zyracquire/capability_values.h"
#include "tools/zyracquire/manager_port.h"
#include "tools/zyracquire/options.h"

namespace zyr {

// What has been agreed on, as far as pictures depend on it.
struct AgreedTerms {
  bool zeroIsWhite = false;  // in memory transfers
  bool inches = true;        // resolutions are dots per inch
};

// Sets what the options ask for. A refusal is a warning, or kExitRefused if an option asked.
ExitStatus Negotiate(OpenSource source, const AcquireOptions& options, AgreedTerms* terms);

// Prints the table of all capabilities that the source says it has.
ExitStatus PrintCapabilities(OpenSource source);

}  // namespace zyr
