#include "platform/registry.h"

#include "platform/host/host.h"
#include "tests/platform/registry_contract.h"

namespace zyr::platform {

std::string FreshKeyPath() {
  host::ResetAll();
  return "SOFTWARE\\Test";
}

namespace {

TEST(RegistryDouble, OpenKeysAreCountedAndOutliveTheirValues) {
  const std::string path = FreshKeyPath();
  host::PokeDword(RootKey::kLocalMachine, path, "a", 0x01020304);
  auto key = RegistryKey::Open(RootKey::kLocalMachine, path, KeyAccess::kWrite);
  ASSERT_TRUE(key);
  EXPECT_EQ(key->Read("a")->data, (std::vector<uint8_t>{4, 3, 2, 1}));
  EXPECT_EQ(host::OpenRegistryKeys(), 1);
  host::ClearRegistry();
  EXPECT_FALSE(key->Read("a") || key->Write("a", {}));
  EXPECT_EQ(host::RegistryWrites(), 0);
  key.reset();
  EXPECT_EQ(host::OpenRegistryKeys(), 0);
}

}  // namespace
}  // namespace zyr::platform
