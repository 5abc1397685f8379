// Reads an XML text into a document. More than the standard's grammar is accepted in places and
// less in others: white space almost everywhere, tokens and tag names in upper and lower case. No
// reference is resolved.
#pragma once

#include <cstdint>

#include "foundation/support/memory_stream.h"
#include "foundation/xml/xml_document.h"

namespace zyr {

// Levels of elements with content, and of groups in a content model. A deeper text is refused. A
// level takes less than 600 bytes of stack, so that any thread of a host program bears the deepest.
constexpr uint32_t kMaxXmlDepth = 256;

// One parse at a time, on one thread.
class XmlParser {
 public:
  virtual ~XmlParser() = default;

  // Parses a zero-terminated text, which is only read. False for null, without a message.
  bool ParseText(const char* text, XmlDocument* target, uint32_t prologRequired);
  // Parses from the stream's position, and leaves the stream behind what was parsed or, on failure,
  // where it was. The document is cleared before and holds no root after a failure. With
  // `prologRequired` 0 the XML declaration may be missing; the text begins with the root then. On
  // failure the last error text says why, in English; after success that text means nothing. The
  // last error code is not touched.
  bool Parse(MemoryStream* stream, XmlDocument* target, uint32_t prologRequired);

  uint32_t errorPosition = 0;  // offset in the stream at which the last failure was reported
  // In use while a parse is under way, else null.
  MemoryStream* input = nullptr;
  XmlDocument* document = nullptr;
};

}  // namespace zyr
