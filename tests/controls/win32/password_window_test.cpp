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
#include "tests/support/win32/window_test.h"

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

class PasswordWindowTest : public test::ModalDialogTest {
 protected:
  void SetUp() override { ForgetPassword(); }
  void TearDown() override {
    SetPhraseLookup(nullptr);
    ForgetPassword();
  }

  bool Run(Acts acts) {
    view_ = MakeWin32PasswordDialogView();
    return RunWith(std::move(acts), [&] { return PasswordDialog(*view_).Run(nullptr); });
  }
  HWND Window() const override { return static_cast<HWND>(view_->window()); }
  void Close() override { view_->End(false); }
  void Type(int field, const char* text) const { SetWindowTextA(Control(field), text); }
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

  std::unique_ptr<PasswordDialogView> view_;
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
    if (!IsWindowEnabled(Control(IDOK))) ActAgain();
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
