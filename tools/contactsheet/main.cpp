// contactsheet FILE.png: draws every image operation before and after, for people to look at.
#include <cstdio>

#include "tools/contactsheet/operations.h"
#include "tools/images/picture_file.h"

int main(int argc, char** argv) {
  if (argc != 2 || argv[1][0] == '-') {
    std::fputs("usage: contactsheet FILE.png\n", stderr);
    return 2;
  }
  constexpr uint32_t kColumns = 3;
  const zyr::GreyPicture sheet =
      zyr::LayOut("Image operations, before and after", zyr::ShowOperations(), kColumns);
  if (!zyr::WriteBytes(zyr::EncodePng(sheet), argv[1])) {
    std::fprintf(stderr, "contactsheet: %s cannot be written\n", argv[1]);
    return 1;
  }
  return 0;
}
