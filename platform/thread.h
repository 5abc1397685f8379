// A thread of its own for work that takes long. A module stays loaded while a thread of it runs.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>

namespace zyr::platform {

// A thread that was started. Letting go of it neither ends the thread nor waits for it.
class Thread {
 public:
  virtual ~Thread() = default;

  // Lets the thread go ahead of all other work of the process. Not checked: at worst the thread
  // keeps its ordinary priority.
  virtual void MakeTimeCritical() = 0;
  // Waits for the end of the thread, in real time: false if it still runs after so many
  // milliseconds. Messages that it sends to windows of the caller are handled meanwhile, so that
  // the two do not wait for each other. Not for use while the module is being unloaded, when no
  // thread can end.
  virtual bool Join(uint32_t milliseconds) = 0;
};

// Starts `procedure`, which must not throw, on a new thread with the default stack; what it returns
// is the thread's result. If the program has unloaded the module meanwhile, the module goes with
// the thread, and its objects are destroyed there. What the procedure holds is gone when Join says
// so. Null, with the system's error number, if there is no thread to be had.
std::unique_ptr<Thread> StartThread(std::function<uint32_t()> procedure, uint32_t* error);

}  // namespace zyr::platform
