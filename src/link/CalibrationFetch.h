#pragma once

#include <QCoroTask>
#include <functional>
#include <string>
#include <vector>

#include "link/InstrumentLink.h"
#include "optics/PureWaterParams.h"
#include "optics/SigmaParams.h"
#include "platform/Operations.h"

namespace marisonde {

/// What came of fetching a calibration. Only Arrived leaves one in the object; otherwise it is cleared.
enum class FetchOutcome {
    Arrived,
    Silent,      ///< no byte for kFetchSilence
    Cancelled,   ///< the operation or ConnectStage said stop
    BrokenLine,  ///< the port closed or its device vanished
    Damaged,  ///< an answer came, but not of this instrument's model, or with characters no instrument sends
};

/// A fetch in which nothing new comes for this long has failed.
inline constexpr Millis kFetchSilence{10000};
/// Corvane instruments that do not answer GCF in this time have the file store.
inline constexpr Millis kGcfAnswer{5000};

/// What a fetch needs beside the window. All that is referred to outlives the fetch.
struct FetchRequest {
    const SigmaParams& sigma;
    const PureWaterParams& water;
    CalibrationDataClass* target =
        nullptr;             ///< null: the window's calibration, whose CalReady follows the outcome
    bool comparing = false;  ///< the object is read back to be compared
    /// Title (may be empty: as before) and text for a progress display; may be empty.
    std::function<void(const std::string& title, const std::string& text)> onProgress{};
    std::vector<std::string>* messages =
        nullptr;  ///< takes what is to be told the user, such as missing tables
};

/// By the route of the family. ConnectStage must not be kConnectEnded when a fetch begins: it would end at
/// once.
QCoro::Task<FetchOutcome> LoadCalFromInstrument(Operation& operation, InstrumentLink& window,
                                                FetchRequest request);
/// The whole calibration file of the instrument's file store.
QCoro::Task<FetchOutcome> LoadCalMultiC(Operation& operation, InstrumentLink& window, FetchRequest request);
/// Global values, then channel by channel. An instrument that does not know GCF is asked for its file.
QCoro::Task<FetchOutcome> LoadCalGcfCcl(Operation& operation, InstrumentLink& window, FetchRequest request);
/// The image or the text dump of the Tidal instruments.
QCoro::Task<FetchOutcome> LoadCalDump(Operation& operation, InstrumentLink& window, FetchRequest request);

}  // namespace marisonde
