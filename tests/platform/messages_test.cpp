#include "platform/messages.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "platform/host/host.h"
#include "platform/prompt.h"

namespace zyr::platform {
namespace {

using ::testing::ElementsAre;

TEST(MessagesDouble, PostedMessagesWaitInOrderAndSentOnesDoNot) {
  host::ResetAll();
  std::vector<uint32_t> seen;
  host::FakeWindow window([&](uint32_t message, uintptr_t, intptr_t) {
    seen.push_back(message);
    if (message == 100) PostToWindow(window.window(), 103, 0, 0);
    return 5;
  });
  EXPECT_TRUE(PostToWindow(window.window(), 100, 0, 0));
  EXPECT_TRUE(PostToWindow(window.window(), 101, 0, 0));
  EXPECT_EQ(SendToWindow(window.window(), 102, 0, 0), 5);
  EXPECT_EQ(host::PumpMessages(), 3u);
  EXPECT_THAT(seen, ElementsAre(102, 100, 101, 103));
}

TEST(MessagesDouble, ADestroyedWindowGetsNothingMore) {
  host::ResetAll();
  std::vector<uint32_t> seen;
  host::FakeWindow window([&](uint32_t message, uintptr_t, intptr_t) {
    seen.push_back(message);
    if (message == 100) DestroyWindowOf(window.window());
    return 0;
  });
  PostToWindow(window.window(), 100, 0, 0);
  PostToWindow(window.window(), 101, 0, 0);
  EXPECT_EQ(host::PumpMessages(), 1u);
  EXPECT_THAT(seen, ElementsAre(100, host::kDestroyMessage));
  EXPECT_FALSE(PostToWindow(window.window(), 101, 0, 0));
  host::OnOfferToDialog([](Window, void*) { return true; });
  EXPECT_FALSE(OfferToDialog(window.window(), nullptr));
  ShowPrompt(window.window(), "text", "title", PromptKind::kError);
  EXPECT_EQ(host::ShownPrompts().at(0).owner, nullptr);
}

TEST(MessagesDouble, APostedMessageCanBeTakenBack) {
  host::ResetAll();
  const host::FakeWindow window;
  const host::FakeWindow other;
  PostToWindow(other.window(), 100, 1, 1);
  PostToWindow(window.window(), 101, 2, 2);
  PostToWindow(window.window(), 100, 3, 4);
  uintptr_t w = 0;
  intptr_t l = 0;
  EXPECT_TRUE(TakePosted(window.window(), 100, &w, &l));
  EXPECT_EQ(w, 3u);
  EXPECT_EQ(l, 4);
  EXPECT_FALSE(TakePosted(window.window(), 100, &w, &l));
  EXPECT_FALSE(TakePosted(nullptr, 100, &w, &l));
  EXPECT_EQ(host::PumpMessages(), 2u);
}

TEST(PromptDouble, AnswersReachQuestionsOnly) {
  host::ResetAll();
  host::AnswerNextQuestion(false);
  EXPECT_TRUE(ShowPrompt(nullptr, "notice", "title", PromptKind::kWarning));
  EXPECT_FALSE(ShowPrompt(nullptr, "question", "title", PromptKind::kQuestion));
  EXPECT_TRUE(ShowPrompt(nullptr, "another", "title", PromptKind::kQuestion));
}

}  // namespace
}  // namespace zyr::platform
