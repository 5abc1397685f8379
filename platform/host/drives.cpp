#include "platform/host/drives.h"

#include <utility>

namespace zyr::platform {
namespace {

std::vector<Drive> AtFirst() { return {{"C:\\", "System", DriveKind::kFixed}}; }

std::vector<Drive>& Drives() {
  static std::vector<Drive> drives = AtFirst();
  return drives;
}

}  // namespace

std::vector<Drive> ListDrives() { return Drives(); }

namespace host {

void SetDrives(std::vector<Drive> drives) { Drives() = std::move(drives); }
void ResetDrives() { Drives() = AtFirst(); }

}  // namespace host
}  // namespace zyr::platform
