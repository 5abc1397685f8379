// TWAIN numbers in words, for the log, the settings views and the error messages. A number without
// a name gives "<Unknown (number)>", translated.
#pragma once

#include <cstdint>
#include <string>

namespace zyr {

// Constant names of the standard.
std::string DataGroupName(uint32_t value);
std::string DataArgumentTypeName(uint32_t value);
std::string MessageName(uint32_t value);
std::string ResultName(uint32_t value);
std::string ConditionCodeName(uint32_t value);
std::string CapabilityName(uint32_t value);

// Words for values, translated.
std::string BooleanName(uint32_t value);
std::string EnabledName(uint32_t value);
std::string LampStateName(uint32_t value);
std::string PixelFlavorName(uint32_t value);
std::string XferMechName(uint32_t value);  // "Enumeration" for any other
std::string PlanarChunkyName(uint32_t value);
std::string CompressionName(uint32_t value);
std::string UnitsName(uint32_t value);
std::string PixelTypeName(uint32_t value);
std::string BitOrderName(uint32_t value);
std::string ImageFileFormatName(uint32_t value);
std::string LightPathName(uint32_t value);
std::string ContainerTypeName(uint32_t value);

// The sentence that tells the user of a condition code, in English.
const char* ConditionCodeSentence(uint32_t value);

}  // namespace zyr
