// What both implementations of the registry service keep to. The including test says where it may
// work.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "platform/registry.h"

namespace zyr::platform {

// Path of a key under the current user that does not exist yet.
std::string FreshKeyPath();

TEST(RegistryContract, ValuesComeBackAsTheyWereStored) {
  const std::string path = FreshKeyPath();
  EXPECT_FALSE(RegistryKey::Open(RootKey::kCurrentUser, path, KeyAccess::kWrite));
  const std::vector<std::pair<std::string, RegistryValue>> values = {
      {"text", {ValueType::kString, {'a', 'b', 0}}},
      {"unterminated", {ValueType::kString, {'a', 'b'}}},
      {"list", {ValueType::kMultiString, {'a', 0, 'b', 0, 0}}},
      {"number", {ValueType::kDword, {1, 2, 3, 4}}},
      {"short number", {ValueType::kDword, {1, 2, 3}}},
      {"big-endian", {ValueType::kDwordBigEndian, {1, 2, 3, 4}}},
      {"nothing", {ValueType::kBinary, {}}},
      {"much", {ValueType::kBinary, std::vector<uint8_t>(100'000, 0x5A)}},
      {"", {ValueType::kBinary, {7}}},
  };
  for (const auto& [name, value] : values) {
    EXPECT_TRUE(RegistryKey::Create(RootKey::kCurrentUser, path + "\\Deep")->Write(name, value));
  }
  const auto key = RegistryKey::Open(RootKey::kCurrentUser, path + "\\deep", KeyAccess::kRead);
  ASSERT_TRUE(key);
  for (const auto& [name, value] : values) {
    const auto read = key->Read(name);
    ASSERT_TRUE(read) << name;
    EXPECT_EQ(read->type, value.type) << name;
    EXPECT_EQ(read->data, value.data) << name;
  }
  EXPECT_TRUE(key->Read("TEXT"));
  EXPECT_FALSE(key->Read("missing"));
  EXPECT_TRUE(RegistryKey::Open(RootKey::kCurrentUser, path, KeyAccess::kRead));
}

TEST(RegistryContract, AReadingKeyDoesNotWriteAndAMovedOneIsNone) {
  const std::string path = FreshKeyPath();
  auto writer = RegistryKey::Create(RootKey::kCurrentUser, path);
  ASSERT_TRUE(writer->Write("a", {ValueType::kBinary, {1}}));
  auto reader = RegistryKey::Open(RootKey::kCurrentUser, path, KeyAccess::kRead);
  EXPECT_FALSE(reader->Write("a", {ValueType::kBinary, {2}}));
  EXPECT_EQ(writer->Read("a")->data, std::vector<uint8_t>{1});
  RegistryKey moved = std::move(*writer);
  EXPECT_TRUE(moved.Write("a", {ValueType::kString, {'x', 0}}));
  EXPECT_FALSE(writer->Write("a", {ValueType::kBinary, {3}}));
  EXPECT_FALSE(writer->Read("a"));
  EXPECT_EQ(reader->Read("a")->type, ValueType::kString);
}

}  // namespace zyr::platform
