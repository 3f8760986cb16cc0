#pragma once

#include <string>

#include "support/Checksum.h"

/// Lines for the tests of decoders.
namespace marisonde::lines {

using marisonde::WithChecksum;

/// A numeric record with that many commas: "1,1,1".
inline std::string Record(int commas) {
    std::string line = "1";
    for (int i = 0; i < commas; ++i) line += ",1";
    return line;
}

// The examples whose fields the tests work out by hand.
inline const std::string kBehindTime =
    "03E8"
    "07D0"
    "0BB8"
    "0FA0"
    "1388"
    "1770"
    "FFFF"
    "0000"
    "12345678"
    "1F40"
    "3C"
    "02";  // pressure 8000, temperature count 60, error 2
inline const std::string kSample = "*D4960A5F8" + kBehindTime;        // 1231070712 s
inline const std::string kHundredths = "*T4960A5F832" + kBehindTime;  // and 50 hundredths
/// Slot i: signal 1000 + i, offset 16, reference 2016, offset 16 of it, background 5.
inline const std::string kVerbose =
    "*V4960A5F8"
    "03E8001007E0001005"
    "03E9001007E0001005"
    "03EA001007E0001005"
    "03EB001007E0001005"
    "03EC001007E0001005"
    "03ED001007E0001005"
    "03EE001007E0001005"
    "03EF001007E0001005"
    "12345678"
    "1F40"
    "32"
    "78"
    "50"
    "C8";
inline const std::string kHousekeeping =
    "*H4960A5F8"
    "000100020003FF"
    "FFFF8000000080"
    "0000000000007F"
    "00000000000000"
    "00000000000000"
    "00000000000000"
    "00000000000000"
    "00AB00CD00EF05"
    "78"
    "7B"
    "05"
    "1234";
inline const std::string kLTidal =
    "*A1234567819"
    "0400"
    "3"
    "FFFFFF"
    "8000"
    "0C8";
inline const std::string kTidalExtra =
    "*I78"
    "0100"
    "05"
    "06"
    "3000"
    "4000";
/// 360000 hundredths; slot i: 1000 + i, 16, 2016, 16; skipped 90 to 97; gains 1 to 8; 60, 8000, 118, 120.
inline const std::string kVerboseDecimal =
    "360000,"
    "1000,16,2016,16,1001,16,2016,16,1002,16,2016,16,1003,16,2016,16,"
    "1004,16,2016,16,1005,16,2016,16,1006,16,2016,16,1007,16,2016,16,"
    "90,91,92,93,94,95,96,97,1,2,3,4,5,6,7,8,60,8000,118,120,";
inline const std::string kDelph = "1231070712,1000,1100,2000,2100,8000,1250,2010,-2020";

}  // namespace marisonde::lines
