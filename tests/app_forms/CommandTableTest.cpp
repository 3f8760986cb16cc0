#include <QAction>
#include <QFileDialog>
#include <QPushButton>
#include <ostream>
#include <vector>

#include "app/forms/FileCommands.h"
#include "app_forms/FormsFixture.h"
#include "link/SimulatedPorts.h"

namespace marisonde {
namespace {

/// Where a window can stand when a command is chosen.
enum class State {
    NoPort,
    Stopped,   ///< connected, with the data of a few seconds unsaved
    Asleep,    ///< the same, sleeping
    Sampling,  ///< the same, sampling
    LoadedRaw,
    LoadedDat,
    ChangedCal,  ///< no port, a calibration that was changed
    SixWindows,  ///< sampling, and no slot is free
    Delph,       ///< a Delph, sampling
    LostDelph,   ///< its calibration, and no port
};

/// A question or notice, and the button that is pressed.
struct Answered {
    std::string text;
    const char* button;
};

struct Row {
    State state;
    const char* item;
    std::vector<Answered> questions;
    const char* dialog;        ///< that stands open after the last answer; it is then cancelled. Null: none
    const char* sent;          ///< what goes to the instrument; "" nothing
    bool portOpen, filesOpen;  ///< afterwards
    int newWindows = 0;
    bool enabled = true;       ///< false: the item cannot be chosen in this state
    const char* reached = "";  ///< what calibrates the instrument afterwards
};

void PrintTo(const Row& row, std::ostream* out) {
    *out << row.item << " in state " << static_cast<int>(row.state);
    for (const Answered& answered : row.questions) *out << ", " << answered.button;
}

const std::string kReplace =
    "There is already an active connection in this window.  Do you wish to replace the current connection in "
    "this window, or keep this connection and open a new window?";
const std::string kSleep = "Put the Corvane-6 to sleep before disconnecting?";
const std::string kNoSleep = "The instrument did not confirm the sleep command.  Disconnect anyway?";
const std::string kUnsaved =
    "The graph contains unsaved data from Corvane-6 .  Save the data before proceeding?";
const std::string kReceiving = "You are receiving data from the Corvane-6. Is it OK to close the files now?";
const std::string kCollected =
    "Some data have already been collected using the current calibration file.  Before changing calibration "
    "files you must close the current data file.";
const std::string kAlready =
    "The currently displayed file is already calibrated.  You can select a new calibration file but it will "
    "not be applied to this file.  ";
const std::string kCalChanged =
    "The current calibration data have changed. Save changes to the file before closing?";
const std::string kSix = "Cannot open more than 6 windows.";

const std::string kEquipment =
    "Calibration of instruments requires special equipment and procedures.  For information about how to "
    "perform calibrations, please contact Venmark.  Do you really want to proceed with calibration?";
const std::string kNoModel =
    "Calibration cannot proceed because no calibration file is loaded to specify the instrument type.";
const std::string kConnectNow =
    "No instrument is connected, so only limited functions will be available.  Do you wish to connect now?";
const std::string kAsleep = "The instrument is asleep.  Wake it before starting the calibration.";
const std::string kIntoDelph =
    "Do you wish to load a new calibration file into the connected Delph-4, D4041234?  The current "
    "calibration will be deleted from the instrument.";

const std::vector<Row>& Rows() {
    static const std::vector<Row> rows{
        // Connecting.
        {State::NoPort, "Connect_menu", {}, "ConnectForm", "", false, false},
        {State::LoadedRaw, "Connect_menu", {}, "ConnectForm", "", false, false},
        {State::Stopped, "Connect_menu", {{kReplace, "This Window"}}, "ConnectForm", "", true, true},
        {State::Stopped, "Connect_menu", {{kReplace, "Cancel"}}, nullptr, "", true, true},
        {State::Asleep, "Connect_menu", {{kReplace, "Cancel"}}, nullptr, "", true, true},
        {State::Sampling, "Connect_menu", {{kReplace, "This Window"}}, "ConnectForm", "", true, true},
        {State::Sampling, "Connect_menu", {{kReplace, "New Window"}}, nullptr, "", true, true, 1},
        {State::Sampling, "Connect_menu", {{kReplace, "Cancel"}}, nullptr, "", true, true},
        {State::SixWindows,
         "Connect_menu",
         {{kReplace, "New Window"}, {kSix, "OK"}},
         nullptr,
         "",
         true,
         true},
        // Disconnecting.
        {State::NoPort, "Disconnect_menu", {}, nullptr, "", false, false, 0, false},
        {State::LoadedDat, "Disconnect_menu", {}, nullptr, "", false, false, 0, false},
        {State::Stopped, "Disconnect_menu", {{kSleep, "Yes"}}, nullptr, "SLEEP\r", false, true},
        {State::Stopped, "Disconnect_menu", {{kSleep, "No"}}, nullptr, "", false, true},
        {State::Stopped, "Disconnect_menu", {{kSleep, "Cancel"}}, nullptr, "", true, true},
        {State::Asleep, "Disconnect_menu", {}, nullptr, "", false, true},
        {State::Sampling, "Disconnect_menu", {{kSleep, "No"}}, nullptr, "", false, true},
        {State::Sampling, "Disconnect_menu", {{kSleep, "Cancel"}}, nullptr, "", true, true},
        {State::Sampling,
         "Disconnect_menu",
         {{kSleep, "Yes"}, {kNoSleep, "Yes"}},
         nullptr,
         "SLEEP\r",
         false,
         true},
        {State::Sampling,
         "Disconnect_menu",
         {{kSleep, "Yes"}, {kNoSleep, "No"}},
         nullptr,
         "SLEEP\r",
         true,
         true},
        {State::Sampling,
         "Disconnect_menu",
         {{kSleep, "Yes"}, {kNoSleep, "Cancel"}},
         nullptr,
         "SLEEP\r",
         true,
         true},
        // Starting and stopping.
        {State::NoPort, "Start_Stop_menu", {}, nullptr, "", false, false, 0, false},
        {State::LoadedRaw, "Start_Stop_menu", {}, nullptr, "", false, false, 0, false},
        {State::Asleep, "Start_Stop_menu", {}, nullptr, "", true, true, 0, false},
        {State::Stopped, "Start_Stop_menu", {}, nullptr, "START,0\r", true, true},
        {State::Sampling, "Start_Stop_menu", {}, nullptr, "STOP\r", true, true},
        {State::Stopped, "Sleep_menu", {}, nullptr, "SLEEP\r", true, true},
        {State::NoPort, "Sleep_menu", {}, nullptr, "", false, false, 0, false},
        // New data files.
        {State::NoPort, "New_File_Menu", {}, "ConnectForm", "", false, false},
        {State::Stopped, "New_File_Menu", {{kUnsaved, "No"}}, nullptr, "", true, true},
        {State::Stopped, "New_File_Menu", {{kUnsaved, "Cancel"}}, nullptr, "", true, true},
        {State::Stopped, "New_File_Menu", {{kUnsaved, "Yes"}}, "SaveFileDialog", "", true, true},
        {State::Sampling, "New_File_Menu", {{kUnsaved, "No"}, {kReceiving, "Yes"}}, nullptr, "", true, true},
        {State::Sampling,
         "New_File_Menu",
         {{kUnsaved, "No"}, {kReceiving, "Cancel"}},
         nullptr,
         "",
         true,
         true},
        // Closing them.
        {State::Stopped, "CloseFile_menu", {{kUnsaved, "No"}}, nullptr, "", true, false},
        {State::Stopped, "CloseFile_menu", {{kUnsaved, "Cancel"}}, nullptr, "", true, true},
        {State::Stopped, "CloseFile_menu", {{kUnsaved, "Yes"}}, "SaveFileDialog", "", true, true},
        {State::Asleep, "CloseFile_menu", {{kUnsaved, "No"}}, nullptr, "", true, false},
        {State::Sampling,
         "CloseFile_menu",
         {{kUnsaved, "No"}, {kReceiving, "Yes"}},
         nullptr,
         "",
         true,
         false},
        {State::Sampling,
         "CloseFile_menu",
         {{kUnsaved, "No"}, {kReceiving, "Cancel"}},
         nullptr,
         "",
         true,
         true},
        {State::LoadedRaw, "CloseFile_menu", {}, nullptr, "", false, false},
        {State::LoadedDat, "CloseFile_menu", {}, nullptr, "", false, false},
        // Opening and saving.
        {State::NoPort, "Open_File_menu", {}, "OpenFileDialog", "", false, false},
        {State::Sampling, "Open_File_menu", {}, "OpenFileDialog", "", true, true},
        {State::LoadedDat, "Open_File_menu", {}, "OpenFileDialog", "", false, false},
        {State::Stopped, "SaveAsItem", {}, "SaveFileDialog", "", true, true},
        {State::Sampling, "SaveAsItem", {}, "SaveFileDialog", "", true, true},
        {State::LoadedRaw, "SaveAsItem", {}, "SaveFileDialog", "", false, false},
        // Another calibration.
        {State::NoPort, "SelectCalItem", {}, "OpenFileDialog", "", false, false},
        {State::LoadedRaw, "SelectCalItem", {}, "OpenFileDialog", "", false, false},
        {State::LoadedDat, "SelectCalItem", {{kAlready, "Select"}}, "OpenFileDialog", "", false, false},
        {State::LoadedDat, "SelectCalItem", {{kAlready, "Cancel"}}, nullptr, "", false, false},
        {State::ChangedCal,
         "SelectCalItem",
         {{kCalChanged, "Don't Save"}},
         "OpenFileDialog",
         "",
         false,
         false},
        {State::ChangedCal,
         "SelectCalItem",
         {{kCalChanged, "Save As..."}},
         "SaveFileDialog",
         "",
         false,
         false},
        {State::ChangedCal, "SelectCalItem", {{kCalChanged, "Cancel"}}, nullptr, "", false, false},
        {State::Sampling, "SelectCalItem", {{kCollected, "Cancel"}}, nullptr, "", true, true},
        {State::Sampling,
         "SelectCalItem",
         {{kCollected, "Close File"}, {kUnsaved, "No"}, {kReceiving, "Yes"}},
         "OpenFileDialog",
         "",
         true,
         false},
        {State::Sampling,
         "SelectCalItem",
         {{kCollected, "Close File"}, {kUnsaved, "Cancel"}},
         nullptr,
         "",
         true,
         true},
        {State::Stopped,
         "SelectCalItem",
         {{kCollected, "Close File"}, {kUnsaved, "No"}},
         "OpenFileDialog",
         "",
         true,
         false},
        // Calibrating.
        {State::NoPort, "DoCalMenu", {{kEquipment, "No"}}, nullptr, "", false, false},
        {State::NoPort, "DoCalMenu", {{kEquipment, "Yes"}, {kNoModel, "OK"}}, nullptr, "", false, false},
        {State::LoadedRaw,
         "DoCalMenu",
         {{kEquipment, "Yes"}, {kConnectNow, "No"}},
         nullptr,
         "",
         false,
         false,
         0,
         true,
         "workbench"},
        {State::LoadedRaw,
         "DoCalMenu",
         {{kEquipment, "Yes"}, {kConnectNow, "Cancel"}},
         nullptr,
         "",
         false,
         false},
        {State::LoadedRaw,
         "DoCalMenu",
         {{kEquipment, "Yes"}, {kConnectNow, "Yes"}},
         "ConnectForm",
         "",
         false,
         false},
        {State::Stopped,
         "DoCalMenu",
         {{kEquipment, "Yes"}, {kUnsaved, "No"}},
         nullptr,
         "",
         true,
         false,
         0,
         true,
         "workbench"},
        {State::Stopped, "DoCalMenu", {{kEquipment, "Yes"}, {kUnsaved, "Cancel"}}, nullptr, "", true, true},
        {State::Stopped,
         "DoCalMenu",
         {{kEquipment, "Yes"}, {kUnsaved, "Yes"}},
         "SaveFileDialog",
         "",
         true,
         true},
        {State::Asleep, "DoCalMenu", {{kEquipment, "Yes"}, {kAsleep, "OK"}}, nullptr, "", true, true},
        {State::Sampling,
         "DoCalMenu",
         {{kEquipment, "Yes"}, {kUnsaved, "No"}, {kReceiving, "Yes"}},
         nullptr,
         "",
         true,
         false,
         0,
         true,
         "workbench"},
        {State::Sampling,
         "DoCalMenu",
         {{kEquipment, "Yes"}, {kUnsaved, "No"}, {kReceiving, "Cancel"}},
         nullptr,
         "",
         true,
         true},
        {State::SixWindows, "DoCalMenu", {{kEquipment, "No"}}, nullptr, "", true, true},
        {State::Delph, "DoCalMenu", {{kIntoDelph, "Yes"}}, nullptr, "", true, true, 0, true, "file"},
        {State::Delph, "DoCalMenu", {{kIntoDelph, "Cancel"}}, nullptr, "", true, true},
        {State::LostDelph, "DoCalMenu", {}, nullptr, "", false, false, 0, false},
        // Operations whose windows are still to come.
        {State::NoPort, "Transfer_menu", {}, nullptr, "", false, false, 0, false},
        {State::Stopped, "Transfer_menu", {}, nullptr, "", true, true, 0, false},
        {State::Sampling, "Transfer_menu", {}, nullptr, "", true, true, 0, false},
        {State::NoPort, "Reset_menu", {}, nullptr, "", false, false, 0, false},
        {State::Stopped, "Reset_menu", {}, nullptr, "", true, true, 0, false},
        {State::Asleep, "Reset_menu", {}, nullptr, "", true, true, 0, false},
        // Closing the window.
        {State::ChangedCal, "CloseWindowItem", {{kCalChanged, "Cancel"}}, nullptr, "", false, false},
        {State::Stopped, "CloseWindowItem", {{kUnsaved, "Cancel"}}, nullptr, "", true, true},
        {State::Sampling,
         "CloseWindowItem",
         {{kUnsaved, "No"}, {kReceiving, "Cancel"}},
         nullptr,
         "",
         true,
         true},
        {State::Asleep, "CloseWindowItem", {{kUnsaved, "Cancel"}}, nullptr, "", true, true},
    };
    return rows;
}

/// A cable that remembers what went to the instrument.
class ListeningLine final : public SerialLine {
  public:
    ListeningLine(std::unique_ptr<SerialLine> cable, std::string& sent)
        : cable_(std::move(cable)), sent_(sent) {}
    LineError Open(int port, int baud) override { return cable_->Open(port, baud); }
    void Close() override { cable_->Close(); }
    [[nodiscard]] bool IsOpen() const override { return cable_->IsOpen(); }
    void SetRate(int baud) override { cable_->SetRate(baud); }
    void ReadAll(std::string& out) override { cable_->ReadAll(out); }
    void Write(std::string_view bytes) override {
        sent_ += bytes;
        cable_->Write(bytes);
    }
    [[nodiscard]] std::size_t BytesToWrite() const override { return cable_->BytesToWrite(); }
    [[nodiscard]] std::size_t BytesToRead() const override { return cable_->BytesToRead(); }
    void DropInput() override { cable_->DropInput(); }
    void SetBreak(bool on) override { cable_->SetBreak(on); }
    [[nodiscard]] LineError LastError() const override { return cable_->LastError(); }

