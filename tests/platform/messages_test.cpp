#include "platform/messages.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/host/host.h"

namespace zyr::platform {
namespace {

using ::testing::ElementsAre;

TEST(MessagesDouble, PostedMessagesWaitInOrderAndADestroyedWindowGetsNothingMore) {
  host::ResetAll();
  std::vector<uint32_t> seen;
  host::FakeWindow window([&](uint32_t message, uintptr_t, intptr_t) {
    seen.push_back(message);
    if (message == 100) PostToWindow(window.window(), 103, 0, 0);
    if (message == 103) DestroyWindowOf(window.window());
    return 5;
  });
  const host::FakeWindow other;
  EXPECT_TRUE(PostToWindow(other.window(), 104, 1, 1));
  EXPECT_TRUE(PostToWindow(window.window(), 100, 0, 0));
  EXPECT_TRUE(PostToWindow(window.window(), 104, 3, 4));
  EXPECT_TRUE(PostToWindow(window.window(), 101, 0, 0));
  EXPECT_EQ(SendToWindow(window.window(), 102, 0, 0), 5);
  uintptr_t w = 0;
  intptr_t l = 0;
  EXPECT_TRUE(TakePosted(window.window(), 104, &w, &l));
  EXPECT_TRUE(w == 3 && l == 4);
  EXPECT_FALSE(TakePosted(window.window(), 104, &w, &l));
  EXPECT_FALSE(TakePosted(nullptr, 104, &w, &l));
  EXPECT_EQ(host::PumpMessages(), 4u);
  EXPECT_THAT(seen, ElementsAre(102, 100, 101, 103, host::kDestroyMessage));
  EXPECT_FALSE(PostToWindow(window.window(), 101, 0, 0));
  host::OnOfferToDialog([](Window, void*) { return true; });
  EXPECT_FALSE(OfferToDialog(window.window(), nullptr));
}

}  // namespace
}  // namespace zyr::platform
