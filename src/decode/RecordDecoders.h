#pragma once

#include <string_view>

#include "decode/RawSample.h"

/// One decoder per form of record. None of them tests a checksum; a field that cannot be read is 0.
namespace marisonde::detail {

void DecodeCorvaneSample(std::string_view line, RawSample& sample);            // "*D"
void DecodeCorvaneHundredths(std::string_view line, RawSample& sample);        // "*T"
void DecodeCorvaneVerbose(std::string_view line, RawSample& sample);           // "*V"
void DecodeCorvaneVerboseDecimal(std::string_view record, RawSample& sample);  // 53 commas
void DecodeLTidal(std::string_view line, RawSample& sample);                   // "*A"
void DecodeNTidal(std::string_view line, RawSample& sample);                   // "*C"
void DecodeTidalExtra(std::string_view line, RawSample& sample);               // "*I"
/// Fields that the record does not reach keep what the sample before had.
void DecodeTidalDecimal(std::string_view record, RawSample& sample);
void DecodeDelph(std::string_view record, RawSample& sample);
/// The same, going on to the supply voltage.
void DecodeDelphFull(std::string_view record, RawSample& sample);

/// The record behind the leading time field of kinds 10 and 12.
std::string_view BehindFirstComma(std::string_view line);

}  // namespace marisonde::detail
