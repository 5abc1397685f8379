// The memory blocks of TW_CAPABILITY. Each block that is built is movable memory of the size given
// at each function, stored in hContainer and owned by the application from then on. All functions
// return a TWCC_ value: TWCC_OPERATIONERROR for a null argument, TWCC_LOWMEMORY if a block cannot
// be had or locked (hContainer is null after a failed build), TWCC_BADVALUE for a container that is
// not what is asked for or whose block is too small for what it claims. Readers first set their
// outputs to empty, and leave the block to the application.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "twain/twain_types.h"

namespace zyr {

// Bytes of an item. A boolean has none and every string 34, whatever its type says: these sizes are
// what applications in the field have always been given.
uint32_t ItemSize(TW_UINT16 itemType);

// Both parts truncate toward zero and keep their low 16 bits. So a negative value with a fraction
// comes out one larger than it is, and a fraction that rounds up to 1 as 0. Infinity and not a
// number give 0.
TW_FIX32 ToFix32(double value);
double FromFix32(TW_FIX32 value);

// 6 bytes and the item, copied from `value`. What lies behind the item is zeroed, as applications
// read four bytes whatever the type. A boolean's four bytes stay as the allocator left them.
TW_UINT16 BuildOneValue(TW_CAPABILITY* capability, TW_UINT16 itemType, const void* value);
// 7 bytes and the items.
TW_UINT16 BuildArray(TW_CAPABILITY* capability, const std::vector<uint16_t>& values);
// 15 bytes and the items. The indices are those of the first equal item, 0 if there is none.
TW_UINT16 BuildEnumerationUint16(TW_CAPABILITY* capability, const std::vector<uint16_t>& values,
                                 uint16_t defaultValue, uint16_t currentValue);
TW_UINT16 BuildEnumerationUint16(TW_CAPABILITY* capability, uint32_t count, const uint16_t* list,
                                 uint16_t defaultValue, uint16_t currentValue);
TW_UINT16 BuildEnumerationFix32(TW_CAPABILITY* capability, const std::vector<double>& values,
                                double defaultValue, double currentValue);

// Items of either 16-bit type.
TW_UINT16 ReadOneValueUint16(const TW_CAPABILITY* capability, uint16_t* value);
TW_UINT16 ReadOneValueBool(const TW_CAPABILITY* capability, uint16_t* value);
TW_UINT16 ReadOneValueFix32(const TW_CAPABILITY* capability, double* value);
// In a 32-bit module the item is the address of the text, which is taken whole up to the 255
// characters of the longest type; in a 64-bit one, where no address fits, it holds the characters,
// as many as its type has.
TW_UINT16 ReadOneValueString(const TW_CAPABILITY* capability, std::string* value);
// Items of either 16-bit type. An index past the items leaves its item empty: in lists that they
// set, applications often leave the indices unfilled.
TW_UINT16 ReadEnumerationUint16(const TW_CAPABILITY* capability, std::vector<uint16_t>* values,
                                uint16_t* defaultItem, uint16_t* currentItem);
TW_UINT16 ReadEnumerationFix32(const TW_CAPABILITY* capability, std::vector<double>* values,
                               double* defaultItem, double* currentItem);

}  // namespace zyr
