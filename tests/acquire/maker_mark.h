// The maker's mark, which the module has among its resources.
#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <fstream>
#include <iterator>
#include <vector>

#include "platform/host/resources.h"
#include "resources/resource.h"

namespace zyr::test {

inline void UseMakerMark() {
  constexpr size_t kFileHeadBytes = 14;  // which a resource does without
  std::ifstream file(ZYR_STAMP_FILE, std::ios::binary);
  std::vector<uint8_t> bytes{std::istreambuf_iterator<char>(file), {}};
  ASSERT_GT(bytes.size(), kFileHeadBytes);
  bytes.erase(bytes.begin(), bytes.begin() + kFileHeadBytes);
  platform::host::AddBitmap(platform::OwnResources(), IDB_STAMP, bytes);
}

}  // namespace zyr::test
