// libjpeg's errors, brought back to the one frame that started the work.
#pragma once

#include <csetjmp>
#include <cstddef>
#include <cstdio>

#include <jpeglib.h>

namespace zyr {

// libjpeg leaves by longjmp, which skips destructors: between setjmp on `jump` and the calls into
// libjpeg there must be no object that has one. Warnings are swallowed.
struct JpegErrors {
  jpeg_error_mgr manager;  // first: libjpeg hands back its address
  std::jmp_buf jump;
  char message[JMSG_LENGTH_MAX];
};

// For codec.err.
jpeg_error_mgr* PrepareJpegErrors(JpegErrors& errors);

}  // namespace zyr
