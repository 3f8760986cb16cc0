#include <QAction>
#include <QFileDialog>
#include <QPushButton>
#include <optional>
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

/// How things stand once the questions are answered.
struct After {
    bool portOpen, filesOpen;
    const char* dialog = nullptr;  ///< stands open after the last answer, and is then cancelled; null: none
    const char* sent = "";         ///< what goes to the instrument; "" nothing
    int newWindows = 0;
    const char* reached = "";  ///< what calibrates the instrument now
};
constexpr After kAllOpen{true, true};
constexpr After kPortOpen{true, false};
constexpr After kFilesOpen{false, true};
constexpr After kNothingOpen{false, false};
constexpr std::nullopt_t kNotToBeChosen = std::nullopt;

constexpr After Shows(const char* dialog, After after) {
    after.dialog = dialog;
    return after;
}
constexpr After Sends(const char* command, After after) {
    after.sent = command;
    return after;
}
constexpr After NewWindow(After after) {
    after.newWindows = 1;
    return after;
}
constexpr After Reaches(const char* place, After after) {
    after.reached = place;
    return after;
}

struct Row {
    State state;
    const char* item;
    std::vector<Answered> questions;
    std::optional<After> after;  ///< none: the item cannot be chosen in this state
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
        {State::NoPort, "Connect_menu", {}, Shows("ConnectForm", kNothingOpen)},
        {State::LoadedRaw, "Connect_menu", {}, Shows("ConnectForm", kNothingOpen)},
        {State::Stopped, "Connect_menu", {{kReplace, "This Window"}}, Shows("ConnectForm", kAllOpen)},
        {State::Stopped, "Connect_menu", {{kReplace, "Cancel"}}, kAllOpen},
        {State::Asleep, "Connect_menu", {{kReplace, "Cancel"}}, kAllOpen},
        {State::Sampling, "Connect_menu", {{kReplace, "This Window"}}, Shows("ConnectForm", kAllOpen)},
        {State::Sampling, "Connect_menu", {{kReplace, "New Window"}}, NewWindow(kAllOpen)},
        {State::Sampling, "Connect_menu", {{kReplace, "Cancel"}}, kAllOpen},
        {State::SixWindows, "Connect_menu", {{kReplace, "New Window"}, {kSix, "OK"}}, kAllOpen},
        // Disconnecting.
        {State::NoPort, "Disconnect_menu", {}, kNotToBeChosen},
        {State::LoadedDat, "Disconnect_menu", {}, kNotToBeChosen},
        {State::Stopped, "Disconnect_menu", {{kSleep, "Yes"}}, Sends("SLEEP\r", kFilesOpen)},
        {State::Stopped, "Disconnect_menu", {{kSleep, "No"}}, kFilesOpen},
        {State::Stopped, "Disconnect_menu", {{kSleep, "Cancel"}}, kAllOpen},
        {State::Asleep, "Disconnect_menu", {}, kFilesOpen},
        {State::Sampling, "Disconnect_menu", {{kSleep, "No"}}, kFilesOpen},
        {State::Sampling, "Disconnect_menu", {{kSleep, "Cancel"}}, kAllOpen},
        {State::Sampling,
         "Disconnect_menu",
         {{kSleep, "Yes"}, {kNoSleep, "Yes"}},
         Sends("SLEEP\r", kFilesOpen)},
        {State::Sampling, "Disconnect_menu", {{kSleep, "Yes"}, {kNoSleep, "No"}}, Sends("SLEEP\r", kAllOpen)},
        {State::Sampling,
         "Disconnect_menu",
         {{kSleep, "Yes"}, {kNoSleep, "Cancel"}},
         Sends("SLEEP\r", kAllOpen)},
        // Starting and stopping.
        {State::NoPort, "Start_Stop_menu", {}, kNotToBeChosen},
        {State::LoadedRaw, "Start_Stop_menu", {}, kNotToBeChosen},
        {State::Asleep, "Start_Stop_menu", {}, kNotToBeChosen},
        {State::Stopped, "Start_Stop_menu", {}, Sends("START,0\r", kAllOpen)},
        {State::Sampling, "Start_Stop_menu", {}, Sends("STOP\r", kAllOpen)},
        {State::Stopped, "Sleep_menu", {}, Sends("SLEEP\r", kAllOpen)},
        {State::NoPort, "Sleep_menu", {}, kNotToBeChosen},
        // New data files.
        {State::NoPort, "New_File_Menu", {}, Shows("ConnectForm", kNothingOpen)},
        {State::Stopped, "New_File_Menu", {{kUnsaved, "No"}}, kAllOpen},
        {State::Stopped, "New_File_Menu", {{kUnsaved, "Cancel"}}, kAllOpen},
        {State::Stopped, "New_File_Menu", {{kUnsaved, "Yes"}}, Shows("SaveFileDialog", kAllOpen)},
        {State::Sampling, "New_File_Menu", {{kUnsaved, "No"}, {kReceiving, "Yes"}}, kAllOpen},
        {State::Sampling, "New_File_Menu", {{kUnsaved, "No"}, {kReceiving, "Cancel"}}, kAllOpen},
        // Closing them.
        {State::Stopped, "CloseFile_menu", {{kUnsaved, "No"}}, kPortOpen},
        {State::Stopped, "CloseFile_menu", {{kUnsaved, "Cancel"}}, kAllOpen},
        {State::Stopped, "CloseFile_menu", {{kUnsaved, "Yes"}}, Shows("SaveFileDialog", kAllOpen)},
        {State::Asleep, "CloseFile_menu", {{kUnsaved, "No"}}, kPortOpen},
        {State::Sampling, "CloseFile_menu", {{kUnsaved, "No"}, {kReceiving, "Yes"}}, kPortOpen},
        {State::Sampling, "CloseFile_menu", {{kUnsaved, "No"}, {kReceiving, "Cancel"}}, kAllOpen},
        {State::LoadedRaw, "CloseFile_menu", {}, kNothingOpen},
        {State::LoadedDat, "CloseFile_menu", {}, kNothingOpen},
        // Opening and saving.
        {State::NoPort, "Open_File_menu", {}, Shows("OpenFileDialog", kNothingOpen)},
        {State::Sampling, "Open_File_menu", {}, Shows("OpenFileDialog", kAllOpen)},
        {State::LoadedDat, "Open_File_menu", {}, Shows("OpenFileDialog", kNothingOpen)},
        {State::Stopped, "SaveAsItem", {}, Shows("SaveFileDialog", kAllOpen)},
        {State::Sampling, "SaveAsItem", {}, Shows("SaveFileDialog", kAllOpen)},
        {State::LoadedRaw, "SaveAsItem", {}, Shows("SaveFileDialog", kNothingOpen)},
        // Another calibration.
        {State::NoPort, "SelectCalItem", {}, Shows("OpenFileDialog", kNothingOpen)},
        {State::LoadedRaw, "SelectCalItem", {}, Shows("OpenFileDialog", kNothingOpen)},
        {State::LoadedDat, "SelectCalItem", {{kAlready, "Select"}}, Shows("OpenFileDialog", kNothingOpen)},
        {State::LoadedDat, "SelectCalItem", {{kAlready, "Cancel"}}, kNothingOpen},
        {State::ChangedCal,
         "SelectCalItem",
         {{kCalChanged, "Don't Save"}},
         Shows("OpenFileDialog", kNothingOpen)},
        {State::ChangedCal,
         "SelectCalItem",
         {{kCalChanged, "Save As..."}},
         Shows("SaveFileDialog", kNothingOpen)},
        {State::ChangedCal, "SelectCalItem", {{kCalChanged, "Cancel"}}, kNothingOpen},
        {State::Sampling, "SelectCalItem", {{kCollected, "Cancel"}}, kAllOpen},
        {State::Sampling,
         "SelectCalItem",
         {{kCollected, "Close File"}, {kUnsaved, "No"}, {kReceiving, "Yes"}},
         Shows("OpenFileDialog", kPortOpen)},
        {State::Sampling, "SelectCalItem", {{kCollected, "Close File"}, {kUnsaved, "Cancel"}}, kAllOpen},
        {State::Stopped,
         "SelectCalItem",
         {{kCollected, "Close File"}, {kUnsaved, "No"}},
         Shows("OpenFileDialog", kPortOpen)},
        // Calibrating.
        {State::NoPort, "DoCalMenu", {{kEquipment, "No"}}, kNothingOpen},
        {State::NoPort, "DoCalMenu", {{kEquipment, "Yes"}, {kNoModel, "OK"}}, kNothingOpen},
        {State::LoadedRaw,
         "DoCalMenu",
         {{kEquipment, "Yes"}, {kConnectNow, "No"}},
         Reaches("workbench", kNothingOpen)},
        {State::LoadedRaw, "DoCalMenu", {{kEquipment, "Yes"}, {kConnectNow, "Cancel"}}, kNothingOpen},
        {State::LoadedRaw,
         "DoCalMenu",
         {{kEquipment, "Yes"}, {kConnectNow, "Yes"}},
         Shows("ConnectForm", kNothingOpen)},
        {State::Stopped,
         "DoCalMenu",
         {{kEquipment, "Yes"}, {kUnsaved, "No"}},
         Reaches("workbench", kPortOpen)},
        {State::Stopped, "DoCalMenu", {{kEquipment, "Yes"}, {kUnsaved, "Cancel"}}, kAllOpen},
        {State::Stopped,
         "DoCalMenu",
         {{kEquipment, "Yes"}, {kUnsaved, "Yes"}},
         Shows("SaveFileDialog", kAllOpen)},
        {State::Asleep, "DoCalMenu", {{kEquipment, "Yes"}, {kAsleep, "OK"}}, kAllOpen},
        {State::Sampling,
         "DoCalMenu",
         {{kEquipment, "Yes"}, {kUnsaved, "No"}, {kReceiving, "Yes"}},
         Reaches("workbench", kPortOpen)},
        {State::Sampling,
         "DoCalMenu",
         {{kEquipment, "Yes"}, {kUnsaved, "No"}, {kReceiving, "Cancel"}},
         kAllOpen},
        {State::SixWindows, "DoCalMenu", {{kEquipment, "No"}}, kAllOpen},
        {State::Delph, "DoCalMenu", {{kIntoDelph, "Yes"}}, Reaches("file", kAllOpen)},
        {State::Delph, "DoCalMenu", {{kIntoDelph, "Cancel"}}, kAllOpen},
        {State::LostDelph, "DoCalMenu", {}, kNotToBeChosen},
        // Operations whose windows are still to come.
        {State::NoPort, "Transfer_menu", {}, kNotToBeChosen},
        {State::Stopped, "Transfer_menu", {}, kNotToBeChosen},
        {State::Sampling, "Transfer_menu", {}, kNotToBeChosen},
        {State::NoPort, "Reset_menu", {}, kNotToBeChosen},
        {State::Stopped, "Reset_menu", {}, kNotToBeChosen},
        {State::Asleep, "Reset_menu", {}, kNotToBeChosen},
        // Closing the window.
        {State::ChangedCal, "CloseWindowItem", {{kCalChanged, "Cancel"}}, kNothingOpen},
        {State::Stopped, "CloseWindowItem", {{kUnsaved, "Cancel"}}, kAllOpen},
        {State::Sampling, "CloseWindowItem", {{kUnsaved, "No"}, {kReceiving, "Cancel"}}, kAllOpen},
        {State::Asleep, "CloseWindowItem", {{kUnsaved, "Cancel"}}, kAllOpen},
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
    ASSERT_EQ(item->isEnabled(), row.after.has_value());
    if (!row.after) return;
    const After& after = *row.after;
    sent.clear();
    item->trigger();
    Run(2 * kTick);
    for (const Answered& question : row.questions) Answer(form, question);
    EXPECT_EQ(Message(form), "no YesNoCancelForm");
    if (after.dialog != nullptr) {
        QDialog* const dialog = Open(form, after.dialog);
        ASSERT_NE(dialog, nullptr);
        dialog->reject();
    }
    Run(std::chrono::seconds(1));
    EXPECT_EQ(shell->Windows().size(), windows + static_cast<std::size_t>(after.newWindows));
    ASSERT_FALSE(shell->Windows().empty());
    const DataWindow& window = form->Window();
    EXPECT_EQ(sent.empty(), *after.sent == '\0') << sent;
    EXPECT_NE(sent.find(after.sent), std::string::npos) << sent;
    EXPECT_EQ(reached, after.reached);
    EXPECT_EQ(window.Link.Line().IsOpen(), after.portOpen);
    EXPECT_EQ(window.Files.AnyOpen(), after.filesOpen);
    EXPECT_EQ(std::filesystem::exists(folder / "0.raw"), after.filesOpen);
    EXPECT_EQ(form->findChild<QAction*>("Disconnect_menu")->isEnabled(), after.portOpen);
    EXPECT_FALSE(window.Link.State.Connected && !after.portOpen);
}

INSTANTIATE_TEST_SUITE_P(Rows, CommandTableTest, testing::ValuesIn(Rows()));

}  // namespace
}  // namespace marisonde
