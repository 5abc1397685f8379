// What both implementations of the password hash service keep to.
#pragma once

#include <gtest/gtest.h>

#include <set>
#include <vector>

#include "platform/password_hash.h"

namespace zyr::platform {

TEST(PasswordHashContract, AKeyDependsOnEveryArgument) {
  std::set<std::vector<uint8_t>> keys;
  for (const char* password : {"", "secret", "secreT", "secret "}) {
    for (const std::vector<uint8_t>& salt : {std::vector<uint8_t>{1, 2}, {2, 1}, {1, 2, 0}}) {
      for (uint32_t iterations : {1, 2, 1000}) {
        const auto key = DerivePasswordKey(password, salt, iterations, 32);
        ASSERT_TRUE(key && key->size() == 32);
        EXPECT_EQ(key, DerivePasswordKey(password, salt, iterations, 32));
        EXPECT_TRUE(keys.insert(*key).second) << password << " " << iterations;
      }
    }
  }
  EXPECT_FALSE(DerivePasswordKey("secret", {1}, 0, 32));
  EXPECT_FALSE(DerivePasswordKey("secret", {1}, 1, 0));
}

TEST(PasswordHashContract, RandomBytesDiffer) {
  std::set<std::vector<uint8_t>> drawn;
  while (drawn.size() < 100) {
    const auto [bytes, isNew] = drawn.insert(RandomBytes(16).value());
    ASSERT_TRUE(isNew && bytes->size() == 16);
  }
}

}  // namespace zyr::platform
