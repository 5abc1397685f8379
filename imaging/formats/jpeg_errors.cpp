#include "imaging/formats/jpeg_errors.h"

namespace zyr {
namespace {

[[noreturn]] void ExitOnError(j_common_ptr codec) {
  auto* const errors = reinterpret_cast<JpegErrors*>(codec->err);
  codec->err->format_message(codec, errors->message);
  std::longjmp(errors->jump, 1);
}

void SwallowMessage(j_common_ptr, int) {}

}  // namespace

jpeg_error_mgr* PrepareJpegErrors(JpegErrors& errors) {
  jpeg_std_error(&errors.manager);
  errors.manager.error_exit = ExitOnError;
  errors.manager.emit_message = SwallowMessage;
  errors.message[0] = '\0';
  return &errors.manager;
}

}  // namespace zyr
