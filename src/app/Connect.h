#pragma once

#include <QCoroTask>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "app/DataWindow.h"
#include "link/Connection.h"
#include "link/Ports.h"
#include "platform/Operations.h"

namespace marisonde {

/// A fetched calibration older than this is worth a reminder.
inline constexpr int kCalibrationAgeDays = 180;
/// A shutter that is about to move says so within this time after the instrument was stopped.
inline constexpr Millis kShutterNotice{1000};

/// One port as the list shows it.
struct PortRow {
    int number = 0;
    std::string text;  ///< "Com 3 - /dev/ttyUSB0, USB Serial, A50285BI"
    bool operator==(const PortRow&) const = default;
};

/// Everything that the connect dialog shows; the form draws it. Names are those of the controls.
struct ConnectControls {
    std::vector<PortRow> CommPort_Box;  ///< the last good one first
    int Port = 0;                       ///< chosen in CommPort_Box; 0 none
    int Baud = 0;                       ///< chosen in BAUD_box; 0 none
    InstTypeCode Instrument_Box = InstTypeCode::Corvane6;
    bool UploadCal_Check = true;
    bool NoQueryCheck = false;
    std::string StatusBox;
    std::vector<std::string> SearchList;  ///< a line for each port and rate looked at
    bool Enabled = true;                  ///< inputs, OK and AutoDetect
    std::string CancelCaption = "Cancel";
    bool Open = false;  ///< the dialog is up; it closes when this falls
};

/// The connect dialog of one window without its form: what its buttons do, and what it shows meanwhile.
class Connector {
  public:
    /// `window` and the ports of its application outlive the connector.
    explicit Connector(DataWindow& window) : window_(window) {}

    /// Something in Controls() has changed.
    std::function<void()> OnChanged;
    /// The input focus belongs on OK again.
    std::function<void()> OnFocusOk;
    std::function<void()> OnBeep;
    /// The form is on the screen; without it some notices are not given.
    bool Visible = false;

    [[nodiscard]] const ConnectControls& Controls() const { return controls_; }
    [[nodiscard]] DataWindow& Window() { return window_; }

    /// Reads the settings and lists the ports; ends whatever else connects this window.
    void Form_Load();
    /// Keeps port, rate and options when a connection was made, and closes the dialog.
    void Form_Unload();

    // What the user sets.
    void SelectPort(int port);
    void SelectBaud(int baud);
    void SelectInstrument(InstTypeCode model) { controls_.Instrument_Box = model; }
    void CheckUploadCal(bool on) { controls_.UploadCal_Check = on; }
    void CheckNoQuery(bool on);

    /// Connects at the chosen port and rate.
    QCoro::Task<> OK_Click(Operation& operation);
    /// Searches all ports.
    QCoro::Task<> AutoDetect_Click(Operation& operation);
    /// "Stop" ends what runs, within one tick; "Cancel" and "Close" close the dialog.
    void Cancel_Click();

    /// Opens or searches, identifies, reconciles the calibration, and closes the dialog after success.
    QCoro::Task<> DoConnect(Operation& operation, bool search);

  private:
    void Update_Status();
    void SetInstrumentTypeBox();
    void Status(const std::string& text);
    void NoteLook(const ConnectionTry& look);
    void OfferUnidentified(const ConnectionTry& look);
    void WithdrawOffer();
    [[nodiscard]] std::string UnidentifiedText() const;
    [[nodiscard]] ConnectNotes Notes();
    [[nodiscard]] DataWindowState& State() { return window_.Link.State; }
    [[nodiscard]] bool Stopped(const Operation& operation) { return ConnectStopped(operation, window_.Link); }
    [[nodiscard]] std::string Device(int port) const;

    void OpenWithoutIdentifying();
    void BeginAttempt();
    QCoro::Task<bool> Find(Operation& operation, bool search);
    void NotConnected(bool search);
    [[nodiscard]] std::string NotConnectedText(bool search);
    void GiveUp();
    QCoro::Task<bool> AskTryAgain(Operation& operation);

    QCoro::Task<> FinishConnection(Operation& operation);
    QCoro::Task<bool> StopInstrument(Operation& operation);
    QCoro::Task<> CompareWithLoaded(Operation& operation);
    QCoro::Task<> AskOtherSerial(Operation& operation);
    QCoro::Task<> FetchCalibration(Operation& operation);
    QCoro::Task<> RemindOfAge(Operation& operation);
    void RefuseOldFirmware();
    void KeepFetched();
    void RefuseConnection();

    DataWindow& window_;
    ConnectControls controls_;
    std::vector<PortEntry> ports_;  ///< behind the rows, in their order, which is that of a search
    ConnectionTry lastLook_;
    ConnectionTry unidentified_;  ///< the newest look at which an instrument of no known name answered
    bool offered_ = false;        ///< NoQueryCheck was ticked for that instrument, not by the user
    bool connected_ = false;      ///< by this dialog since it was opened, and not given up since
};

/// The age reminder of a calibration: how old it is, and until when the user wants to hear no more of it.
std::string CalReminderText(double ageDays);
double RemindDate(const Settings& settings, std::string_view serial);
void SaveRemindDate(Settings& settings, std::string_view serial, double date);

}  // namespace marisonde
