#include "app/forms/SubMain.h"

#include <QApplication>
#include <QFileInfo>
#include <QPointer>
#include <QTimer>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "app/Demonstration.h"
#include "app/WindowStart.h"
#include "app/forms/About.h"
#include "app/forms/FileCommands.h"
#include "app/forms/FormHelpers.h"
#include "app/forms/InstrumentCommands.h"
#include "app/forms/MainForm.h"
#include "app/forms/NoticeStrip.h"
#include "app/forms/Shell.h"
#include "app/forms/ShowStartNotices.h"
#include "link/PortTable.h"
#include "link/Ports.h"
#include "link/SimulatedPorts.h"
#include "platform/IniSettings.h"
#include "platform/Instance.h"
#include "platform/Paths.h"
#include "platform/SystemClock.h"

namespace marisonde {

namespace {

QString SettingsPath(CommandLine::Mode mode) {
    QString usual = SettingsFile();
    if (mode != CommandLine::Mode::Demo || qEnvironmentVariableIsSet("MARISONDE_SETTINGS")) return usual;
    return QFileInfo(usual).path() + "/Demonstration.ini";
}

std::string RecoveryNotice(const RecoveryReport& report) {
    std::string text;
    if (!report.recovered.empty()) {
        text = "Marisonde did not end properly the last time.  The data it had recorded are safe in:";
        for (const auto& path : report.recovered) text.append("\n").append(path.string());
    }
    for (const auto& left : report.leftBehind) {
        if (!text.empty()) text += "\n";
        text += "Data of an earlier run could not be moved to safety (" + left.reason +
                "): " + left.path.string();
    }
    return text;
}

/// Off screen nobody sees the window.
void TellOnTerminal(const std::string& text) {
    std::fprintf(stderr, "marisonde: %s\n", text.c_str());
}

/// Everything that lives as long as the program, in the order in which it must be made.
struct Program {
    explicit Program(CommandLine::Mode mode)
        : settings(SettingsPath(mode), [this](const std::string& reason) { TellSettingsProblem(reason); }),
          instance(UsualPlaces(settings), settings),
          app(settings, clock),
          pump(clock),
          ports(PortTable::ForThisComputer()),
          shell(app, pump) {
        app.ports = &ports;
        app.instanceNumber = instance.Number();
        app.temporaryFolder = instance.Folder();
        app.safePlaces = instance.Safe();
        newUser = LoadPreferences(settings, ProgramFolder().string(), app.prefs);
        SigmaParamsLoad sigma = LoadSigmaParams(settings, ProgramFolder(), DataFolder());
        app.sigma = std::move(sigma.params);
        missingSigmaFiles = sigma.missingFiles;
        app.pureWater = LoadPureWaterParams(settings);
        shell.UseInhibitor(SystemSleepInhibitor());
    }

    /// Settings are also saved when no window is left to show that they cannot be.
    void TellSettingsProblem(const std::string& reason) const {
        const std::string text = "The settings cannot be kept: " + reason + ".";
        if (first) first->Notices().AddNotice(FromText(text));
        TellOnTerminal(text);
    }

