#pragma once

#include <span>
#include <string>
#include <string_view>

#include "common/Clock.h"
#include "common/InstState.h"
#include "common/InstTypes.h"
#include "link/InstrumentLink.h"

namespace marisonde {

/// An instrument that says nothing for longer than this has no data.
inline constexpr Millis kNoDataTime = std::chrono::seconds(11);
/// So long after STOP data that still arrive do not count as sampling.
inline constexpr Millis kStopHold = std::chrono::seconds(4);

/// The word for a state as the user reads it, such as "Sampling" or "Starting: 5 s".
std::string StateWord(InstStateCode state, int startsInSeconds);

/// Brings the state that is shown (PrevInstState) up to the instrument's own, by the time-outs that hold an
/// awaited state up or replace a silent one by "No Data". Once a tick without `force`, after each command
/// with it. True when what is shown is to be painted again.
bool UpdateStatusDisplay(InstrumentLink& window, bool force);

/// What decides which commands of a window may be used, and how they are called.
struct StatusFacts {
    InstStateCode state = InstStateCode::NoConnection;  ///< as shown
    bool portOpen = false;
    bool connected = false;
    InstTypeCode model = InstTypeCode::Unknown;
    bool operator==(const StatusFacts&) const = default;
};
StatusFacts StatusFactsOf(const InstrumentLink& window);

/// When one menu item or button may be used.
struct ItemRule {
    std::string_view item;
    bool needsPort;    ///< only while the port is open
    bool whileAsleep;  ///< also while the instrument sleeps
    bool inDownload;   ///< also while a cast is downloaded
};
/// Every item that follows the instrument's state; those that a window does not have are passed over.
std::span<const ItemRule> ItemRules();
bool ItemEnabled(const ItemRule& rule, const StatusFacts& facts);

/// The instrument samples, is about to, or has not yet confirmed a command: what the button offers is to
/// stop.
bool OffersStop(InstStateCode state);
/// Captions of menu items, with the mark of their letter.
std::string_view StartStopCaption(InstStateCode state);
std::string_view SleepCaption(InstStateCode state);
/// What the button for both starting and stopping offers, but the word for the shutter while it moves.
std::string StartButtonCaption(InstStateCode state);
/// The model's name with the menu mark behind it, or "&Instrument".
std::string InstrumentMenuCaption(const StatusFacts& facts);

/// Data arrive or are about to: the computer must not fall asleep. An instrument that samples once in a while
/// has no data in between: it counts while what it sends is `recorded`.
bool NeedsComputerAwake(const InstrumentLink& window, bool recorded);

}  // namespace marisonde
