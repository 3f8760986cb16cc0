#pragma once

#include <algorithm>
#include <cmath>
#include <deque>
#include <memory>
#include <string>
#include <vector>

#include "app/WindowFixture.h"
#include "platform/Operations.h"

namespace marisonde {

/// Data windows with their long operations, and files for them to open.
class FilesFixture : public WindowFixture {
  protected:
    /// A window and what runs in it. Operations end before their window does.
    struct Held {
        std::unique_ptr<DataWindow> window;
        std::unique_ptr<Operations> operations;
    };

    FilesFixture() : pump(clock) {}

    /// The window runs its operations from now on.
    DataWindow& Keep(std::unique_ptr<DataWindow> window) {
        auto operations = std::make_unique<Operations>(
            pump, [](const std::string& name, const std::string& why) { FAIL() << name << ": " << why; });
        window->Running = operations.get();
        held.push_back({std::move(window), std::move(operations)});
        return *held.back().window;
    }
    DataWindow& Empty() {
        return Keep(std::make_unique<DataWindow>(app, dialogs, std::make_unique<ScriptedLine>()));
    }
    /// A window without a connection that holds the calibration of a model.
    DataWindow& WithCal(simulator::Model model) {
        DataWindow& window = Empty();
        EXPECT_TRUE(window.LoadCalIntoWindow(CalOf(model)));
        return window;
    }

    std::string CalOf(simulator::Model model, const std::string& serial = "") {
        simulator::Options options;
        options.serial = serial;
        const auto path = folder / ("cal" + std::to_string(static_cast<int>(model)) + serial + ".cal");
        TestFolder::Write(path, simulator::MakeInstrument(model, options)->CalText());
        return path.string();
    }

    /// What an instrument sent in this time, as a raw file and a calibrated file of that name, and the window
    /// that showed it live.
    struct Cast {
        std::string raw;
        std::string dat;
        std::unique_ptr<DataWindow> live;
    };
    Cast Record(simulator::Model model, const std::string& name, const simulator::Options& options = {},
                Millis time = std::chrono::seconds(60)) {
        Cast cast;
        cast.live = Simulated(model, options);
        Run(*cast.live, time);
        cast.raw = (folder / (name + ".raw")).string();
        cast.dat = (folder / (name + ".dat")).string();
        EXPECT_FALSE(cast.live->Files.SaveCopy(DataFileKind::Raw, cast.raw));
        EXPECT_FALSE(cast.live->Files.SaveCopy(DataFileKind::Dat, cast.dat));
        return cast;
    }

    /// Lets time pass in the windows that are kept until nothing runs, at most so many ticks.
    void Settle(int ticks = 400) {
        for (int i = 0; i < ticks && AnythingRuns(); ++i) Tick();
    }
    void Tick() {
        clock.AdvanceBy(kTick);
        for (const Held& one : held) one.window->Tick();
        pump.ResumeReady();
    }
    bool AnythingRuns() const {
        return std::any_of(held.begin(), held.end(),
                           [](const Held& one) { return one.operations->Count() > 0; });
    }
    Operations& OperationsOf(const DataWindow& window) {
        for (const Held& one : held)
            if (one.window.get() == &window) return *one.operations;
        throw std::logic_error("a window that is not kept");
    }
    /// Runs an operation in a window until it has ended or waits for an answer that is not there.
    void Do(DataWindow& window, Operations::Procedure procedure) {
        OperationsOf(window).Start("Test", std::move(procedure));
        Settle();
    }

    std::vector<std::string> Asked() const {
        std::vector<std::string> texts;
        for (const Question& question : dialogs.asked) texts.push_back(question.message);
        return texts;
    }
    std::string Buttons(std::size_t question) const {
        if (question >= dialogs.asked.size()) return "not asked";
        const Question& asked = dialogs.asked[question];
        return asked.first + "|" + asked.second + "|" + asked.third;
    }

    /// A raw file of so many samples, all the same.
    std::string RawOf(int samples, const std::string& name = "many.raw") {
        const Cast cast = Record(simulator::Model::Corvane6, "one", {}, std::chrono::seconds(5));
        const std::string text = TestFolder::Read(cast.raw);
        const std::string data = BehindHeader(text, "[EndHeader]");
        const std::size_t begin = data.find("*T");
        const std::string line = data.substr(begin, data.find("\r\n", begin) + 2 - begin);
        std::string many = text.substr(0, text.size() - data.size());
        for (int i = 0; i < samples; ++i) many += line;
        TestFolder::Write(folder / name, many);
        return (folder / name).string();
    }
    /// X and Y of every drawn point of the chart; gaps, which equal nothing, as a number that no point has.
    static std::vector<std::vector<double>> PointsOf(DataWindow& window) {
        std::vector<std::vector<double>> points;
        for (const int number : {1, 2}) {
            const ChartGroup& group = window.Chart.ChartGroups(number);
            if (group.NumSeries() == 0) continue;
            std::vector<double>& x = points.emplace_back();
            for (int i = 1; i <= group.LastPoint(); ++i) x.push_back(group.X(i));
            for (int series = 1; series <= group.NumSeries(); ++series) {
                std::vector<double>& y = points.emplace_back();
                for (int i = 1; i <= group.LastPoint(); ++i) {
                    const double value = group.Y(series, i);
                    y.push_back(std::isnan(value) ? -1e308 : value);
                }
            }
        }
        return points;
    }

    Pump pump;
    std::deque<Held> held;
};

}  // namespace marisonde