    QPointer<MainForm> first;
    SystemClock clock;
    IniSettings settings;
    Instance instance;
    AppContext app;
    Pump pump;
    ComputerPorts ports;
    SimulatedPorts simulated{clock};
    Shell shell;
    bool newUser = false;
    int missingSigmaFiles = 0;
};

/// What there is to say about the start, in the first window. A demonstration greets nobody.
void TellAboutStart(Program& program, MainForm& form, CommandLine::Mode mode) {
    if (program.first) return;
    program.first = &form;
    StartFacts facts;
    facts.newUser = program.newUser && mode != CommandLine::Mode::Demo;
    for (const std::string& problem :
         {RecoveryNotice(program.instance.Recovered()), program.instance.Problem()}) {
        if (problem.empty()) continue;
        facts.problems.push_back(problem);
        TellOnTerminal(problem);
    }
    facts.missingSigmaFiles = program.missingSigmaFiles;
    facts.offerReleaseNotes = mode == CommandLine::Mode::Window;
    ShowStartNotices(form, program.settings, StartNotices(facts, program.settings));
}

int OpenFirstWindow(Program& program, const CommandLine& line, std::unique_ptr<QWidget> splash) {
    MainForm* const form = program.shell.NewWindow();
    form->show();
    splash.reset();
    TellAboutStart(program, *form, line.mode);
    if (!line.calFile.empty()) form->Window().LoadCalIntoWindow(line.calFile);
    if (line.mode == CommandLine::Mode::Direct) {
        const std::string error = form->Window().OpenWithoutQuery(line.port, line.baud, line.model);
        if (error.empty())
            form->Window().OpenDataFiles("raw", form->Window().Link.State.CalReady);
        else
            form->Ask().ShowError(error);
    }
    form->InstrumentChanged();
    if (line.mode == CommandLine::Mode::Window) {
        if (!line.openFiles.empty())
            form->Files().OpenGiven(line.openFiles);
        else
            form->Commands().ConnectOnStartup(program.app.prefs.ConnectOnStartup);
    }
    return QApplication::exec();
}

/// Ends one demonstration window: says where its files and, off screen, its picture are.
void ReportDemo(MainForm& form, bool withPicture) {
    QPixmap picture;
    if (withPicture) picture = form.Picture();
    const std::string name = form.Window().Files.State().rawFinal.string();
    const DemoFiles files = FinishDemo(form.Window());
    const std::string model(InstTypeName(form.Window().Link.State.InstType));
    std::printf("%s, %lld samples\n", model.c_str(),
                static_cast<long long>(form.Window().Link.State.Counted.samples));
    if (!files.raw.empty()) std::printf("  raw file         %s\n", files.raw.c_str());
    if (!files.dat.empty()) std::printf("  calibrated file  %s\n", files.dat.c_str());
    if (withPicture) {
        const std::string path = std::filesystem::path(name).replace_extension(".png").string();
        if (picture.save(QString::fromStdString(path))) std::printf("  picture          %s\n", path.c_str());
    }
    std::fflush(stdout);
}

/// Ends the demonstration some seconds from now.
void EndDemoAfter(Program& program, int seconds) {
    QTimer::singleShot(seconds * 1000, &program.shell, [&program] {
        for (MainForm* form : program.shell.Windows()) form->close();
    });
}

/// The seconds count from the moment in which every window has something to show.
void EndDemoOnceSampling(Program& program, int seconds) {
    auto* watch = new QTimer(&program.shell);
    QObject::connect(watch, &QTimer::timeout, &program.shell, [&program, watch, seconds] {
        for (MainForm* form : program.shell.Windows())
            if (!form->Window().Link.State.HasSample) return;
        watch->stop();
        EndDemoAfter(program, seconds);
    });
    constexpr int kOften = 100;  // ms
    watch->start(kOften);
}

/// One window of the demonstration: connects as a user does, and starts the instrument once that is done.
void OpenDemoWindow(Program& program, const CommandLine& line, InstTypeCode model) {
    const DemoInstrument instrument = AddDemoInstrument(program.simulated, model, program.clock);
    MainForm* const form = program.shell.NewWindow();
    form->show();
    TellAboutStart(program, *form, line.mode);
    const bool withPicture = line.runSeconds > 0;
    form->CloseWith([form, withPicture] { ReportDemo(*form, withPicture); });
    std::optional<InstTypeCode> assumed;
    if (!IdentifiesItself(model)) {
        assumed = model;
        const std::string error = LoadDemoCalibration(form->Window(), instrument);
        if (!error.empty()) form->Ask().ShowError(error);
        form->InstrumentChanged();
    }
    form->Commands().ConnectAt(instrument.port, instrument.baud, assumed, [form] {
        if (form->Window().Link.State.Connected) BeginDemo(form->Window(), DemoFolder());
    });
}

int ShowDemonstration(Program& program, const CommandLine& line) {
    constexpr int kLongestConnecting = 60;  // s, for all windows together
    program.app.ports = &program.simulated;
    // A newcomer sees the curves run; whoever has chosen a view finds it again.
    if (program.settings.GetSetting("GraphDefaults", "VsTime", "").empty()) program.app.prefs.VsTime = true;
    for (const InstTypeCode model : line.demoModels) OpenDemoWindow(program, line, model);
    if (line.runSeconds > 0) {
        EndDemoOnceSampling(program, line.runSeconds);
        EndDemoAfter(program, line.runSeconds + kLongestConnecting);
    }
    return QApplication::exec();
}

}  // namespace

int SubMain(const CommandLine& line) {
    auto splash = MakeSplash();
    splash->show();
    splash->repaint();
    Program program(line.mode);
    if (line.mode == CommandLine::Mode::Demo) {
        splash.reset();
        return ShowDemonstration(program, line);
    }
    return OpenFirstWindow(program, line, std::move(splash));
}

}  // namespace marisonde
