#include "controls/password_window.h"

#include <windows.h>

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "controls/dialog_window.h"
#include "foundation/support/phrase_lookup.h"
#include "resources/resource.h"
#include "settings/password/hardware_password.h"
#include "settings/password/password_dialog.h"
#include "settings/settings_key.h"

namespace zyr {
namespace {

void ForgetPassword() {
  for (const char* value : {"HardwarePassword", "HardwarePasswordTries"}) {
    RegDeleteKeyValueA(HKEY_LOCAL_MACHINE, kSettingsKey, value);
  }
}

// Four times as long, and no word of it too long for a line.
std::string Lengthened(const char* text) {
  std::string longer = text;
  if (longer.empty()) return longer;
  for (int i = 0; i < 3; ++i) longer += std::string(" ") + text;
  return longer;
}

class PasswordWindowTest : public testing::Test {
 protected:
  void SetUp() override { ForgetPassword(); }
  void TearDown() override {
    SetPhraseLookup(nullptr);
    ForgetPassword();
  }

  // The user's acts follow each other as the window's loop comes by. The last one is to close it.
  bool Run(std::vector<std::function<void()>> acts) {
    view_ = MakeWin32PasswordDialogView();
    acts_ = std::move(acts);
    next_ = 0;
    test_ = this;
    const UINT_PTR timer = SetTimer(nullptr, 0, 10, Act);
    const bool accepted = PasswordDialog(*view_).Run(nullptr);
    KillTimer(nullptr, timer);
    EXPECT_EQ(next_, acts_.size()) << "the dialog closed early or not by itself";
    EXPECT_EQ(view_->window(), nullptr);
    return accepted;
  }
  static void CALLBACK Act(HWND, UINT, UINT_PTR, DWORD) {
    if (!IsWindowVisible(test_->Window())) return;
    const size_t now = test_->next_++;
    if (now < test_->acts_.size()) return test_->acts_[now]();
    test_->view_->End(false);
  }

  HWND Window() const { return static_cast<HWND>(view_->window()); }
  HWND Control(int id) const { return GetDlgItem(Window(), id); }
  void Type(int field, const char* text) const { SetWindowTextA(Control(field), text); }
  void Press(WPARAM key) const {
    MSG press = {GetFocus(), WM_KEYDOWN, key, 0, 0, {}};
    if (!IsDialogMessageA(Window(), &press)) DispatchMessageA(&press);
  }
  RECT PlaceOf(int id) const {
    RECT place;
    GetWindowRect(Control(id), &place);
    MapWindowPoints(nullptr, Window(), reinterpret_cast<POINT*>(&place), 2);
    return place;
  }
  void ExpectTextFits(int id) const {
    const HWND control = Control(id);
    const RECT place = PlaceOf(id);
    const HDC dc = GetDC(control);
    SelectObject(dc, reinterpret_cast<HFONT>(SendMessageA(control, WM_GETFONT, 0, 0)));
    RECT needed = {0, 0, place.right - place.left, 0};
    DrawTextA(dc, WindowText(control).c_str(), -1, &needed, DT_CALCRECT | DT_WORDBREAK);
    ReleaseDC(control, dc);
    EXPECT_LE(needed.right, place.right - place.left) << WindowText(control);
    EXPECT_LE(needed.bottom, place.bottom - place.top) << WindowText(control);
    RECT client;
    GetClientRect(Window(), &client);
    EXPECT_LT(place.right, client.right);
    EXPECT_LT(place.bottom, client.bottom);
  }

  static inline PasswordWindowTest* test_ = nullptr;
  std::unique_ptr<PasswordDialogView> view_;
  std::vector<std::function<void()>> acts_;
  size_t next_ = 0;
};

TEST_F(PasswordWindowTest, TheFirstOneIsTypedTwice) {
  SetPhraseLookup([](const char* text) { return Lengthened(text); });
  EXPECT_TRUE(Run({[this] {
                     EXPECT_EQ(GetFocus(), Control(IDC_PASSWORD));
                     for (const int id : {IDC_PASSWORD_MESSAGE, IDC_PASSWORD_LABEL,
                                          IDC_REPETITION_LABEL, IDOK, IDCANCEL}) {
                       ExpectTextFits(id);
                     }
                     for (const int id : {IDC_PASSWORD, IDC_REPETITION}) {
                       EXPECT_TRUE(GetWindowLongA(Control(id), GWL_STYLE) & ES_PASSWORD);
                     }
                     Press(VK_TAB);
                     EXPECT_EQ(GetFocus(), Control(IDC_REPETITION));
                     Type(IDC_PASSWORD, "se&cret");
                     Press(VK_RETURN);
                   },
                   [this] {
                     EXPECT_EQ(view_->Password() + view_->Repetition(), "");
                     EXPECT_EQ(GetFocus(), Control(IDC_PASSWORD));
                     ExpectTextFits(IDC_PASSWORD_MESSAGE);
                     const LONG height = PlaceOf(IDOK).bottom;
                     view_->SetMessage(
                         Lengthened(WindowText(Control(IDC_PASSWORD_MESSAGE)).c_str()));
                     EXPECT_GT(PlaceOf(IDOK).bottom, height);
                     for (const int id : {IDC_PASSWORD_MESSAGE, IDOK}) ExpectTextFits(id);
                     Type(IDC_PASSWORD, "se&cret");
                     Type(IDC_REPETITION, "se&cret");
                     Press(VK_RETURN);
                   }}));
  EXPECT_TRUE(CheckHardwarePassword("se&cret"));
}

TEST_F(PasswordWindowTest, AWrongOneDisablesOKForItsTime) {
  ASSERT_TRUE(SetHardwarePassword("secret"));
  EXPECT_FALSE(Run({[this] {
                      EXPECT_EQ(Control(IDC_REPETITION), nullptr);
                      EXPECT_EQ(Control(IDC_REPETITION_LABEL), nullptr);
                      EXPECT_EQ(GetFocus(), Control(IDC_PASSWORD));
                      Type(IDC_PASSWORD, "wrong");
                      MoveFocusTo(Control(IDOK));
                      SendMessageA(Control(IDOK), BM_CLICK, 0, 0);
                      EXPECT_FALSE(IsWindowEnabled(Control(IDOK)));
                      EXPECT_EQ(GetFocus(), Control(IDC_PASSWORD));
                      Type(IDC_PASSWORD, "secret");
                      Press(VK_RETURN);
                    },
                    [this] {
                      EXPECT_NE(view_->window(), nullptr);
                      Press(VK_ESCAPE);
                    }}));
  const auto waitForOK = [this] {
    if (!IsWindowEnabled(Control(IDOK))) --next_;  // comes by again
  };
  EXPECT_TRUE(Run({waitForOK, [this] {
                     Type(IDC_PASSWORD, "secret");
                     Press(VK_RETURN);
                   }}));
}

TEST_F(PasswordWindowTest, MayBeDestroyedWhileItStands) {
  EXPECT_FALSE(Run({[this] {
    DestroyWindow(Window());
    view_->SetMessage("x");
    view_->ClearPassword();
    view_->SetOKEnabled(false);
    EXPECT_EQ(view_->Password() + view_->Repetition(), "");
    view_->End(true);
  }}));
}

}  // namespace
}  // namespace zyr
