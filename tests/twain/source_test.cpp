// Who is let in, what the source tells of itself, and how a connection, a dialog and a series of
// transfers begin and end, with the application coming back in wherever it can.
#include <new>
#include <stdexcept>

#include "platform/directories.h"
#include "tests/twain/source_fixture.h"

namespace zyr {
namespace {

TEST_F(SourceTest, StartsAtTheFirstCallAndOnce) {
  host::SetVersionResource(platform::ModulePath(),
                           {"040904b0", {{{"040904b0", "ProductVersion"}, "1.7.0.1"}}, {}});
  host::PutFile("C:\\de.Phrases", "Deutsch\r\n\"Bad value error.\" = \"Falsch.\"\r\n");
  SetLanguageFile("C:\\de.Phrases");
  SetLogging(true);
  EXPECT_FALSE(host::FileBytes("C:\\ZYRTWAIN.Log"));
  TW_IDENTITY garbage;  // managers ask with an origin that nobody has filled in
  std::memset(&garbage, 0x5A, sizeof garbage);
  TW_IDENTITY own{};
  EXPECT_EQ(RunEntry({&garbage, DG_CONTROL, DAT_IDENTITY, MSG_GET, &own}), TWRC_SUCCESS);
  EXPECT_EQ(
      FormatText("%lu %s %u.%u %u %u %u.%u %lu", Lu(own.Id), own.Version.Info, own.Version.MajorNum,
                 own.Version.MinorNum, own.Version.Language, own.Version.Country, own.ProtocolMajor,
                 own.ProtocolMinor, Lu(own.SupportedGroups)),
      "0 v1.7 1.7 13 1 1.9 3");
  EXPECT_STREQ(own.Manufacturer, "Korvida, Inc.");
  EXPECT_STREQ(own.ProductFamily, "TWAIN");
  EXPECT_STREQ(own.ProductName, "ZYR TWAIN");

  const std::string log = host::FileBytes("C:\\ZYRTWAIN.Log").value_or("");
  EXPECT_NE(log.find("\\ZYR\\ZYRTWAIN.ds\r\n"), std::string::npos);
  EXPECT_EQ(Send(DG_CONTROL, DAT_STATUS, MSG_GET, nullptr), TWRC_FAILURE);
  EXPECT_EQ(Boxes(), Lines{"General failure in response to DAT_STATUS.  Falsch."});
  const std::string more = host::FileBytes("C:\\ZYRTWAIN.Log").value_or("");
  EXPECT_EQ(more.compare(0, log.size(), log), 0) << "not opened a second time";
  EXPECT_NE(more.find("Falsch.\r\n"), std::string::npos) << "each line goes out at once";

  source_.reset();
  EXPECT_EQ(Open(), TWRC_FAILURE) << "there is no source";
}

TEST_F(SourceTest, ServesOneApplication) {
  TW_IDENTITY identity{};
  TW_IDENTITY other = application_;
  other.Id = 8;
  ASSERT_EQ(Open(), TWRC_SUCCESS);
  EXPECT_EQ(RunEntry({nullptr, DG_CONTROL, DAT_IDENTITY, MSG_GET, &identity}), TWRC_SUCCESS);
  EXPECT_EQ(+identity.Id, 42u) << "the number that the manager gave";
  StartTrace();
  for (void* origin : {static_cast<void*>(&other), kNowhere}) {
    EXPECT_EQ(RunEntry({static_cast<TW_IDENTITY*>(origin), DG_CONTROL, DAT_IDENTITY, MSG_CLOSEDS,
                        nullptr}),
              TWRC_FAILURE);
  }
  EXPECT_EQ(source_->state(), 4);
  EXPECT_TRUE(Boxes().empty());
  EXPECT_TRUE(Trace().empty());
}

TEST_F(SourceTest, OffersEventsToTheDialogFirst) {
  int message = 0;
  TW_EVENT event{&message, MSG_XFERREADY};
  const auto send = [&](void* data) { return Send(DG_IMAGE, 0, MSG_PROCESSEVENT, data); };
  EXPECT_EQ(send(&event), TWRC_NOTDSEVENT) << "no dialog yet";
  GoTo(5);
  StartTrace();
  bool isForDialog = false;
  host::OnOfferToDialog([&](platform::Window dialog, void* offered) {
    EXPECT_EQ(dialog, view_->window);
    EXPECT_EQ(offered, &message);
    return isForDialog;
  });
  EXPECT_EQ(send(&event), TWRC_NOTDSEVENT);
  EXPECT_EQ(event.TWMessage, MSG_XFERREADY);
  isForDialog = true;
  EXPECT_EQ(send(&event), TWRC_DSEVENT);
  EXPECT_EQ(event.TWMessage, MSG_NULL);
  EXPECT_EQ(send(nullptr), TWRC_NOTDSEVENT);
  EXPECT_EQ(send(kNowhere), TWRC_NOTDSEVENT);
  EXPECT_TRUE(Trace().empty());
  ASSERT_EQ(Disable(), TWRC_SUCCESS);
  EXPECT_EQ(send(&event), TWRC_NOTDSEVENT) << "the window is gone";
}

// The handlers leave the dispatch status alone, and control triplets do not even clear it.
TEST_F(SourceTest, TracesTheDispatchStatus) {
  GoTo(4);
  StartTrace();
  Send(DG_CONTROL, DAT_FILESYSTEM, MSG_GET, nullptr);
  EXPECT_EQ(Status(), TWCC_SUCCESS) << "not what DAT_STATUS tells";
  Send(DG_IMAGE, DAT_IMAGEINFO, MSG_GET, nullptr);
  EXPECT_EQ(Status(), TWCC_SEQERROR);
  EXPECT_EQ(Status(), TWCC_SUCCESS) << "told once";
  Trace();
  Send(DG_IMAGE, 999, 10, nullptr);
  Disable();
  Send(DG_IMAGE, DAT_IMAGEINFO, MSG_GET, nullptr);
  EXPECT_EQ(
      Trace(),
      (Lines{"Dispatch (State = 4): DG_IMAGE / <Unknown (999)> / <Unknown (10)>",
             "   RC = TWRC_FAILURE  CC = TWCC_BADPROTOCOL  State = 4",
             "Dispatch (State = 4): DG_CONTROL / DAT_USERINTERFACE / MSG_DISABLEDS",
             "Error: General failure in response to MSG_DISABLEDS.  DG DAT MSG is out of expected "
             "sequence.",
             "   RC = TWRC_FAILURE  CC = TWCC_BADPROTOCOL  State = 4",
             "Dispatch (State = 4): DG_IMAGE / DAT_IMAGEINFO / MSG_GET",
             "Error: General failure in transfer.  DG DAT MSG is out of expected sequence.",
             "   RC = TWRC_FAILURE  CC = TWCC_SUCCESS  State = 4"}));
}

TEST_F(SourceTest, ShowsFailuresToTheOwner) {
  host::FakeWindow parent;
  userInterface_.hParent = parent.window();
  GoTo(5);
  // While the box stands, the application goes on.
  host::OnPrompt([&](const host::ShownPrompt&) {
    EXPECT_EQ(Status(), TWCC_SEQERROR);
    EXPECT_EQ(Close(), TWRC_SUCCESS);
  });
  EXPECT_EQ(Enable(), TWRC_FAILURE);
  const host::ShownPrompt& box = host::ShownPrompts().front();
  EXPECT_EQ(box.title, "ZYR TWAIN");
  EXPECT_EQ(box.owner, parent.window());
  EXPECT_EQ(box.kind, platform::PromptKind::kError);
  EXPECT_EQ(source_->state(), 3);
}

TEST_F(SourceTest, NotifiesThroughTheManager) {
  GoTo(5);
  host::OnManagerCall([&](const host::ManagerCall& call) {
    EXPECT_EQ(source_->state(), 6) << "the application may start its transfer inside the call";
    EXPECT_EQ(call.origin, &source_->identity_);
    EXPECT_EQ(call.destination, &source_->appIdentity_);
    EXPECT_EQ(call.dataGroup, DG_CONTROL);
    EXPECT_EQ(call.dataArgumentType, DAT_NULL);
    EXPECT_EQ(call.data, nullptr);
  });
  source_->NotifyXferReady();
  source_->NotifyCloseDSReq();
  ASSERT_EQ(host::ManagerCalls().size(), 2u);
  EXPECT_EQ(host::ManagerCalls()[0].message, MSG_XFERREADY);
  EXPECT_EQ(host::ManagerCalls()[1].message, MSG_CLOSEDSREQ);
}

TEST_F(SourceTest, TranslatesExceptions) {
  struct Case {
    std::function<void()> thrower;
    TW_UINT16 code;
    const char* what;
  };
  GoTo(4);
  StartTrace();
  for (const Case& each : {Case{[] { throw std::bad_alloc(); }, TWCC_LOWMEMORY, "std::bad_alloc"},
                           Case{[] { throw std::runtime_error("torn"); }, TWCC_BUMMER, "torn"},
                           Case{[] { throw 5; }, TWCC_BUMMER, "unknown"}}) {
    onMakeView_ = each.thrower;
    EXPECT_EQ(Enable(), TWRC_FAILURE);
    EXPECT_EQ(Trace().back(), std::string("Exception in DS_Entry: ") + each.what);
    EXPECT_EQ(Status(), each.code);
    EXPECT_EQ(source_->state(), 4);
  }
  // From a box inside the creation of the dialog: nothing of it may be left.
  onMakeView_ = {};
  SetCheckForConflicts(true);
  host::OnPrompt([&](const host::ShownPrompt&) { throw std::bad_alloc(); });
  EXPECT_EQ(Enable(), TWRC_FAILURE);
  EXPECT_EQ(view_->viewsMade, 1);
  EXPECT_FALSE(view_->windowAlive());
  EXPECT_EQ(source_->state(), 4);
  // A connection without its options is none.
  Close();
  source_->failToLoad = true;
  EXPECT_EQ(Open(), TWRC_FAILURE);
  EXPECT_EQ(source_->state(), 3);
  EXPECT_EQ(+source_->appIdentity_.Id, 0u);
}

TEST_F(SourceTest, OpensWithTheDefaults) {
  ASSERT_EQ(Open(), TWRC_SUCCESS);
  EXPECT_EQ(source_->GetBitsPerPixel(TWPT_GRAY), 16);
  const auto& capabilities = source_->capabilities();
  EXPECT_EQ(capabilities.Find<ListCapability>(ICAP_PIXELTYPE)->values,
            std::vector<uint16_t>{TWPT_GRAY});
  EXPECT_EQ(capabilities.Find<BitDepthCapability>(ICAP_BITDEPTH)->FindEntry(TWPT_RGB), nullptr);
  Negotiate(CAP_XFERCOUNT, TWTY_INT16, 3);
  ASSERT_EQ(Close(), TWRC_SUCCESS);
  EXPECT_EQ(capabilities.FindCapStorageItem(CAP_XFERCOUNT), nullptr);
  SetDefaultBitDepth(8);
  ASSERT_EQ(Open(), TWRC_SUCCESS);
  EXPECT_EQ(source_->GetXferCount(), -1);
  EXPECT_EQ(source_->GetBitsPerPixel(TWPT_GRAY), 8);
}

TEST_F(SourceTest, OpeningNeedsAnOrigin) {
  for (void* origin : {static_cast<void*>(nullptr), kNowhere}) {
    EXPECT_EQ(RunEntry({static_cast<TW_IDENTITY*>(origin), DG_CONTROL, DAT_IDENTITY, MSG_OPENDS,
                        &given_}),
              TWRC_FAILURE);
    EXPECT_EQ(Status(), TWCC_BADVALUE);
    EXPECT_EQ(source_->state(), 3);
  }
  // With the number of an application left over it fails too, but opens.
  source_->appIdentity_.Id = 7;
  Boxes();
  EXPECT_EQ(Open(), TWRC_FAILURE);
  EXPECT_EQ(Boxes(), Lines{Box("General failure in response to MSG_OPENDS.", TWCC_MAXCONNECTIONS)});
  EXPECT_EQ(source_->state(), 4);
  EXPECT_EQ(source_->GetBitsPerPixel(TWPT_GRAY), 16);
}

// A dialog stays allocated after MSG_DISABLEDS, until the next one takes its place or the source is
// closed.
TEST_F(SourceTest, KeepsADisabledDialogWithoutItsWindow) {
  GoTo(5);
  const auto first = view_->dialog;
  EXPECT_EQ(Disable(), TWRC_SUCCESS);
  EXPECT_FALSE(view_->windowAlive());
  EXPECT_FALSE(first.expired());
  EXPECT_EQ(Enable(), TWRC_SUCCESS);
  EXPECT_TRUE(first.expired());
  EXPECT_TRUE(view_->windowAlive());
  source_->state_ = 3;
  EXPECT_EQ(Close(), TWRC_FAILURE);
  EXPECT_FALSE(view_->windowAlive()) << "gone all the same";
}

TEST_F(SourceTest, EnablesOnceWhateverTheParent) {
  for (void* parent : {static_cast<void*>(nullptr), kNowhere}) {
    userInterface_.hParent = parent;
    GoTo(5);
    const platform::Window window = view_->window;
    EXPECT_EQ(Enable(), TWRC_FAILURE);
    EXPECT_EQ(Status(), TWCC_SEQERROR);
    EXPECT_EQ(source_->state(), 5);
    EXPECT_EQ(view_->window, window) << "the dialog of the first call stands";
    EXPECT_TRUE(view_->windowAlive());
    Close();
  }
}

TEST_F(SourceTest, TellsThatADialogCannotBeMade) {
  GoTo(4);
  StartTrace();
  view_->canBeMade = false;
  EXPECT_EQ(Enable(), TWRC_FAILURE);
  EXPECT_EQ(source_->state(), 4);
  EXPECT_EQ(platform::CurrentResources(), host::HostProgramResources()) << "put back";
  const std::string text =
      Box("General failure in response to MSG_ENABLEDS.", TWCC_CHECKDEVICEONLINE);
  EXPECT_EQ(Boxes(), Lines{text});
  const auto own = reinterpret_cast<uintptr_t>(platform::OwnResources());
  const auto before = reinterpret_cast<uintptr_t>(host::HostProgramResources());
  const Lines lines = Trace();
  EXPECT_EQ(Lines(lines.end() - 4, lines.end() - 1),
            (Lines{FormatText("Resources -> %zX, %zX", own, before),
                   FormatText("Unable to create TWAIN dialog (%zX, %zX, %zX); ", own, before, own),
                   "Error: " + text}));
  EXPECT_EQ(Status(), TWCC_CHECKDEVICEONLINE);
}

// Without its settings file a dialog shows a box and asks to be closed while it is being made. A
// manager with callbacks brings the application's answer back at once.
TEST_F(SourceTest, SurvivesAnApplicationThatComesBackDuringEnabling) {
  SetCheckForConflicts(true);
  for (const int32_t stateAfter : {5, 3, 4}) {
    GoTo(4);
    host::OnManagerCall([&](const host::ManagerCall&) {
      EXPECT_EQ(Disable(), TWRC_FAILURE);
      if (stateAfter == 5) return static_cast<void>(Pending(MSG_ENDXFER));
      EXPECT_EQ(Close(), TWRC_SUCCESS);
      if (stateAfter == 4) Open();
    });
    EXPECT_EQ(Enable(), TWRC_FAILURE);
    EXPECT_EQ(source_->conditionCode_.ConditionCode, TWCC_SEQERROR);
    EXPECT_EQ(source_->state(), stateAfter);
    EXPECT_TRUE(view_->dialog.expired());
    if (stateAfter == 5) Close();
  }
  host::OnPrompt([&](const host::ShownPrompt&) {
    host::OnPrompt({});
    SetCheckForConflicts(false);
    EXPECT_EQ(Enable(), TWRC_SUCCESS);
  });
  EXPECT_EQ(Enable(), TWRC_FAILURE);
  EXPECT_EQ(source_->state(), 5);
  EXPECT_TRUE(view_->windowAlive()) << "the dialog of the second call stands";
}

TEST_F(SourceTest, SurvivesClosingFromInsideTheDialog) {
  GoTo(5);
  host::OnManagerCall([&](const host::ManagerCall&) {
    EXPECT_EQ(Close(), TWRC_SUCCESS);
    EXPECT_FALSE(view_->windowAlive());
  });
  view_->Press(kCommandCancel);
  EXPECT_EQ(source_->state(), 3);
  EXPECT_TRUE(view_->dialog.expired());
}

TEST_F(SourceTest, KeepsNewCodesFromOldApplications) {
  struct Case {
    TW_UINT16 major, minor, code;
  };
  TW_CAPABILITY capability{ICAP_JPEGQUALITY, 0, nullptr};
  for (const Case& each : {Case{1, 6, TWCC_CAPUNSUPPORTED}, Case{1, 5, TWCC_BADCAP},
                           Case{0, 0, TWCC_BADCAP}, Case{2, 4, TWCC_CAPUNSUPPORTED}}) {
    application_.ProtocolMajor = each.major;
    application_.ProtocolMinor = each.minor;
    GoTo(4);
    EXPECT_EQ(Send(DG_CONTROL, DAT_CAPABILITY, MSG_GET, &capability), TWRC_FAILURE);
    EXPECT_EQ(Status(), each.code) << each.major << "." << each.minor;
    Close();
  }
  EXPECT_TRUE(Boxes().empty());
}

TEST_F(SourceTest, CountsPendingTransfers) {
  struct Case {
    int images, selected;
    int16_t requested;
    bool onlyOne;
    TW_UINT16 count;
  };
  const Case cases[] = {{3, 0, -1, false, 3}, {3, 0, 0, false, 3}, {3, 2, -1, false, 2},
                        {3, 2, 5, false, 5},  {3, 0, 1, false, 1}, {3, 2, 5, true, 1},
                        {0, 0, 5, false, 0},  {0, 0, -1, true, 0}};
  GoTo(5);
  for (const Case& each : cases) {
    images_.DeleteAll();
    for (int i = 0; i < each.images; ++i) AddImage(8, 1, {1});
    for (int i = 0; i < each.selected; ++i) images_.SetSelected(static_cast<size_t>(i), true);
    Negotiate(CAP_XFERCOUNT, TWTY_INT16, static_cast<uint16_t>(each.requested));
    SetOnlyReturnOneImage(each.onlyOne);
    EXPECT_EQ(Pending(MSG_GET), TWRC_SUCCESS);
    EXPECT_EQ(pending_.Count, each.count) << &each - cases;
  }
}

// The end of a transfer takes an image in whatever state it comes, and without any left it leads to
// state 5.
TEST_F(SourceTest, EndsTransfersInAnyState) {
  for (const int32_t state : {3, 4, 5, 6, 7}) {
    AddImage(8, 1, {1});
    GoTo(4);
    source_->state_ = state;
    EXPECT_EQ(Pending(MSG_ENDXFER), TWRC_SUCCESS);
    EXPECT_EQ(images_.GetCount(), 0u);
    EXPECT_EQ(source_->state(), 5);
    Close();
  }
  EXPECT_TRUE(host::ManagerCalls().empty()) << "there is no dialog to close";
  // Once an image went as the only one, none is offered until the module is loaded again.
  SetOnlyReturnOneImage(true);
  AddImage(8, 1, {1});
  GoTo(4);
  EXPECT_EQ(Pending(MSG_GET), TWRC_SUCCESS);
  EXPECT_EQ(pending_.Count, 0);
}

// The last image's end asks the application to close the source. With a manager that calls back it
// does so inside the call, and the source must not come back to state 5 without an application.
TEST_F(SourceTest, LeavesTheStateToAnApplicationThatCloses) {
  for (const bool close : {false, true}) {
    AddImage(8, 1, {1});
    GoTo(7);
    host::OnManagerCall([&](const host::ManagerCall&) {
      Disable();
      if (close) Close();
    });
    EXPECT_EQ(Pending(MSG_ENDXFER), TWRC_SUCCESS);
    EXPECT_EQ(source_->state(), close ? 3 : 4);
    host::OnManagerCall({});
    Close();
  }
}

}  // namespace
}  // namespace zyr
