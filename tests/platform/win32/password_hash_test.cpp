#include "tests/platform/password_hash_contract.h"

namespace zyr::platform {
namespace {

// The published vectors of PBKDF2 with HMAC-SHA-256 (RFC 7914, section 11).
TEST(PasswordHashWin32, AgreesWithThePublishedVectors) {
  const auto once = DerivePasswordKey("passwd", {'s', 'a', 'l', 't'}, 1, 20);
  EXPECT_EQ(once,
            (std::vector<uint8_t>{0x55, 0xac, 0x04, 0x6e, 0x56, 0xe3, 0x08, 0x9f, 0xec, 0x16,
                                  0x91, 0xc2, 0x25, 0x44, 0xb6, 0x05, 0xf9, 0x41, 0x85, 0x21}));
  // Its bytes 32 to 39 are the first of a second block.
  const auto often = DerivePasswordKey("Password", {'N', 'a', 'C', 'l'}, 80'000, 40);
  ASSERT_TRUE(often);
  EXPECT_EQ(std::vector<uint8_t>(often->begin(), often->begin() + 8),
            (std::vector<uint8_t>{0x4d, 0xdc, 0xd8, 0xf6, 0x0b, 0x98, 0xbe, 0x21}));
  EXPECT_EQ(std::vector<uint8_t>(often->begin() + 32, often->end()),
            (std::vector<uint8_t>{0xa1, 0xd4, 0x25, 0xa1, 0x22, 0x58, 0x33, 0x54}));
}

}  // namespace
}  // namespace zyr::platform
