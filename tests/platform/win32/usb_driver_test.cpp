#include "platform/usb_driver.h"

#include "tests/platform/usb_driver_contract.h"

namespace zyr::platform {

std::string RefusingDriverPath() { return "\\\\.\\NUL"; }

}  // namespace zyr::platform
