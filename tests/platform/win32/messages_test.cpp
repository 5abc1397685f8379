#include "platform/messages.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <thread>
#include <vector>

#include "platform/escape_key.h"
#include "platform/prompt.h"
#include "platform/win32/system.h"

namespace zyr::platform {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

// A window that needs no screen.
class HiddenWindow {
 public:
  HiddenWindow()
      : window_(CreateWindowExA(0, "STATIC", "", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr,
                                nullptr)) {}
  ~HiddenWindow() { DestroyWindowOf(window_); }
  HiddenWindow(const HiddenWindow&) = delete;
  HiddenWindow& operator=(const HiddenWindow&) = delete;

  HWND window() const { return window_; }

 private:
  HWND window_;
};

// Message numbers of the thread's queue, which is empty afterwards.
std::vector<UINT> DrainQueue() {
  std::vector<UINT> numbers;
  MSG message;
  while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE)) numbers.push_back(message.message);
  return numbers;
}

TEST(MessagesWin32, DeadAndSpecialHandlesAreNoWindows) {
  DrainQueue();
  Window dead = nullptr;
  {
    const HiddenWindow window;
    dead = window.window();
    EXPECT_TRUE(IsWindowAlive(dead));
    EXPECT_TRUE(PostToWindow(dead, WM_APP, 1, 2));
    EXPECT_EQ(SendToWindow(dead, WM_GETTEXTLENGTH, 0, 0), 0);
    EXPECT_THAT(DrainQueue(), ElementsAre(WM_APP));
  }
  MSG event = {};
  for (const Window window : {Window{}, dead, Window{HWND_BROADCAST}}) {
    EXPECT_FALSE(IsWindowAlive(window));
    EXPECT_FALSE(PostToWindow(window, WM_APP, 0, 0));
    EXPECT_EQ(SendToWindow(window, WM_APP, 0, 0), 0);
    EXPECT_FALSE(OfferToDialog(window, &event));
    DestroyWindowOf(window);
  }
  const HiddenWindow window;
  EXPECT_FALSE(OfferToDialog(window.window(), nullptr));
  EXPECT_THAT(DrainQueue(), IsEmpty());
}

TEST(MessagesWin32, APostedMessageCanBeTakenBackAndTheApplicationsQuitCannot) {
  DrainQueue();
  const HiddenWindow window;
  const HiddenWindow other;
  PostToWindow(other.window(), WM_APP, 1, 1);
  PostToWindow(window.window(), WM_APP + 1, 2, 2);
  PostToWindow(window.window(), WM_APP, 3, 4);
  PostQuitMessage(42);
  uintptr_t w = 0;
  intptr_t l = 0;
  EXPECT_TRUE(TakePosted(window.window(), WM_APP, &w, &l));
  EXPECT_EQ(w, 3u);
  EXPECT_EQ(l, 4);
  EXPECT_FALSE(TakePosted(window.window(), WM_APP, &w, &l));
  EXPECT_FALSE(TakePosted(nullptr, WM_APP, &w, &l));
  EXPECT_THAT(DrainQueue(), ElementsAre(WM_APP, WM_APP + 1, WM_QUIT));
}

struct Key {
  UINT message;
  WPARAM key;
};

bool operator==(const Key& a, const Key& b) { return a.message == b.message && a.key == b.key; }

// The queue is looked into only now and then.
bool TakeEscapeMessageNow() {
  Sleep(50);
  return TakeEscapeMessage() == EscapeAnswer::kYes;
}

TEST(EscapeKeyWin32, OtherKeysStayInOrder) {
  DrainQueue();
  const HiddenWindow window;
  const std::vector<Key> keys = {{WM_KEYDOWN, 'A'},       {WM_CHAR, 'a'},   {WM_KEYDOWN, VK_ESCAPE},
                                 {WM_CHAR, VK_ESCAPE},    {WM_KEYUP, 'A'},  {WM_KEYUP, VK_ESCAPE},
                                 {WM_SYSKEYDOWN, VK_F10}, {WM_KEYDOWN, 'B'}};
  for (const Key& key : keys) PostMessageA(window.window(), key.message, key.key, 0);
  PostMessageA(window.window(), WM_APP, 0, 0);
  EXPECT_TRUE(TakeEscapeMessageNow());
  EXPECT_FALSE(TakeEscapeMessageNow());
  std::vector<Key> left;
  MSG message;
  while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE)) {
    if (message.message == WM_APP) continue;
    left.push_back({message.message, message.wParam});
    EXPECT_EQ(message.hwnd, window.window());
  }
  EXPECT_EQ(left, (std::vector<Key>{{WM_KEYDOWN, 'A'},
                                    {WM_CHAR, 'a'},
                                    {WM_CHAR, VK_ESCAPE},
                                    {WM_KEYUP, 'A'},
                                    {WM_SYSKEYDOWN, VK_F10},
                                    {WM_KEYDOWN, 'B'}}));
}

// PeekMessage hands out WM_QUIT for any range of messages: the application's loop must still end.
TEST(EscapeKeyWin32, TheApplicationsQuitIsNotSwallowed) {
  DrainQueue();
  PostThreadMessageA(GetCurrentThreadId(), WM_KEYDOWN, 'A', 0);
  PostQuitMessage(42);
  EXPECT_FALSE(TakeEscapeMessageNow());
  EXPECT_FALSE(TakeEscapeMessageNow());
  MSG message;
  ASSERT_TRUE(PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE));
  EXPECT_EQ(message.message, UINT{WM_KEYDOWN});
  ASSERT_TRUE(PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE));
  EXPECT_EQ(message.message, UINT{WM_QUIT});
  EXPECT_EQ(message.wParam, 42u);
}

// Presses `button` of the message box called `title` once it stands.
std::thread Press(const std::string& title, int button) {
  return std::thread([title, button] {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (std::chrono::steady_clock::now() < deadline) {
      const HWND box = FindWindowA("#32770", title.c_str());
      if (box != nullptr && GetDlgItem(box, button) != nullptr) {
        PostMessageA(box, WM_COMMAND, static_cast<WPARAM>(button), 0);
        return;
      }
      std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
  });
}

TEST(PromptWin32, ButtonsGiveTheAnswer) {
  const std::string title = "zyr-prompt-" + std::to_string(GetCurrentProcessId());
  struct Case {
    PromptKind kind;
    int button;
    bool answer;
  };
  for (const Case& c :
       {Case{PromptKind::kQuestion, IDYES, true}, Case{PromptKind::kQuestion, IDNO, false},
        Case{PromptKind::kError, IDOK, true}, Case{PromptKind::kWarning, IDOK, true}}) {
    std::thread user = Press(title, c.button);
    EXPECT_EQ(ShowPrompt(nullptr, "text", title, c.kind), c.answer);
    user.join();
  }
}

}  // namespace
}  // namespace zyr::platform
