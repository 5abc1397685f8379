// The triplets that open, enable, disable and close the source, and those that ask what it is and
// what went wrong.
#include <algorithm>
#include <iterator>
#include <string>

#include "foundation/log/log.h"
#include "foundation/support/format.h"
#include "foundation/support/phrase_lookup.h"
#include "twain/source.h"

namespace zyr {
namespace {

constexpr const char* kIdentityFailure = PhraseKey("General failure in response to DAT_IDENTITY.");
constexpr const char* kOpenFailure = PhraseKey("General failure in response to MSG_OPENDS.");
constexpr const char* kEnableFailure = PhraseKey("General failure in response to MSG_ENABLEDS.");
constexpr const char* kStatusFailure = PhraseKey("General failure in response to DAT_STATUS.");

constexpr uint32_t kIndent = 5;

// The texts of a foreign identity may lack their terminating zero.
std::string TextOf(const TW_STR32& field) {
  return {field, std::find(std::begin(field), std::end(field), '\0')};
}

void LogApplication(const TW_IDENTITY& application) {
  LogFile& log = Log();
  log.WriteLine("Calling Application:");
  log.WriteIndentedLine(kIndent, "ID = %08lX", Lu(application.Id));
  log.WriteIndentedLine(kIndent, "Version = %lu.%lu", Lu(application.Version.MajorNum),
                        Lu(application.Version.MinorNum));
  log.WriteIndentedLine(kIndent, "ProtocolMajor = %lu", Lu(application.ProtocolMajor));
  log.WriteIndentedLine(kIndent, "ProtocolMinor = %lu", Lu(application.ProtocolMinor));
  log.WriteIndentedLine(kIndent, "SupportedGroups = %08lX", Lu(application.SupportedGroups));
  log.WriteIndentedLine(kIndent, "Manufacturer = %s", TextOf(application.Manufacturer).c_str());
  log.WriteIndentedLine(kIndent, "ProductFamily = %s", TextOf(application.ProductFamily).c_str());
  log.WriteIndentedLine(kIndent, "ProductName = %s", TextOf(application.ProductName).c_str());
}

}  // namespace

TW_UINT16 TwainSource::DISPATCHMSG_Identity(const Triplet& triplet) {
  switch (triplet.message) {
    case MSG_GET:
      if (auto* identity = WritableRecord<TW_IDENTITY>(triplet)) {
        *identity = identity_;
        return TWRC_SUCCESS;
      }
      return Fail(kIdentityFailure, TWCC_BADVALUE);
    case MSG_OPENDS:
      return OpenDS(triplet);
    case MSG_CLOSEDS:
      return CloseDS(triplet);
    default:
      return Fail(kIdentityFailure, TWCC_BADPROTOCOL);
  }
}

TW_UINT16 TwainSource::OpenDS(const Triplet& triplet) {
  if (state_ != 3) return Fail(kOpenFailure, TWCC_SEQERROR);
  TW_UINT16 result = TWRC_SUCCESS;
  if (appIdentity_.Id != 0) {
    result = Fail(kOpenFailure, TWCC_MAXCONNECTIONS);  // opened all the same
  } else {
    result = Connect(triplet);
    if (result != TWRC_SUCCESS) return result;
  }
  LogApplication(appIdentity_);
  state_ = 4;
  try {
    LoadDefaultOptions();
  } catch (...) {
    Disconnect();
    throw;
  }
  return result;
}

// The manager hands over the source's own identity with the number that it has given it.
TW_UINT16 TwainSource::Connect(const Triplet& triplet) {
  const auto* identity = ReadableRecord<TW_IDENTITY>(triplet);
  const bool hasOrigin = platform::IsReadable(triplet.origin, sizeof *triplet.origin);
  if (identity == nullptr || !hasOrigin) return Fail(kOpenFailure, TWCC_BADVALUE);
  appIdentity_ = *triplet.origin;
  identity_ = *identity;
  return TWRC_SUCCESS;
}

// The data is not looked at: managers pass anything here.
TW_UINT16 TwainSource::CloseDS(const Triplet&) {
  if (state_ < 4) {
    return Fail(PhraseKey("General failure in response to MSG_CLOSEDS."), TWCC_SEQERROR);
  }
  Disconnect();
  return TWRC_SUCCESS;
}

void TwainSource::Disconnect() {
  appIdentity_.Id = 0;
  state_ = 3;
  capabilities_.Clear();
}

void TwainSource::LoadDefaultOptions() { capabilities_.Load(); }

TW_UINT16 TwainSource::DISPATCHMSG_UserInterface(const Triplet& triplet) {
  switch (triplet.message) {
    case MSG_ENABLEDS:
      capabilities_.LogSettings(nullptr);
      return EnableDS(triplet);
    case MSG_DISABLEDS:
      return DisableDS(triplet);
    default:
      return Fail(PhraseKey("General failure in response to DAT_USERINTERFACE."), TWCC_BADPROTOCOL);
  }
}

// Whether the application asked for a dialog, and for a modal one, makes no difference: it gets
// one.
TW_UINT16 TwainSource::EnableDS(const Triplet& triplet) {
  if (state_ != 4) return Fail(kEnableFailure, TWCC_SEQERROR);
  const auto* userInterface = ReadableRecord<TW_USERINTERFACE>(triplet);
  if (userInterface == nullptr) return Fail(kEnableFailure, TWCC_BADVALUE);
  parentWindow_ = userInterface->hParent;
  return TWRC_SUCCESS;
}

TW_UINT16 TwainSource::DisableDS(const Triplet&) {
  if (state_ < 5) {
    return Fail(PhraseKey("General failure in response to MSG_DISABLEDS."), TWCC_SEQERROR);
  }
  state_ = 4;  // first, since the window's end may bring the application back in
  platform::DestroyWindowOf(dialogWindow_);
  return TWRC_SUCCESS;
}

TW_UINT16 TwainSource::DISPATCHMSG_Capability(const Triplet& triplet) {
  TW_UINT16 conditionCode = conditionCode_.ConditionCode;
  const TW_UINT16 result = capabilities_.HandleCapMessage(triplet, &conditionCode);
  // Applications up to protocol 1.5 do not know the codes that came later.
  const bool isOld = appIdentity_.ProtocolMajor <= 1 && appIdentity_.ProtocolMinor <= 5;
  if (isOld && conditionCode > TWCC_BADDEST) conditionCode = TWCC_BADCAP;
  conditionCode_.ConditionCode = conditionCode;
  return result;
}

TW_UINT16 TwainSource::DISPATCHMSG_Status(const Triplet& triplet) {
  if (triplet.message != MSG_GET) return Fail(kStatusFailure, TWCC_BADPROTOCOL);
  auto* status = WritableRecord<TW_STATUS>(triplet);
  if (status == nullptr) return Fail(kStatusFailure, TWCC_BADVALUE);
  *status = conditionCode_;
  conditionCode_.ConditionCode = TWCC_SUCCESS;
  return TWRC_SUCCESS;
}

TW_UINT16 TwainSource::DISPATCHMSG_Event(const Triplet&) {
  return Fail(PhraseKey("TWAIN source does not support the Event command"), TWCC_CAPUNSUPPORTED);
}

TW_UINT16 TwainSource::DISPATCHMSG_Parent(const Triplet&) {
  return Fail(PhraseKey("TWAIN source does not support the Parent command"), TWCC_CAPUNSUPPORTED);
}

}  // namespace zyr
