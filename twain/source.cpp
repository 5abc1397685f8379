#include "twain/source.h"

#include <algorithm>
#include <cstring>

#include "foundation/log/log.h"
#include "foundation/support/file_version.h"
#include "foundation/support/format.h"
#include "foundation/support/phrase_lookup.h"
#include "platform/directories.h"
#include "platform/manager.h"
#include "platform/prompt.h"
#include "settings/phrases.h"
#include "settings/store.h"
#include "twain/names.h"

namespace zyr {
namespace {

struct Route {
  TW_UINT32 dataGroup;
  TW_UINT16 dataArgumentType;
  TW_UINT16 (TwainSource::*handler)(const Triplet&);
};

constexpr Route kRoutes[] = {
    {DG_CONTROL, DAT_CAPABILITY, &TwainSource::DISPATCHMSG_Capability},
    {DG_CONTROL, DAT_EVENT, &TwainSource::DISPATCHMSG_Event},
    {DG_CONTROL, DAT_IDENTITY, &TwainSource::DISPATCHMSG_Identity},
    {DG_CONTROL, DAT_PARENT, &TwainSource::DISPATCHMSG_Parent},
    {DG_CONTROL, DAT_PENDINGXFERS, &TwainSource::DISPATCHMSG_PendingXfers},
    {DG_CONTROL, DAT_SETUPMEMXFER, &TwainSource::DISPATCHMSG_SetupMemXfer},
    {DG_CONTROL, DAT_SETUPFILEXFER, &TwainSource::DISPATCHMSG_SetupFileXfer},
    {DG_CONTROL, DAT_STATUS, &TwainSource::DISPATCHMSG_Status},
    {DG_CONTROL, DAT_USERINTERFACE, &TwainSource::DISPATCHMSG_UserInterface},
    {DG_CONTROL, DAT_XFERGROUP, &TwainSource::DISPATCHMSG_XferGroup},
    {DG_IMAGE, DAT_IMAGEINFO, &TwainSource::DISPATCHMSG_ImageInfo},
    {DG_IMAGE, DAT_IMAGELAYOUT, &TwainSource::DISPATCHMSG_ImageLayout},
    {DG_IMAGE, DAT_IMAGEMEMXFER, &TwainSource::DISPATCHMSG_ImageMemXfer},
    {DG_IMAGE, DAT_IMAGENATIVEXFER, &TwainSource::DISPATCHMSG_ImageNativeXfer},
    {DG_IMAGE, DAT_IMAGEFILEXFER, &TwainSource::DISPATCHMSG_ImageFileXfer},
    {DG_IMAGE, DAT_CIECOLOR, &TwainSource::DISPATCHMSG_CieColor},
    {DG_IMAGE, DAT_GRAYRESPONSE, &TwainSource::DISPATCHMSG_GrayResponse},
    {DG_IMAGE, DAT_RGBRESPONSE, &TwainSource::DISPATCHMSG_RgbResponse},
    {DG_IMAGE, DAT_JPEGCOMPRESSION, &TwainSource::DISPATCHMSG_JpegCompression},
    {DG_IMAGE, DAT_PALETTE8, &TwainSource::DISPATCHMSG_Palette8},
    {DG_IMAGE, DAT_EXTIMAGEINFO, &TwainSource::DISPATCHMSG_ExtImageInfo},
};

const Route* FindRoute(const Triplet& triplet) {
  const auto found = std::find_if(std::begin(kRoutes), std::end(kRoutes), [&](const Route& route) {
    return route.dataGroup == triplet.dataGroup &&
           route.dataArgumentType == triplet.dataArgumentType;
  });
  return found == std::end(kRoutes) ? nullptr : found;
}

template <size_t size>
void SetText(char (&field)[size], const std::string& text) {
  std::memset(field, 0, size);
  text.copy(field, size - 1);
}

TW_VERSION OwnVersion() {
  const auto numbers = ParseVersionNumbers(GetFileVersionText(platform::ModulePath()));
  TW_VERSION version{};
  if (numbers) {
    version.MajorNum = static_cast<TW_UINT16>((*numbers)[0]);
    version.MinorNum = static_cast<TW_UINT16>((*numbers)[1]);
  }
  version.Language = TWLG_USA;
  version.Country = TWCY_USA;
  SetText(version.Info, FormatText("v%lu.%lu", Lu(version.MajorNum), Lu(version.MinorNum)));
  return version;
}

}  // namespace

TwainSource* sourceInstance = nullptr;

void FillIdentityRamp(std::span<TW_ELEMENT8> elements) {
  TW_UINT8 i = 0;
  for (TW_ELEMENT8& element : elements) {
    element = {i, i, i, i};
    ++i;
  }
}

TwainSource::TwainSource() : productName_("TWAIN") {
  FillIdentityRamp(grayResponse_);
  FillIdentityRamp(rgbResponse_);
  sourceInstance = this;
}

TwainSource::~TwainSource() { sourceInstance = nullptr; }

bool TwainSource::Initialize() {
  identity_ = {};
  identity_.Version = OwnVersion();
  identity_.ProtocolMajor = TWON_PROTOCOLMAJOR;
  identity_.ProtocolMinor = TWON_PROTOCOLMINOR;
  identity_.SupportedGroups = DG_CONTROL | DG_IMAGE;
  SetText(identity_.Manufacturer, "Korvida, Inc.");
  SetText(identity_.ProductFamily, "TWAIN");
  SetText(identity_.ProductName, productName_);
  dispatchStatus_ = {};
  appIdentity_.Id = 0;
  return true;
}

void TwainSource::Start() {
  if (started_) return;
  Initialize();
  started_ = true;
  Phrases().Load(GetLanguageFile());
}

// A manager that asks for the identity before it opens the source may pass an origin that nobody
// has filled in, or none at all, so it is only looked at while an application is connected.
bool TwainSource::ServesCaller(const TW_IDENTITY* origin) const {
  if (origin == nullptr || appIdentity_.Id == 0) return true;
  return platform::IsReadable(origin, sizeof *origin) && origin->Id == appIdentity_.Id;
}

TW_UINT16 TwainSource::Enter(const Triplet& triplet) {
  if (!ServesCaller(triplet.origin)) return TWRC_FAILURE;
  if (triplet.message == MSG_PROCESSEVENT) return ProcessEvent(triplet);
  // Triplets of DG_CONTROL keep what the last one left.
  if (triplet.dataGroup != DG_CONTROL && triplet.dataArgumentType != DAT_STATUS) {
    dispatchStatus_.ConditionCode = TWCC_SUCCESS;
  }
  return Dispatch(triplet);
}

// Not traced: it comes with every message of the application's loop.
TW_UINT16 TwainSource::ProcessEvent(const Triplet& triplet) {
  auto* event = WritableRecord<TW_EVENT>(triplet);
  if (event == nullptr || dialogWindow_ == nullptr) return TWRC_NOTDSEVENT;
  if (!platform::OfferToDialog(dialogWindow_, event->pEvent)) return TWRC_NOTDSEVENT;
  event->TWMessage = MSG_NULL;
  return TWRC_DSEVENT;
}

TW_UINT16 TwainSource::Dispatch(const Triplet& triplet) {
  Log().WriteLine(
      "Dispatch (State = %lu): %s / %s / %s", Lu(state_), DataGroupName(triplet.dataGroup).c_str(),
      DataArgumentTypeName(triplet.dataArgumentType).c_str(), MessageName(triplet.message).c_str());
  TW_UINT16 result = TWRC_FAILURE;
  if (const Route* route = FindRoute(triplet)) {
    result = (this->*route->handler)(triplet);
  } else {
    dispatchStatus_.ConditionCode = TWCC_BADPROTOCOL;
  }
  Log().WriteLine("   RC = %s  CC = %s  State = %lu", ResultName(result).c_str(),
                  ConditionCodeName(dispatchStatus_.ConditionCode).c_str(), Lu(state_));
  return result;
}

TW_UINT16 TwainSource::Fail(const char* text, TW_UINT16 conditionCode) {
  return FailTranslated(GetPhrase(text), conditionCode);
}

TW_UINT16 TwainSource::FailTranslated(const std::string& text, TW_UINT16 conditionCode) {
  conditionCode_.ConditionCode = conditionCode;
  DisplayError(text, conditionCode);
  return TWRC_FAILURE;
}

TW_UINT16 TwainSource::FailLogged(const char* text, TW_UINT16 conditionCode, const char* logLine) {
  Fail(text, conditionCode);
  Log().WriteText(logLine);
  return TWRC_FAILURE;
}

void TwainSource::DisplayError(const std::string& text, TW_UINT16 conditionCode) {
  const std::string gap = text.empty() ? "" : "  ";
  const std::string message = text + gap + GetPhrase(ConditionCodeSentence(conditionCode));
  platform::ShowPrompt(parentWindow_, message, productName_, platform::PromptKind::kError);
  Log().WriteLine("Error: %s", message.c_str());
}

void TwainSource::OnXferReady() {}

void TwainSource::NotifyXferReady() {
  Log().WriteLine("NotifyXferReady");
  OnXferReady();
  state_ = 6;  // the application may start its transfer inside the call
  platform::CallManager(&identity_, &appIdentity_, DG_CONTROL, DAT_NULL, MSG_XFERREADY, nullptr);
}

void TwainSource::NotifyCloseDSReq() {
  Log().WriteLine("NotifyCloseDSReq");
  platform::CallManager(&identity_, &appIdentity_, DG_CONTROL, DAT_NULL, MSG_CLOSEDSREQ, nullptr);
}

}  // namespace zyr
