#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "calibration/ChannelCal.h"
#include "common/InstTypes.h"
#include "optics/PureWaterParams.h"
#include "optics/SigmaParams.h"

namespace marisonde {

/// Groups of calibration fields: bits of ChangedItems and of the masks of Compare and Merge.
namespace CalItems {
inline constexpr std::uint16_t Mu = 1;
inline constexpr std::uint16_t Offset = 2;
inline constexpr std::uint16_t Gain = 4;
inline constexpr std::uint16_t Identification = 8;
inline constexpr std::uint16_t Depth = 16;
inline constexpr std::uint16_t PolynomialSigma = 32;
inline constexpr std::uint16_t ExponentialSigma = 64;
inline constexpr std::uint16_t Configuration = 0x80;
inline constexpr std::uint16_t TemperatureCoefficient = 0x100;
inline constexpr std::uint16_t AttenuationParams = 0x200;
inline constexpr std::uint16_t Reference = 0x400;
inline constexpr std::uint16_t Comment = 0x800;
inline constexpr std::uint16_t FluorescenceMu = 0x1000;
inline constexpr std::uint16_t All = 0xFFFF;
}  // namespace CalItems

/// Where the reader of calibration text stands: the section and the channel that it named last.
struct CalSection {
    std::string name;
    int channel = 0;           ///< index from 0; may lie outside the arrays, then channel keys are lost
    bool attenuation = false;  ///< the section is one of an attenuation channel
};

/// Outcome of a load or save. `error` is the text for the user, empty after success and for a file that is
/// not there.
struct CalFileResult {
    bool ok = false;
    std::string error;
    std::vector<std::string> messages;  ///< what else to tell the user: tables without a value, each once
};

/// Everything that turns the raw counts of one instrument into physical values. Channel indices count from 0
/// to 12; an index outside is a fault of the caller unless a function says otherwise.
class CalibrationDataClass {
  public:
    double ModificationTime = 0;     ///< days since 30 December 1899; 0 never
    std::uint16_t ChangedItems = 0;  ///< groups edited since load or save
    std::string Comment;             ///< lines joined with nothing between
    InstTypeCode InstType = InstTypeCode::Unknown;
    float CalTemp = 0;   ///< degrees C
    double CalTime = 0;  ///< days since 30 December 1899
    float MaxDepth = 0;  ///< m
    std::string Label;
    std::string Serial;
    std::string Config;
    float DepthCal = 0;      ///< pressure slope
    float DepthOff = 0;      ///< pressure offset
    float kp1 = 0, kp2 = 0;  ///< pressure against temperature (Delph, Fathom)
    float P0 = 0;
    std::int32_t TP0 = 0;
    float kD1 = 0, kD2 = 0;  ///< depth polynomial (Delph, Fathom)

    // --- records ---------------------------------------------------------------------------------
    [[nodiscard]] const ChannelCal& Channel(int ch) const { return channels_[static_cast<std::size_t>(ch)]; }
    [[nodiscard]] const AttenuationCal& Attenuation(int ch) const {
        return attenuations_[static_cast<std::size_t>(ch)];
    }
    /// The fields that have no rules, for writing.
    ChannelPlain& EditChannel(int ch) { return channels_[static_cast<std::size_t>(ch)]; }
    AttenuationPlain& EditAttenuation(int ch) { return attenuations_[static_cast<std::size_t>(ch)]; }

    // --- writes with rules -----------------------------------------------------------------------
    /// Rounds to 6 decimals. Channels that share the receiver get the same gain: channel 2 from channel 1 of
    /// a Corvane-2, the reported virtual channel of a Corvane-6.
    void SetGain(int ch, int gainStep, double value);
    /// Measured at `muGain`: when that is another step than before, and 1 or 2, gains become relative to it.
    void SetMu(int ch, double value, int muGain);
    /// Keeps the channel's MuGain.
    void SetMu(int ch, double value) { SetMu(ch, value, Channel(ch).MuGain); }
    void SetMuGain(int ch, int muGain) {
        channels_[static_cast<std::size_t>(ch)].MuGain = static_cast<std::int16_t>(muGain);
    }
    /// False and no change for an index outside 0 to 2 ("Sigma array out of bounds.").
    bool SetSigma(int ch, int index, double value);
    void SetSigmaExp(int ch, double value);
    /// Keeps the whole number; a fraction above 0.0001 is the SigmaExp, as instruments store it.
    void SetROutOff(int ch, double value);
    /// A changed value marks every group as changed.
    void SetRNominal(int ch, double value);
    void SetChEx(int ch, int channelFrom1);
    void SetChRep(int ch, int channelFrom1);
    void SetKCalTemp(int ch, float value);
    void SetKTempCoeff(int ch, int index, float value);
    void SetKkT(int ch, int index, double value);
    void SetKTPW(int ch, float value);
    void SetKP(int ch, int index, double value);  ///< index 1 or 2
    void SetKkTauP(int ch, int index, double value);

