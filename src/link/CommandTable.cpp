#include "link/CommandTable.h"

#include <algorithm>
#include <array>

#include "common/ConversionUtils.h"
#include "common/Numbers.h"
#include "link/BinaryInput.h"
#include "link/InstrumentLink.h"
#include "link/SerialLine.h"

namespace marisonde {

namespace {

bool StartsDelete(InstrumentLink& window, std::string& /*argument*/) {
    window.State.InstState = InstStateCode::Deleting;
    return true;
}

bool AwaitStored(InstrumentLink& window, std::string& /*argument*/) {
    window.State.GotCclReply = false;
    window.State.GotGcfReply = false;
    return true;
}

bool ForgetCommand(InstrumentLink& window, std::string& /*argument*/) {
    window.State.CurrentCommand.clear();
    return false;
}

bool AwaitFlStatus(InstrumentLink& window, std::string& /*argument*/) {
    window.State.FlStatus0 = -1;
    window.State.FlStatus1 = -1;
    window.State.ParamsReplyDone = false;
    return true;
}

bool AwaitFl1(InstrumentLink& window, std::string& /*argument*/) {
    window.State.FlStatus0 = -1;
    window.State.ParamsReplyDone = false;
    return true;
}

bool AwaitFl2(InstrumentLink& window, std::string& /*argument*/) {
    window.State.FlStatus1 = -1;
    window.State.ParamsReplyDone = false;
    return true;
}

/// Clears one completion flag.
template <bool DataWindowState::*Flag>
bool Await(InstrumentLink& window, std::string& /*argument*/) {
    window.State.*Flag = false;
    return true;
}

bool PrepareStart(InstrumentLink& window, std::string& /*argument*/) {
    if (window.State.TransferActive) {
        if (window.OnError) window.OnError("Can Not Start While Downloading");
        return false;
    }
    if (window.MayStart && !window.MayStart()) return false;
    window.State.InstState = InstStateCode::StartSent;
    return true;
}

bool PrepareStop(InstrumentLink& window, std::string& /*argument*/) {
    window.State.InstState = InstStateCode::StopSent;
    return true;
}

bool PrepareDir(InstrumentLink& window, std::string& /*argument*/) {
    window.State.DirQueue.MaxSize(kDirQueueSize);
    window.State.DirQueue.Clear();
    window.State.GotDirEnd = false;
    return true;
}

bool PrepareDump(InstrumentLink& window, std::string& /*argument*/) {
    EndDump(window.State);
    window.State.GotIniReply = false;
    return true;
}

bool PrepareBaud(InstrumentLink& window, std::string& argument) {
    argument.erase(0, std::min(argument.find_first_not_of(" ,"), argument.size()));
    const double rate = Val(argument);
    const auto* const found = std::find(kInstrumentRates.begin(), kInstrumentRates.end(), rate);
    // A command that does nothing must not leave its name behind, or the reply rule would touch the port.
    if (found == kInstrumentRates.end()) return ForgetCommand(window, argument);
    window.State.BaudRate = *found;
    return true;
}

using Way = CommandWay;

// Rows of one name stand together; the first whose model and sleep agree is taken.
constexpr std::array kCommands{
    CommandRow{"DELCAST", Models::All, "{name}{arg}\r", Way::Queue, StartsDelete},
    CommandRow{"STORECCL", Models::Corvane, "{name}{arg}\r", Way::Queue, AwaitStored},
    CommandRow{"STORECCL", Models::NotCorvane, "", Way::None, ForgetCommand},
    CommandRow{"STOREGCF", Models::Corvane, "{name}{arg}\r", Way::Queue, AwaitStored},
    CommandRow{"STOREGCF", Models::NotCorvane, "", Way::None, ForgetCommand},
    CommandRow{"FL", Models::Corvane, "FL\r", Way::Queue, AwaitFlStatus},
    CommandRow{"FL1", Models::Corvane, "FL{fl1},{arg}\r", Way::Queue, AwaitFl1},
    CommandRow{"FL2", Models::Corvane, "FL{fl2},{arg}\r", Way::Queue, AwaitFl2},
    CommandRow{"SETGAIN", Models::Corvane, "gain,0,{arg}\r", Way::Queue},
    CommandRow{"SETGAIN", Models::Tidal, "gain{arg}\r", Way::Queue},
    CommandRow{"GETRAWSAMPLE", Models::Corvane, "C\r", Way::Queue},
    CommandRow{"GETRAWSAMPLE", Models::Tidal, "\r", Way::Queue},
    CommandRow{"CLEARSAMPLE", Models::Corvane, "X\r", Way::Queue},
    CommandRow{"CLEARSAMPLE", Models::Tidal, "\r", Way::Queue},
    CommandRow{"GETSAMPLEPARAMS", Models::Tidal, "DATAFORMAT\rPERIOD\rSTARTDELAY\rBURST\r", Way::Queue,
               Await<&DataWindowState::ParamsReplyDone>},
    CommandRow{"GETSAMPLEPARAMS", Models::NotTidal, "LOG\r", Way::Queue,
               Await<&DataWindowState::ParamsReplyDone>},
    CommandRow{"PERIOD", Models::All, "{name},{arg}\r", Way::Queue},
    CommandRow{"STARTDELAY", Models::All, "{name},{arg}\r", Way::Queue},
    CommandRow{"BURST", Models::All, "{name},{arg}\r", Way::Queue},
    CommandRow{"BURSTLENGTH", Models::All, "{name},{arg}\r", Way::Queue},
    CommandRow{"BURSTCYCLE", Models::All, "{name},{arg}\r", Way::Queue},
    CommandRow{"START", Models::Corvane, "START,0{arg}\r", Way::Queue, PrepareStart},
    CommandRow{"START", Models::NotCorvane, "START\r", Way::Queue, PrepareStart},
    CommandRow{"STARTNOLOG", Models::Corvane, "START,0{arg}\r", Way::Queue, PrepareStart},
    CommandRow{"STARTNOLOG", Models::NotCorvane, "START\r", Way::Queue, PrepareStart},
    CommandRow{"STOP", Models::All, "STOP\r", Way::Queue, PrepareStop},
    CommandRow{"SETSLEEP", Models::All, "\r\r", Way::Replace, nullptr, true},
    CommandRow{"SETSLEEP", Models::All, "SLEEP\r", Way::Queue},
    CommandRow{"DOWNLOAD", Models::All, "DOWNLOAD,{arg}\r", Way::Replace},
    CommandRow{"MAKEINI", Models::All, "MAKEINI\r", Way::Direct, Await<&DataWindowState::GotIniReply>},
    CommandRow{"CCL", Models::All, "CCL,{arg}\r", Way::Direct, Await<&DataWindowState::GotCclReply>},
    CommandRow{"GCF", Models::All, "GCF\r", Way::Direct, Await<&DataWindowState::GotGcfReply>},
    CommandRow{"CCF", Models::All, "CCF,{arg}\r", Way::Direct, Await<&DataWindowState::GotCcfReply>},
    CommandRow{"CLEARLOGCOMMAND", Models::All, "CLEARLOG\r", Way::Queue},
    CommandRow{"DIR", Models::All, "DIR\r", Way::Queue, PrepareDir},
    CommandRow{"ID", Models::All, "ID\r", Way::Replace, Await<&DataWindowState::GotIdReply>},
    CommandRow{"TIME", Models::All, "", Way::None},
    CommandRow{"SETDATE", Models::All, "TIME,{arg}\r", Way::Replace},
    CommandRow{"GETTIME", Models::All, "TIME\r", Way::Queue},
    // The Tidal forms of these two overwrite the queue with its own content and themselves behind it.
    CommandRow{"SETPERIOD", Models::Tidal, "PERIOD{arg}\r", Way::Queue},
    CommandRow{"SETPERIOD", Models::Corvane, "\r\nLOG,{arg}\r\n", Way::Direct},
    CommandRow{"SETDELAY", Models::Tidal, "STARTDELAY {arg}\r", Way::Queue},
    CommandRow{"SETDELAY", Models::Corvane, "\r\nLOG,,{arg}\r\n", Way::Direct},
    CommandRow{"\r\n", Models::All, "\r\r", Way::Replace},
    CommandRow{"DUMPCFG", Models::All, "DUMPCFG{arg}\r\n", Way::Replace, PrepareDump},
    CommandRow{"LOG", Models::All, "LOG{arg}\r\n", Way::Replace},
    CommandRow{"BAUD", Models::All, "BAUD,{arg}\r", Way::Replace, PrepareBaud},
};

constexpr CommandRow kNothing{"", Models::All, "", Way::None};
constexpr CommandRow kAnyOther{"", Models::All, "{name}{arg}\r", Way::Queue};

}  // namespace

std::uint8_t ModelBit(InstTypeCode type) {
    if (IsCorvaneFamily(type)) return Models::Corvane;
    if (IsTidalFamily(type)) return Models::Tidal;
    if (IsDelphFamily(type)) return Models::Delph;
    return Models::Unknown;
}

std::span<const CommandRow> CommandTable() {
    return kCommands;
}

const CommandRow& FindCommand(std::string_view name, InstTypeCode type, bool asleep) {
    const std::uint8_t model = ModelBit(type);
    bool known = false;
    for (const CommandRow& row : kCommands) {
        if (row.name != name) continue;
        known = true;
        if ((row.models & model) != 0 && (asleep || !row.onlyAsleep)) return row;
    }
    return known ? kNothing : kAnyOther;
}

}  // namespace marisonde
