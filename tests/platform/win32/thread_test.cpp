#include <windows.h>

#include "tests/platform/thread_contract.h"

namespace zyr::platform {
namespace {

LRESULT CALLBACK Answer(HWND window, UINT message, WPARAM w, LPARAM l) {
  return message == WM_APP ? 42 : DefWindowProcA(window, message, w, l);
}

// A thread that sends to a window of the thread that waits for it must not wait for ever.
TEST(ThreadWin32, JoinHandlesWhatTheThreadSends) {
  WNDCLASSA windowClass{};
  windowClass.lpfnWndProc = Answer;
  windowClass.hInstance = GetModuleHandleA(nullptr);
  windowClass.lpszClassName = "zyr thread test";
  RegisterClassA(&windowClass);
  const HWND window = CreateWindowA("zyr thread test", "", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr,
                                    windowClass.hInstance, nullptr);
  ASSERT_NE(window, nullptr);
  std::atomic<LRESULT> answer = 0;
  uint32_t error = 0;
  const std::unique_ptr<Thread> thread = StartThread(
      [&] {
        answer = SendMessageA(window, WM_APP, 0, 0);
        return 0u;
      },
      &error);
  ASSERT_NE(thread, nullptr) << error;
  // Seen by others, a message no longer ends a wait for new ones.
  while (GetQueueStatus(QS_SENDMESSAGE) == 0) Sleep(1);
  EXPECT_TRUE(thread->Join(10'000));
  EXPECT_EQ(answer, 42);
  DestroyWindow(window);
  UnregisterClassA("zyr thread test", windowClass.hInstance);
}

}  // namespace
}  // namespace zyr::platform