    // --- questions -------------------------------------------------------------------------------
    /// The channel's name, or "Channel 1" and so on where the calibration gives none.
    [[nodiscard]] std::string ChannelName(int ch) const;
    /// Backscatter channels: 6, 4, 2 Corvane, 1 Tidal, otherwise 0.
    [[nodiscard]] int bChannels() const;
    /// Channels with values in data lines: 8, 4, 3 Corvane, 1 Tidal, 0 Delph, -1 unknown.
    [[nodiscard]] int ChannelCount() const { return ChannelSlots(InstType); }
    /// The virtual channel, from 1, that this receiver reports; 0 none.
    [[nodiscard]] int IsReceiverForVirtualChannel(int ch) const;
    [[nodiscard]] bool HasOffsets() const;
    /// The changed groups in words, joined with ", ".
    [[nodiscard]] std::string ChangedDescription() const;
    /// Sigma at the K of pure water (`salt`: of sea water), which older programs expect in files.
    [[nodiscard]] double OldSigmaK1(int ch, bool salt) const;
    [[nodiscard]] static int KkTUbound() { return NormalizedPolynomial::kUpperBound; }
    [[nodiscard]] static int KkTauPUbound() { return NormalizedPolynomial::kUpperBound; }

    // --- whole objects ---------------------------------------------------------------------------
    void Clear() { *this = CalibrationDataClass(); }
    /// Takes everything over; the flags of virtual channels are computed anew.
    void Copy(const CalibrationDataClass& source);
    /// Takes the groups in `mask` from `source`; SourceFile becomes "[multiple sources]".
    void Merge(const CalibrationDataClass& source, std::uint16_t mask);
    /// The groups in `mask` in which the two differ.
    [[nodiscard]] std::uint16_t Compare(const CalibrationDataClass& other, std::uint16_t mask) const;

    // --- derived values --------------------------------------------------------------------------
    /// MuGain by the step whose gain is exactly 1; step 1 wins a tie.
    void UpdateMuGains();
    /// Fills a and bbTilde of channels with a wavelength. A table without a value leaves the old one and
    /// gives its message once.
    std::vector<std::string> UpdateSigmaTables(const SigmaParams& params);
    /// Sigma(ch, 0) of all channels such that sigma is 1 in pure water.
    void UpdateSigmas(const SigmaParams& params, bool salt);
    /// All of the above: whoever loads a calibration, or changes parameters, runs it last. Returns the
    /// messages.
    std::vector<std::string> CheckAndUpdateAll(const SigmaParams& params, const PureWaterParams& water);

    // --- files -----------------------------------------------------------------------------------
    /// File or text the calibration came from.
    [[nodiscard]] const std::string& SourceFile() const { return sourceFile_; }
    /// The file last saved to if it still exists, otherwise SourceFile.
    [[nodiscard]] std::string SavedFile() const;
    /// Loads a calibration file, text or 128-byte image, and notes it as SourceFile. A file that is not there
    /// changes nothing; one that cannot be read leaves the object cleared.
    CalFileResult LoadSourceFile(const std::filesystem::path& path, const SigmaParams& params,
                                 const PureWaterParams& water);
    /// The same from text that is already here; SourceFile stays as it is.
    CalFileResult LoadText(std::string_view text, const SigmaParams& params, const PureWaterParams& water);
    /// Names the origin without loading anything, such as an instrument.
    void NoteSource(std::string_view source) { sourceFile_ = source; }
    /// One line of calibration text. Unknown keys are passed over.
    void ParseLineIntoCalClass(std::string_view line, CalSection& section);
    /// Channel names of an l-Tidal or n-Tidal, made of the wavelengths; nothing for other models.
    void NameTidalChannels();
    /// Excitation and report numbers of a Corvane-6 that has none, from wavelengths that are equal; nothing
    /// for other models.
    void InferSharedChannels();
    /// The calibration as text in the layout of its type.
    [[nodiscard]] std::string CalText(const PureWaterParams& water) const;
    /// Writes CalText, clears ChangedItems and notes the path as SavedFile.
    CalFileResult SaveCopyToFile(const std::filesystem::path& path, const PureWaterParams& water);
    /// The same, and the path becomes SourceFile.
    CalFileResult SaveAsFile(const std::filesystem::path& path, const PureWaterParams& water);

    bool operator==(const CalibrationDataClass&) const = default;

  private:
    void UpdateVirtualChannels();
    void UpdateTempNorm(int ch);
    void MergeMu(const CalibrationDataClass& source, int from, int to);
    void MergeGain(const CalibrationDataClass& source, int ch);
    std::vector<std::string> FinishLoad(const SigmaParams& params, const PureWaterParams& water);

    std::array<ChannelCal, kChannelSlots> channels_;
    std::array<AttenuationCal, kChannelSlots> attenuations_;
    std::string sourceFile_;
    std::string savedFile_;
};

/// Model and serial number of a calibration file, reading no more of it than needed.
struct CalFileType {
    InstTypeCode type = InstTypeCode::Unknown;
    std::string serial;
    std::string error;  ///< text for the user when the file could not be opened
};
CalFileType GetCalFileType(const std::filesystem::path& path);

}  // namespace marisonde
