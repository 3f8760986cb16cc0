#pragma once

#include <string>
#include <vector>

#include "common/Settings.h"

namespace marisonde {

class DataWindow;

/// What every new window begins with: the calibration used last, if the user wants it recalled and it is
/// still there.
void LoadRecalledCalibration(DataWindow& window);

/// What may follow once the user has read a notice.
enum class AfterNotice { Nothing, CheckSigmaParams, OfferReleaseNotes };

/// One thing to say at the start of the program. OfferReleaseNotes: a question with Yes and No.
struct StartNotice {
    std::string text;
    AfterNotice after = AfterNotice::Nothing;
};

/// What the start of the program has found out.
struct StartFacts {
    bool newUser = false;
    std::vector<std::string> problems;  ///< and recovered data, as texts for the user
    int missingSigmaFiles = 0;
    bool offerReleaseNotes = true;
};

/// What there is to say, in its order: the notice for a new user comes first, the question about the release
/// notes, once for each version, last.
std::vector<StartNotice> StartNotices(const StartFacts& facts, const Settings& settings);
/// The question about the release notes of this version has been answered.
void NoteVersionSeen(Settings& settings);

}  // namespace marisonde
