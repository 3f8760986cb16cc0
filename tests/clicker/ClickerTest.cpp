#include <QDesktopServices>
#include <QTimer>
#include <cstdio>
#include <deque>
#include <map>

#include "app/Demonstration.h"
#include "app_forms/FormsFixture.h"
#include "clicker/Clicker.h"
#include "link/SimulatedPorts.h"

namespace marisonde {
namespace {

/// What a window has received while its raw log was open.
struct Received {
    std::string bytes;
    std::uintmax_t logSize = 0;  ///< of the log when last looked at
    std::string header;          ///< of the same
};

/// Ten minutes of a user who presses everything, on four instruments, with stored files at hand.
class ClickerTest : public FormsFixture, public testing::WithParamInterface<unsigned> {
  protected:
    ClickerTest() : ports(clock) {
        app.ports = &ports;
        for (const InstTypeCode model :
             {InstTypeCode::Corvane6, InstTypeCode::LTidal, InstTypeCode::Delph4, InstTypeCode::Fathom2})
            instruments.push_back(AddDemoInstrument(ports, model, clock));
        TestFolder::Write(folder / "stored.cal", instruments.front().calText);
        TestFolder::Write(folder / "stored.raw", StoredCast());
        TestFolder::Write(folder / "damaged.dat",
                          "[Header]\r\nDeviceType=Corvane-6\r\n\x01\x02garbage\r\n1,2\r\n");
        for (const char* scheme : {"file", "http", "https"})
            QDesktopServices::setUrlHandler(scheme, &sink, "Open");
    }
    ~ClickerTest() override {
        shell.reset();  // before the ports that its windows use
        for (const char* scheme : {"file", "http", "https"}) QDesktopServices::unsetUrlHandler(scheme);
    }

    [[nodiscard]] std::vector<QString> Files() const {
        std::vector<QString> files;
        for (const char* name :
             {"stored.cal", "stored.raw", "damaged.dat", "new one", "no such folder/file.raw"})
            files.push_back(QString::fromStdString((folder / name).string()));
        return files;
    }

    std::string StoredCast() {
        auto instrument = simulator::MakeInstrument(simulator::Model::Corvane6, {});
        instrument->RunUntil(std::chrono::minutes(2));
        return instrument->TakeOutput(std::chrono::minutes(2));
    }

    void KeepAWindowOpen() {
        if (shell->Windows().empty()) shell->NewWindow()->show();
        for (MainForm* form : shell->Windows()) {
            form->findChild<QTimer*>("ProcessSerialInputTimer")->stop();
            Listen(form->Window());
        }
    }

    void Listen(DataWindow& window) {
        if (listened.contains(&window)) return;
        Received& received = listened[&window];
        QObject::connect(FormOf(window), &QObject::destroyed, &sink,
                         [this, gone = &window] { listened.erase(gone); });
        window.Link.OnChunk = [&window, &received, write = window.Link.OnChunk](std::string_view chunk) {
            const auto& log = window.Files.State().rawTemporary;
            // What another instrument sends than that of the log is not for the log; the user was told.
            const bool open = window.Files.IsOpen(DataFileKind::Raw) && window.RecordsWhatComes();
            std::error_code passedOver;
            const auto size = open ? std::filesystem::file_size(log, passedOver) : 0;
            if (size < received.logSize || !open) received.bytes.clear();  // another log than before
            received.logSize = size;
            if (open) received.bytes += chunk;
            write(chunk);
        };
    }

    MainForm* FormOf(const DataWindow& window) {
        for (MainForm* form : shell->Windows())
            if (&form->Window() == &window) return form;
        return nullptr;
    }

    /// Every byte that came while a log was open stands at its end, a second later at the latest.
    void ExpectNothingLost() {
        for (MainForm* form : shell->Windows()) {
            DataWindow& window = form->Window();
            if (!window.Files.IsOpen(DataFileKind::Raw)) continue;
            (void)window.Files.FlushIfDue(clock.Steady() + std::chrono::seconds(1));
            ExpectInLog(TestFolder::Read(window.Files.State().rawTemporary), listened[&window]);
        }
    }

    static void ExpectInLog(const std::string& log, Received& received) {
        const std::string header = log.substr(0, log.find("[EndHeader]"));
        if (header == received.header) {
            const std::size_t length = std::min<std::size_t>(received.bytes.size(), 200);
            const std::string_view last =
                std::string_view(received.bytes).substr(received.bytes.size() - length);
            EXPECT_TRUE(std::string_view(log).ends_with(last))
                << "'" << last << "' is not the end of " << log;
        } else {
            received.bytes.clear();  // a new log since the last look
        }
        received.header = header;
    }

    SimulatedPorts ports;
    std::vector<DemoInstrument> instruments;
    std::map<const DataWindow*, Received> listened;
    LinkSink sink;
};

TEST_P(ClickerTest, TenMinutesOfUse) {
    Clicker clicker(GetParam(), Files());
    const bool talks = qEnvironmentVariableIsSet("MARISONDE_CLICKER_LOG");
    const Millis end = clock.Steady() + std::chrono::minutes(10);
    int actions = 0;
    while (clock.Steady() < end) {
        KeepAWindowOpen();
        const QString what = clicker.Act();
        if (talks) std::fprintf(stderr, "%d %s\n", actions, qPrintable(what));
        ++actions;
        Settle();
        KeepAWindowOpen();
        Run(kTick * (1 + clicker.Pick(40)));
        ASSERT_LE(shell->Windows().size(), static_cast<std::size_t>(kMaxWindows));
        if (actions % 10 == 0) ExpectNothingLost();
        ASSERT_FALSE(HasFailure()) << "after " << what.toStdString();
    }
    EXPECT_GT(actions, 300);
}

INSTANTIATE_TEST_SUITE_P(Seeds, ClickerTest, testing::Range(1U, 7U));

}  // namespace
}  // namespace marisonde