  private:
    std::unique_ptr<SerialLine> cable_;
    std::string& sent_;
};

class CommandTableTest : public FormsFixture, public testing::WithParamInterface<Row> {
  protected:
    CommandTableTest() { app.ports = &ports; }
    ~CommandTableTest() override { shell.reset(); }

    MainForm* Bring(State state) {
        switch (state) {
            case State::NoPort:
                return Empty();
            case State::LoadedRaw:
                return Loaded("cast.raw");
            case State::LoadedDat:
                return Loaded("cast.dat");
            case State::Delph:
            case State::LostDelph:
                return OnDelph(state);
            case State::ChangedCal: {
                MainForm* const form = Empty();
                EXPECT_TRUE(form->Window().LoadCalIntoWindow(Cal().string()));
                form->Window().Link.CalData.ChangedItems = CalItems::Mu;
                return form;
            }
            default:
                return Connected(state);
        }
    }

    std::filesystem::path Cal() {
        const auto path = folder / "stored.cal";
        TestFolder::Write(path, simulator::MakeInstrument(simulator::Model::Corvane6)->CalText());
        return path;
    }

    MainForm* Loaded(const char* name) {
        auto instrument = simulator::MakeInstrument(simulator::Model::Corvane6, {});
        instrument->RunUntil(std::chrono::seconds(20));
        TestFolder::Write(folder / "cast.raw", instrument->TakeOutput(std::chrono::seconds(20)));
        TestFolder::Write(
            folder / "cast.dat",
            "[Header]\r\nFileType=dat\r\nDeviceType=Fathom-2\r\n[Channels]\r\n\"k(532)\"\r\n\"k(650)\"\r\n"
            "[Data]\r\n40001,1,0.5,0.25,20\r\n40002,2,0.5,0.25,20\r\n");
        MainForm* const form = Empty();
        EXPECT_TRUE(form->Window().LoadCalIntoWindow(Cal().string()));
        form->Files().OpenGiven({(folder / name).string()});
        Run(20 * kTick);
        return form;
    }

