#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

#include "calibration/CalibrationDataClass.h"

namespace marisonde {

/// Length of the binary calibration of the Tidal instruments.
inline constexpr std::size_t kCalImageSize = 128;

/// True for 128 bytes whose first byte names a Tidal model (0xA? or 0xC?).
bool IsCalImage(std::string_view bytes);
/// Packed decimal: 12 bits of mantissa times 10 to the power 3 less the upper 4 bits.
double Dec16(std::uint16_t word);
/// Model and serial number of an image; `image` has 128 bytes.
CalFileType CalImageType(std::string_view image);
/// Fills the object from 128 bytes of image. False, and no change, for another length.
bool ReadCalImageBytes(std::string_view image, CalibrationDataClass& calibration);
/// Fills the object from an image file and brings its derived values up to date.
CalFileResult ReadCalImage(const std::filesystem::path& path, CalibrationDataClass& calibration,
                           const SigmaParams& params, const PureWaterParams& water);

}  // namespace marisonde
