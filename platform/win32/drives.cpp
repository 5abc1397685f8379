#include "platform/drives.h"

#include <optional>

#include "platform/win32/system.h"

namespace zyr::platform {
namespace {

constexpr int kLetters = 26;

std::optional<DriveKind> KindOf(const std::string& path) {
  switch (GetDriveTypeA(path.c_str())) {
    case DRIVE_FIXED:
    case DRIVE_RAMDISK:
      return DriveKind::kFixed;
    case DRIVE_REMOVABLE:
      return DriveKind::kRemovable;
    case DRIVE_REMOTE:
      return DriveKind::kNetwork;
    case DRIVE_CDROM:
      return DriveKind::kOptical;
    default:
      return std::nullopt;
  }
}

std::string LabelOf(const std::string& path) {
  char label[MAX_PATH + 1] = {};
  if (!GetVolumeInformationA(path.c_str(), label, sizeof label, nullptr, nullptr, nullptr, nullptr,
                             0)) {
    return {};
  }
  return label;
}

}  // namespace

std::vector<Drive> ListDrives() {
  const NoSystemBoxes quiet;
  std::vector<Drive> drives;
  const DWORD present = GetLogicalDrives();
  for (int i = 0; i < kLetters; ++i) {
    if ((present >> i & 1) == 0) continue;
    const std::string path = {static_cast<char>('A' + i), ':', '\\'};
    const std::optional<DriveKind> kind = KindOf(path);
    if (!kind) continue;
    drives.push_back({path, *kind == DriveKind::kFixed ? LabelOf(path) : std::string(), *kind});
  }
  return drives;
}

}  // namespace zyr::platform
