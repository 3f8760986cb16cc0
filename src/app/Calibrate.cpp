#include "app/Calibrate.h"

#include <algorithm>
#include <array>

#include "app/DataWindow.h"
#include "app/Shutdown.h"
#include "link/LinkWaits.h"
#include "platform/Operations.h"

namespace marisonde {

namespace {

constexpr const char* kNotYet = "Calibrating instruments is not part of this version yet";

Question LoadIntoInstrument(const DataWindowState& state) {
    return {"Do you wish to load a new calibration file into the connected " +
                std::string(InstTypeName(state.InstType)) + ", " + state.InstSerial +
                "?  The current calibration will be deleted from the instrument.",
            "Yes", "Cancel", ""};
}

Question NeedsEquipment() {
    return {
        "Calibration of instruments requires special equipment and procedures.  For information about how to "
        "perform calibrations, please contact Venmark.  Do you really want to proceed with calibration?",
        "Yes", "No", ""};
}

Question NothingConnected() {
    return {
        "No instrument is connected, so only limited functions will be available.  Do you wish to connect "
        "now?",
        "Yes", "No", "Cancel"};
}

/// The workbench of a window; nullptr when it has none.
const ChildWindow* Workbench(const DataWindow& window) {
    const auto& children = window.Children;
    const auto found = std::find_if(children.begin(), children.end(),
                                    [](const ChildWindow& child) { return child.tag == "Cal"; });
    return found == children.end() ? nullptr : &*found;
}

bool WorkbenchIsOpen(const DataWindow& window) {
    const ChildWindow* const workbench = Workbench(window);
    return workbench != nullptr && workbench->isOpen();
}

bool HasWorkbench(InstTypeCode model) {
    return IsCorvaneFamily(model) || IsTidalFamily(model);
}

/// True: an instrument is there, or the user goes on without one.
QCoro::Task<bool> ConnectedOrNotWanted(Operation& operation, DataWindow& window) {
    if (window.Link.State.Connected) co_return true;
    const Question question = NothingConnected();
    const Choice choice = co_await window.Ask().ShowChoiceDialog(operation, question);
    if (choice != Choice::First) co_return choice == Choice::Second;
    const bool connected = co_await ConnectInDialog(operation, window.Link);
    co_return connected;
}

QCoro::Task<bool> IsMeant(Operation& operation, DataWindow& window) {
    const Question question = NeedsEquipment();
    const Choice choice = co_await window.Ask().ShowChoiceDialog(operation, question);
    co_return choice == Choice::First;
}

QCoro::Task<bool> KnowsItsModel(Operation& operation, DataWindow& window) {
    if (HasWorkbench(window.Link.State.InstType)) co_return true;
    const std::string text =
        "Calibration cannot proceed because no calibration file is loaded to specify the instrument type.";
    co_await window.Ask().ShowMessage(operation, text);
    co_return false;
}

QCoro::Task<bool> IsAwake(Operation& operation, DataWindow& window) {
    if (window.Link.State.InstState != InstStateCode::Sleeping) co_return true;
    const std::string text = "The instrument is asleep.  Wake it before starting the calibration.";
    co_await window.Ask().ShowMessage(operation, text);
    co_return false;
}

QCoro::Task<bool> FilesAreClosed(Operation& operation, DataWindow& window) {
    const bool closed = co_await CloseDataFiles(operation, window, true);
    co_return closed;
}

/// What stands between the command and the workbench, in order. What the user has confirmed once is not asked
/// again while the workbench is open.
struct Step {
    QCoro::Task<bool> (*passes)(Operation&, DataWindow&);
    bool whileOpen;
};
constexpr std::array kSteps{Step{IsMeant, false}, Step{KnowsItsModel, true},
                            Step{ConnectedOrNotWanted, false},
                            // Another instrument may have been connected meanwhile.
                            Step{KnowsItsModel, true}, Step{IsAwake, true}, Step{FilesAreClosed, false}};

QCoro::Task<> ShowWorkbench(Operation& operation, DataWindow& window) {
    const bool open = WorkbenchIsOpen(window);
    for (const Step& step : kSteps) {
        if (open && !step.whileOpen) continue;
        const bool passed = co_await step.passes(operation, window);
        if (!passed || operation.Cancelled()) co_return;
    }
    if (const ChildWindow* const workbench = Workbench(window)) workbench->show();
}

QCoro::Task<> ReplaceCalibration(Operation& operation, DataWindow& window) {
    const Question question = LoadIntoInstrument(window.Link.State);
    const Choice choice = co_await window.Ask().ShowChoiceDialog(operation, question);
    if (choice == Choice::First && !operation.Cancelled()) co_await window.SendToMultiC(operation);
}

}  // namespace

std::string NoCalibratingText(const DataWindow& window) {
    const DataWindowState& state = window.Link.State;
    if (!IsDelphFamily(state.InstType)) return Workbench(window) == nullptr ? kNotYet : "";
    if (!window.SendToMultiC) return kNotYet;
    return state.Connected ? "" : "Connect the " + std::string(InstTypeName(state.InstType)) + " first";
}

QCoro::Task<> CalibrateCommand(Operation& operation, DataWindow& window) {
    if (IsDelphFamily(window.Link.State.InstType))
        co_await ReplaceCalibration(operation, window);
    else
        co_await ShowWorkbench(operation, window);
}

}  // namespace marisonde
