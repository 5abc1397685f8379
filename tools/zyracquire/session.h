// An acquisition from the opening of the manager to its closing.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "tools/zyracquire/capabilities.h"
#include "tools/zyracquire/manager_port.h"
#include "tools/zyracquire/options.h"
#include "twain/twain_types.h"

namespace zyr {

struct Surroundings {
  TW_HANDLE parentWindow = nullptr;
  // Runs the message loop until the source has something to say or time is up.
  std::function<SourceEvent(TW_IDENTITY* source)> wait;
  bool showProgress = false;
};

// Whatever has been opened is closed at the end, in order, however far it came.
class Session {
 public:
  Session(ManagerPort& manager, const AcquireOptions& options, Surroundings surroundings);
  ~Session();
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  ExitStatus Run();

 private:
  bool OpenManager();
  std::vector<TW_IDENTITY> Sources();
  ExitStatus ListSources();
  bool FindSource();
  bool ChooseByName();
  bool OpenSourceNow();
  ExitStatus Acquire();
  ExitStatus WaitForImages();
  ExitStatus TakeImages();
  TW_UINT16 PendingImages(TW_UINT16 message);
  void Close();
  void Explain(const std::string& what) const;

  OpenSource source() { return OpenSource(manager_, &identity_); }

  ManagerPort& manager_;
  const AcquireOptions& options_;
  const Surroundings surroundings_;
  TW_IDENTITY identity_{};
  int state_ = 2;  // of the TWAIN standard
  AgreedTerms terms_;
};

}  // namespace zyr
