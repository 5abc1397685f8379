// The drives of this machine.
#pragma once

#include <string>
#include <vector>

namespace zyr::platform {

enum class DriveKind { kFixed, kRemovable, kNetwork, kOptical };

struct Drive {
  std::string path;   // "C:\"
  std::string label;  // of a fixed drive's medium; empty without one
  DriveKind kind = DriveKind::kFixed;
};

// By their letters. Only fixed drives are asked for their labels: another one may have to start its
// motor first, or to wait for a computer that has gone.
std::vector<Drive> ListDrives();

}  // namespace zyr::platform
