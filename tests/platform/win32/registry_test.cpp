#include "platform/registry.h"

#include "platform/win32/system.h"
#include "tests/platform/registry_contract.h"

namespace zyr::platform {
namespace {

// A key of this process, removed at its end.
class ScratchKey {
 public:
  ScratchKey() : path_("Software\\zyr-registry-" + std::to_string(GetCurrentProcessId())) {}
  ~ScratchKey() { Remove(); }

  const std::string& path() const { return path_; }
  void Remove() const { RegDeleteTreeA(HKEY_CURRENT_USER, path_.c_str()); }

 private:
  std::string path_;
};

}  // namespace

std::string FreshKeyPath() {
  static const ScratchKey scratch;
  scratch.Remove();
  return scratch.path();
}

namespace {

// What is behind the bytes of an unterminated text must not slip into the registry.
TEST(RegistryWin32, AnUnterminatedTextStaysSo) {
  auto key = RegistryKey::Create(RootKey::kCurrentUser, FreshKeyPath());
  RegistryValue value{ValueType::kString, {'a', 'b', 0, 0, 0, 0}};
  value.data.resize(2);  // zeros remain behind the bytes
  ASSERT_TRUE(key->Write("a", value));
  EXPECT_EQ(key->Read("a")->data, value.data);
}

}  // namespace
}  // namespace zyr::platform
