#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "optics/SigmaParams.h"

namespace marisonde {

/// The boxes of the sigma parameters, in the order in which they are checked.
enum class SigmaBox : std::size_t { bTilde, aw, aStar, c, ad400, gammad, gammaY, p };
inline constexpr std::size_t kSigmaBoxes = 8;

/// The two pages of the form.
enum class SigmaPage { Corvane, NTidal };

/// The tables that come with the program.
struct SigmaTablePaths {
    std::string aStar;
    std::string aw;
};

/// What stands in the form of the sigma parameters, as the user typed it.
struct SigmaParamsEntry {
    std::array<std::string, kSigmaBoxes> boxes;
    bool cUseCV = false;
    bool older = false;  ///< the older form, with a box for the absorption of water

    std::string& operator[](SigmaBox box) { return boxes[static_cast<std::size_t>(box)]; }
    const std::string& operator[](SigmaBox box) const { return boxes[static_cast<std::size_t>(box)]; }
};

/// What is wrong with an entry, and where.
struct SigmaBoxError {
    SigmaBox box;
    std::string message;
};

/// What the form shows of the parameters in use.
SigmaParamsEntry EntryOf(const SigmaParams& params, const SigmaTablePaths& tables);
/// The defaults of one page.
void EnterDefaults(SigmaParamsEntry& entry, SigmaPage page, const SigmaTablePaths& tables);
/// The first box in use that is not right; nullopt when all are. The share p is idle beside the model.
std::optional<SigmaBoxError> ValidateParams(const SigmaParamsEntry& entry);
/// The parameters of an entry, tables included. `before`: what the form does not show, and the value of a
/// number that is not right.
SigmaParams ParamsOf(const SigmaParamsEntry& entry, const SigmaParams& before);

/// What the model of an entry gives at one wavelength, ready to be shown; "-----" where it gives nothing.
struct SigmaModelTexts {
    std::string a;        ///< absorption, 1/m, in the older form with that of the water
    std::string bbTilde;  ///< backscatter probability
};
SigmaModelTexts CalculateSigmaModel(const SigmaParamsEntry& entry, std::string_view wavelength);

}  // namespace marisonde