    /// A window on an instrument that has sampled for some seconds.
    MainForm* Connected(State state) {
        MainForm* const form = Sampling();
        Run(std::chrono::seconds(3));
        if (state == State::SixWindows)
            while (shell->Windows().size() < kMaxWindows) Empty();
        if (state == State::Stopped || state == State::Asleep) {
            form->findChild<QAction*>("Start_Stop_menu")->trigger();
            Run(std::chrono::seconds(12));
            EXPECT_EQ(form->Window().Link.State.InstState, InstStateCode::Stopped);
        }
        if (state == State::Asleep) {
            form->findChild<QAction*>("Sleep_menu")->trigger();
            Run(std::chrono::seconds(3));
            EXPECT_EQ(form->Window().Link.State.InstState, InstStateCode::Sleeping);
        }
        return form;
    }

    MainForm* OnDelph(State state) {
        MainForm* const form = Sampling(simulator::Model::Delph4);
        Run(std::chrono::seconds(3));
        form->Window().Link.State.InstSerial = "D4041234";
        if (state == State::LostDelph) {
            form->Window().Link.ClosePort();
            form->Window().Files.CloseDataFiles(false);
        }
        return form;
    }

    /// What calibrates an instrument stands ready in the window.
    void EquipForCalibrating(DataWindow& window) {
        window.Children.push_back({"Cal", [] { return std::string("Calibration"); }, [] { return false; },
                                   [this] { reached += "workbench"; }});
        window.SendToMultiC = [this](Operation&) -> QCoro::Task<> {
            reached += "file";
            co_return;
        };
    }

