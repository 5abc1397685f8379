// What both implementations of threads keep to.
#pragma once

#include <gtest/gtest.h>

#include <atomic>
#include <memory>

#include "platform/clock.h"
#include "platform/thread.h"

namespace zyr::platform {

TEST(ThreadContract, JoinWaitsAsLongAsItIsToldAndNoThreadNeedsIt) {
  std::atomic<bool> mayEnd = false;
  const auto held = std::make_shared<int>(0);
  uint32_t error = 0;
  const std::unique_ptr<Thread> thread = StartThread(
      [&mayEnd, held] {
        while (!mayEnd) SleepFor(1);
        return 7u;
      },
      &error);
  ASSERT_NE(thread, nullptr) << error;
  thread->MakeTimeCritical();
  EXPECT_FALSE(thread->Join(10)) << "it still runs";
  mayEnd = true;
  EXPECT_TRUE(thread->Join(10'000));
  EXPECT_TRUE(thread->Join(0)) << "it has ended";
  EXPECT_EQ(held.use_count(), 1) << "what the procedure held is gone";

  StartThread([&mayEnd] { return (mayEnd = false) ? 0u : 1u; }, &error).reset();
  for (int i = 0; i < 10'000 && mayEnd; ++i) SleepFor(1);
  EXPECT_FALSE(mayEnd) << "a thread outlives its handle";
}

}  // namespace zyr::platform
