#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string>

#include "optics/PureWaterParams.h"

namespace marisonde {

/// The boxes of the pure-water parameters, in the order in which they are checked.
enum class PureWaterBox : std::size_t { lambda0, beta0, bb0, gammaLambda, chi };
inline constexpr std::size_t kPureWaterBoxes = 5;

/// What is wrong with an entry, and where.
struct PureWaterBoxError {
    PureWaterBox box;
    std::string message;
};

/// What stands in the form of the pure-water parameters: a choice, and boxes that most choices fill and lock.
/// A locked box shows three digits of a value that is kept whole.
class PureWaterEntry {
  public:
    /// Shows the parameters in use, also where they are not what their choice would fill in now.
    explicit PureWaterEntry(const PureWaterParams& params);

    [[nodiscard]] PureWaterChoice Choice() const { return params_.Choice; }
    /// A model fills its values in, no water fills in none; the custom choice unlocks what stands there.
    void Choose(PureWaterChoice choice);
    void SetUseCalChi(bool on) { params_.UseCalChi = on; }
    void SetWriteBetaColumns(bool on) { params_.WriteBetaColumns = on; }
    [[nodiscard]] bool UseCalChi() const { return params_.UseCalChi; }
    [[nodiscard]] bool WriteBetaColumns() const { return params_.WriteBetaColumns; }

    [[nodiscard]] const std::string& Text(PureWaterBox box) const {
        return texts_[static_cast<std::size_t>(box)];
    }
    [[nodiscard]] bool Locked(PureWaterBox box) const;
    /// What the user types. A locked box stays as it is.
    void SetText(PureWaterBox box, std::string text);

    /// The first box that is not right; nullopt when all are. Locked boxes are not asked.
    [[nodiscard]] std::optional<PureWaterBoxError> Validate() const;
    /// The parameters of the entry. A box that is no number leaves the value before.
    [[nodiscard]] PureWaterParams Params() const;

  private:
    void FillTexts();

    PureWaterParams params_;  ///< the values behind locked boxes
    std::array<std::string, kPureWaterBoxes> texts_;
};

}  // namespace marisonde