    std::unique_ptr<SerialLine> Cable(std::unique_ptr<SerialLine> line) override {
        return std::make_unique<ListeningLine>(std::move(line), sent);
    }

    void Answer(const QWidget* form, const Answered& question) {
        EXPECT_EQ(Message(form), question.text);
        const QDialog* const dialog = Open(form, "YesNoCancelForm");
        ASSERT_NE(dialog, nullptr);
        for (QPushButton* button : dialog->findChildren<QPushButton*>()) {
            if (button->text().remove('&') != question.button) continue;
            QTest::mouseClick(button, Qt::LeftButton);
            Run(std::chrono::milliseconds(3500));  // the wait for a confirmed sleep ends within
            return;
        }
        ADD_FAILURE() << "no button " << question.button;
    }

    SimulatedPorts ports{clock};
    std::string sent;
    std::string reached;
};

TEST_P(CommandTableTest, AsksSendsAndLeaves) {
    const Row& row = GetParam();
    MainForm* const form = Bring(row.state);
    EquipForCalibrating(form->Window());
    const auto windows = shell->Windows().size();
    auto* const item = form->findChild<QAction*>(row.item);
    ASSERT_NE(item, nullptr);
    Run(2 * kTick);
    ASSERT_EQ(item->isEnabled(), row.enabled);
    if (!row.enabled) return;
    sent.clear();
    item->trigger();
    Run(2 * kTick);
    for (const Answered& question : row.questions) Answer(form, question);
    EXPECT_EQ(Message(form), "no YesNoCancelForm");
    if (row.dialog != nullptr) {
        QDialog* const dialog = Open(form, row.dialog);
        ASSERT_NE(dialog, nullptr);
        dialog->reject();
    }
    Run(std::chrono::seconds(1));
    EXPECT_EQ(shell->Windows().size(), windows + static_cast<std::size_t>(row.newWindows));
    ASSERT_FALSE(shell->Windows().empty());
    const DataWindow& window = form->Window();
    EXPECT_EQ(sent.empty(), *row.sent == '\0') << sent;
    EXPECT_NE(sent.find(row.sent), std::string::npos) << sent;
    EXPECT_EQ(reached, row.reached);
    EXPECT_EQ(window.Link.Line().IsOpen(), row.portOpen);
    EXPECT_EQ(window.Files.AnyOpen(), row.filesOpen);
    EXPECT_EQ(std::filesystem::exists(folder / "0.raw"), row.filesOpen);
    EXPECT_EQ(form->findChild<QAction*>("Disconnect_menu")->isEnabled(), row.portOpen);
    EXPECT_FALSE(window.Link.State.Connected && !row.portOpen);
}

INSTANTIATE_TEST_SUITE_P(Rows, CommandTableTest, testing::ValuesIn(Rows()));

}  // namespace
}  // namespace marisonde
