#include "foundation/xml/xml_parser.h"

#include <cstring>
#include <string>
#include <utility>

#include "foundation/support/error.h"
#include "foundation/xml/grammar.h"

namespace zyr {
namespace {

void SetLastText(std::string text) { SetErrorText(LastErrorCode(), std::move(text)); }

}  // namespace

bool XmlParser::ParseText(const char* text, XmlDocument* target, uint32_t prologRequired) {
  if (text == nullptr) return false;
  MemoryStream stream;
  stream.Attach(const_cast<char*>(text), std::strlen(text), false);
  return Parse(&stream, target, prologRequired);
}

bool XmlParser::Parse(MemoryStream* stream, XmlDocument* target, uint32_t prologRequired) {
  if (stream == nullptr || !stream->IsOpen() || target == nullptr) {
    SetLastText("Invalid parameter specified");
    return false;
  }
  input = stream;
  document = target;
  xml::Scanner scanner({stream->data(), stream->size()}, stream->Tell());
  const bool parsed = xml::ParseDocument(scanner, *target, prologRequired != 0);
  if (parsed) stream->Seek(static_cast<int64_t>(scanner.Tell()));
  errorPosition = static_cast<uint32_t>(scanner.FailurePosition());
  SetLastText(scanner.FailureText());
  input = nullptr;
  document = nullptr;
  return parsed;
}

}  // namespace zyr
