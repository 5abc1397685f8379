#include "tools/zyracquire/session.h"

#include <algorithm>
#include <cstdio>
#include <utility>

#include "tools/zyracquire/report.h"
#include "tools/zyracquire/transfer.h"

namespace zyr {
namespace {

// A manager that never ends its list must not keep us for ever.
constexpr size_t kMostSources = 1000;

}  // namespace

Session::Session(ManagerPort& manager, const AcquireOptions& options, Surroundings surroundings)
    : manager_(manager), options_(options), surroundings_(std::move(surroundings)) {}

Session::~Session() { Close(); }

ExitStatus Session::Run() {
  if (!OpenManager()) return kExitNoSource;
  if (options_.list) return ListSources();
  if (!FindSource() || !OpenSourceNow()) return kExitNoSource;
  if (options_.caps) {
    std::printf("%s\n\n", DescribeSource(identity_).c_str());
    return PrintCapabilities(source());
  }
  return Acquire();
}

void Session::Explain(const std::string& what) const {
  std::fprintf(stderr, "zyracquire: %s: %s\n", what.c_str(),
               DescribeConditionCode(manager_.conditionCode()).c_str());
}

bool Session::OpenManager() {
  TW_HANDLE window = surroundings_.parentWindow;
  if (manager_.Call(nullptr, DG_CONTROL, DAT_PARENT, MSG_OPENDSM, &window) != TWRC_SUCCESS) {
    Explain("the data source manager cannot be opened");
    return false;
  }
  state_ = 3;
  return true;
}

std::vector<TW_IDENTITY> Session::Sources() {
  std::vector<TW_IDENTITY> sources;
  TW_IDENTITY identity{};
  TW_UINT16 message = MSG_GETFIRST;
  while (sources.size() < kMostSources &&
         manager_.Call(nullptr, DG_CONTROL, DAT_IDENTITY, message, &identity) == TWRC_SUCCESS) {
    sources.push_back(identity);
    message = MSG_GETNEXT;
  }
  return sources;
}

ExitStatus Session::ListSources() {
  const std::vector<TW_IDENTITY> sources = Sources();
  if (sources.empty()) {
    std::fprintf(stderr, "zyracquire: no data source is installed\n");
    return kExitNoSource;
  }
  TW_IDENTITY chosen{};
  const bool hasDefault =
      manager_.Call(nullptr, DG_CONTROL, DAT_IDENTITY, MSG_GETDEFAULT, &chosen) == TWRC_SUCCESS;
  for (const TW_IDENTITY& identity : sources) {
    const bool star =
        hasDefault && FieldText(identity.ProductName) == FieldText(chosen.ProductName);
    std::printf("%c %s\n", star ? '*' : ' ', DescribeSource(identity).c_str());
  }
  return kExitDone;
}

bool Session::ChooseByName() {
  const std::vector<TW_IDENTITY> sources = Sources();
  const auto found = std::find_if(sources.begin(), sources.end(), [&](const TW_IDENTITY& identity) {
    return ContainsIgnoringCase(FieldText(identity.ProductName), options_.source);
  });
  if (found != sources.end()) {
    identity_ = *found;
    return true;
  }
  std::string known;
  for (const TW_IDENTITY& identity : sources) {
    known += (known.empty() ? " There is: " : ", ") + FieldText(identity.ProductName);
  }
  std::fprintf(stderr, "zyracquire: there is no source whose name holds '%s'.%s\n",
               options_.source.c_str(), known.c_str());
  return false;
}

bool Session::FindSource() {
  if (!options_.source.empty()) return ChooseByName();
  if (manager_.Call(nullptr, DG_CONTROL, DAT_IDENTITY, MSG_GETDEFAULT, &identity_) ==
      TWRC_SUCCESS) {
    return true;
  }
  Explain("there is no default source");
  return false;
}

bool Session::OpenSourceNow() {
  const TW_UINT16 result = manager_.Call(nullptr, DG_CONTROL, DAT_IDENTITY, MSG_OPENDS, &identity_);
  if (result != TWRC_SUCCESS) {
    Explain("the source " + FieldText(identity_.ProductName) + " cannot be opened");
    return false;
  }
  state_ = 4;
  return true;
}

ExitStatus Session::Acquire() {
  const ExitStatus negotiated = Negotiate(source(), options_, &terms_);
  if (negotiated != kExitDone) return negotiated;
  TW_USERINTERFACE ui{1, 0, surroundings_.parentWindow};
  if (source().Control(DAT_USERINTERFACE, MSG_ENABLEDS, &ui) == TWRC_FAILURE) {
    Explain("the source does not start");
    return kExitFailed;
  }
  state_ = 5;
  const ExitStatus waited = WaitForImages();
  return waited == kExitDone ? TakeImages() : waited;
}

ExitStatus Session::WaitForImages() {
  switch (surroundings_.wait(&identity_)) {
    case SourceEvent::kXferReady:
      state_ = 6;
      return kExitDone;
    case SourceEvent::kCloseRequest:
      std::fprintf(stderr, "zyracquire: the source was closed before it gave an image\n");
      return kExitNoImage;
    default:
      std::fprintf(stderr, "zyracquire: no image came within %u seconds\n",
                   options_.timeoutSeconds);
      return kExitTimeout;
  }
}

TW_UINT16 Session::PendingImages(TW_UINT16 message) {
  TW_PENDINGXFERS pending{};
  const TW_UINT16 result = source().Control(DAT_PENDINGXFERS, message, &pending);
  if (result == TWRC_FAILURE) {
    Explain("the transfer cannot be ended");
    return 0;
  }
  state_ = pending.Count == 0 ? 5 : 6;
  return pending.Count;
}

ExitStatus Session::TakeImages() {
  for (uint32_t number = 1;; ++number) {
    ImageTransfer transfer(source(), options_, terms_, surroundings_.showProgress);
    // With an image that is not safe with us the transfer is not ended, or the source would give it
    // up.
    const ExitStatus taken = transfer.Take(number);
    if (taken != kExitDone) return taken;
    if (PendingImages(MSG_ENDXFER) == 0) return state_ == 5 ? kExitDone : kExitFailed;
    if (number == options_.count) return kExitDone;
  }
}

void Session::Close() {
  if (state_ >= 6) PendingImages(MSG_RESET);
  if (state_ >= 5) {
    TW_USERINTERFACE ui{1, 0, surroundings_.parentWindow};
    source().Control(DAT_USERINTERFACE, MSG_DISABLEDS, &ui);
  }
  if (state_ >= 4) manager_.Call(nullptr, DG_CONTROL, DAT_IDENTITY, MSG_CLOSEDS, &identity_);
  if (state_ >= 3) {
    TW_HANDLE window = surroundings_.parentWindow;
    manager_.Call(nullptr, DG_CONTROL, DAT_PARENT, MSG_CLOSEDSM, &window);
  }
  state_ = 2;
}

}  // namespace zyr
