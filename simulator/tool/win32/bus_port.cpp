#include "simulator/tool/win32/bus_port.h"

#include <windows.h>

namespace zyr::simulator {
namespace {

class BusPort : public BusControl {
 public:
  explicit BusPort(HANDLE handle) : handle_(handle) {}
  ~BusPort() override { CloseHandle(handle_); }

  uint32_t Send(BusCode code, const std::vector<uint8_t>& input,
                std::vector<uint8_t>* output) override {
    DWORD returned = 0;
    if (!DeviceIoControl(handle_, code, const_cast<uint8_t*>(input.data()),
                         static_cast<DWORD>(input.size()), output->data(),
                         static_cast<DWORD>(output->size()), &returned, nullptr)) {
      const DWORD error = GetLastError();
      return error != 0 ? error : ERROR_GEN_FAILURE;
    }
    output->resize(returned);
    return 0;
  }

 private:
  HANDLE handle_;
};

}  // namespace

std::unique_ptr<BusControl> OpenBusPort() {
  const HANDLE handle =
      CreateFileA(kBusPath, GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                  nullptr, OPEN_EXISTING, 0, nullptr);
  if (handle == INVALID_HANDLE_VALUE) return nullptr;
  return std::make_unique<BusPort>(handle);
}

}  // namespace zyr::simulator
