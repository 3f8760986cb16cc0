#include <QApplication>
#include <QCoreApplication>
#include <QLabel>
#include <array>
#include <chrono>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <memory>
#include <pty.h>
#include <string>
#include <termios.h>
#include <unistd.h>
#include <vector>

#include "app/Preferences.h"
#include "app/forms/InstrumentCommands.h"
#include "app/forms/MainForm.h"
#include "app/forms/Shell.h"
#include "common/Settings.h"
#include "link/Commands.h"
#include "link/Ports.h"
#include "platform/Paths.h"
#include "platform/SystemClock.h"
#include "simulator/Instrument.h"
#include "support/ShareFolder.h"
#include "support/TestFolder.h"

namespace marisonde {
namespace {

using namespace std::chrono_literals;
using simulator::Model;

/// A simulated instrument behind a pseudo-terminal of this system.
class Terminal {
  public:
    Terminal(Model model, const Clock& clock) : clock_(clock), begun_(clock.Steady()) {
        simulator::Options options;
        options.powerOn = simulator::PowerOn::Stopped;
        options.startCountdown = 1;
        options.startDate =
            std::chrono::time_point_cast<std::chrono::seconds>(std::chrono::system_clock::now());
        instrument_ = simulator::MakeInstrument(model, options);
        std::array<char, 128> name{};
        termios raw{};
        cfmakeraw(&raw);
        EXPECT_EQ(openpty(&near_, &far_, name.data(), &raw, nullptr), 0);
        fcntl(near_, F_SETFL, O_NONBLOCK);
        device = name.data();
    }
    ~Terminal() {
        close(near_);
        close(far_);
    }
    Terminal(const Terminal&) = delete;
    Terminal& operator=(const Terminal&) = delete;

    void Serve() {
        const Millis now = clock_.Steady() - begun_;
        std::array<char, 4096> bytes{};
        const ssize_t got = read(near_, bytes.data(), bytes.size());
        instrument_->RunUntil(now);
        if (got > 0) instrument_->Receive({bytes.data(), static_cast<std::size_t>(got)}, now);
        const std::string said = instrument_->TakeOutput(now);
        ASSERT_EQ(write(near_, said.data(), said.size()), static_cast<ssize_t>(said.size()));
        sent += said;
    }

    std::string device;
    std::string sent;  ///< every byte, in order

  private:
    const Clock& clock_;
    Millis begun_;
    std::unique_ptr<simulator::Instrument> instrument_;
    int near_ = -1;
    int far_ = -1;
};

class SixTerminals : public testing::Test {
  protected:
    static constexpr std::array kModels{Model::Corvane6, Model::Corvane4, Model::LTidal,
                                        Model::NTidal,   Model::Fathom2,  Model::Delph4};
    SixTerminals() {
        std::string table;
        for (std::size_t i = 0; i < kModels.size(); ++i) {
            terminals.push_back(std::make_unique<Terminal>(kModels[i], clock));
            table += std::to_string(i + 1) + "=" + terminals.back()->device + ",";
        }
        ports = std::make_unique<ComputerPorts>(PortTable::FromText(table));
        LoadPreferences(settings, folder.Path().string(), app.prefs);
        app.sigma = LoadSigmaParams(settings, folder.Path(), ShareFolder()).params;
        app.pureWater = LoadPureWaterParams(settings);
        app.temporaryFolder = folder.Path();
        app.safePlaces = {folder / "recovered", folder / "recovered too"};
        app.ports = ports.get();
        for (std::size_t i = 0; i < kModels.size(); ++i) forms.push_back(shell.NewWindow());
    }
    /// Turns the event loop and the instruments until the condition holds.
    template <class Condition>
    bool Until(Condition met, Millis limit) {
        const Millis end = clock.Steady() + limit;
        while (!met() && clock.Steady() < end) {
            for (const auto& terminal : terminals) terminal->Serve();
            QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
            usleep(2000);
        }
        return met();
    }
    /// What the dialogs show, for the report of a failure.
    std::string Statuses() {
        std::string all;
        for (MainForm* form : forms)
            for (const char* name : {"StatusBox", "Message"})
                for (const QLabel* label : form->findChildren<QLabel*>(name))
                    all += label->text().toStdString() + "\n";
        return all;
    }
    DataWindowState& State(std::size_t i) { return forms[i]->Window().Link.State; }

    TestFolder folder;
    MapSettings settings;
    SystemClock clock;
    std::vector<std::unique_ptr<Terminal>> terminals;
    std::unique_ptr<ComputerPorts> ports;
    AppContext app{settings, clock};
    Pump pump{clock};
    Shell shell{app, pump};
    std::vector<MainForm*> forms;
};

TEST_F(SixTerminals, ConnectAtOnceAndEveryByteIsInTheRawFiles) {
    int closed = 0;
    for (std::size_t i = 0; i < forms.size(); ++i)
        forms[i]->Commands().ConnectAt(static_cast<int>(i) + 1, 19200, std::nullopt, [&closed] { ++closed; });
    ASSERT_TRUE(Until([&] { return closed == 6; }, 30s)) << Statuses();
    for (std::size_t i = 0; i < forms.size(); ++i) {
        ASSERT_TRUE(State(i).Connected && State(i).CalReady) << i;
        EXPECT_EQ(static_cast<int>(State(i).InstType), static_cast<int>(kModels[i]));
    }
    // What came before recording is over.
    Until([] { return false; }, 300ms);
    std::array<std::size_t, 6> before{};
    for (std::size_t i = 0; i < forms.size(); ++i) {
        before[i] = terminals[i]->sent.size();
        SendCommand("START", forms[i]->Window().Link);
    }
    const auto sampled = [&] {
        for (std::size_t i = 0; i < forms.size(); ++i)
            if (State(i).Counted.samples < 3) return false;
        return true;
    };
    EXPECT_TRUE(Until(sampled, 20s));
    for (MainForm* form : forms) SendCommand("STOP", form->Window().Link);
    Until([] { return false; }, 4s);
    for (std::size_t i = 0; i < forms.size(); ++i) {
        const auto raw = forms[i]->Window().Files.State().rawTemporary;
        for (const std::string& error : forms[i]->Window().Files.CloseDataFiles(true)) ADD_FAILURE() << error;
        const std::string text = TestFolder::Read(raw);
        const std::size_t header = text.find("[EndHeader]\r\n");
        ASSERT_NE(header, std::string::npos) << raw;
        EXPECT_EQ(text.substr(header + 13), terminals[i]->sent.substr(before[i])) << i;
    }
}

}  // namespace
}  // namespace marisonde
