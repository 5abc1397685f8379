// What tests of windows have in common.
#pragma once

#include <windows.h>

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace zyr::test {

// Of this run alone. Whoever asks makes it.
inline std::string FolderOfTest(const std::string& name) {
  char temp[MAX_PATH];
  GetTempPathA(sizeof temp, temp);
  return temp + name + "-" + std::to_string(GetCurrentProcessId());
}

// As the loop of the dialog does it.
inline void PressKey(HWND dialog, WPARAM key) {
  MSG press = {GetFocus(), WM_KEYDOWN, key, 0, 0, {}};
  if (!IsDialogMessageA(dialog, &press)) DispatchMessageA(&press);
}

inline RECT PlaceIn(HWND dialog, HWND control) {
  RECT place;
  GetWindowRect(control, &place);
  MapWindowPoints(nullptr, dialog, reinterpret_cast<POINT*>(&place), 2);
  return place;
}

inline void Pump() {
  MSG message;
  while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE)) DispatchMessageA(&message);
}

constexpr DWORD kPatience = 10'000;  // milliseconds

inline bool WaitFor(const std::function<bool()>& condition) {
  const DWORD start = GetTickCount();
  while (!condition() && GetTickCount() - start < kPatience) {
    Pump();
    Sleep(1);
  }
  return condition();
}

// Of a dialog with its own loop.
class ModalDialogTest : public testing::Test {
 protected:
  using Acts = std::vector<std::function<void()>>;

  // The dialog's, null before and after.
  virtual HWND Window() const = 0;
  virtual void Close() = 0;

  HWND Control(int id) const { return GetDlgItem(Window(), id); }
  RECT PlaceOf(int id) const { return PlaceIn(Window(), Control(id)); }
  void Press(WPARAM key) const { PressKey(Window(), key); }

  // The user's acts follow each other as loops come by, those of popups and of other dialogs
  // included. The last one is to close the dialog.
  bool RunWith(Acts acts, const std::function<bool()>& run) {
    acts_ = std::move(acts);
    next_ = 0;
    test_ = this;
    const UINT_PTR timer = SetTimer(nullptr, 0, 20, Act);
    const bool accepted = run();
    KillTimer(nullptr, timer);
    EXPECT_EQ(next_, acts_.size()) << "the dialog closed early or not by itself";
    EXPECT_EQ(Window(), nullptr);
    return accepted;
  }
  // For an act whose time has not come yet.
  void ActAgain() { --next_; }

  static inline ModalDialogTest* test_ = nullptr;

 private:
  static void CALLBACK Act(HWND, UINT, UINT_PTR, DWORD) {
    ModalDialogTest& test = *test_;
    if (test.acting_ || !IsWindowVisible(test.Window())) return;
    const size_t now = test.next_++;
    if (now >= test.acts_.size()) return test.Close();
    test.acting_ = true;
    test.acts_[now]();
    test.acting_ = false;
  }

  Acts acts_;
  size_t next_ = 0;
  bool acting_ = false;
};

}  // namespace zyr::test
