// A calibration that the instrument sends into the window's object: from which sample on it counts.
#include "app/DataWindow.h"
#include "app/WindowFixture.h"

namespace marisonde {
namespace {

using simulator::Model;

class ArrivingCalibrationTest : public WindowFixture {
  protected:
    ArrivingCalibrationTest() : window_(Scripted(Model::Corvane6)) {
        SetDepth(5);
        window_->CalibrationChanged();
        Hear();
    }

    /// One count of pressure is 1 cm of water, so that the 8000 counts of the line below are 80 m - `offset`.
    void SetDepth(float offset) {
        window_->Link.CalData.DepthCal = 0.01F;
        window_->Link.CalData.DepthOff = offset;
    }

    /// A Corvane line: 8 digits of time, 32 of counts, 8 gains, pressure 1F40 = 8000, temperature, error.
    static std::string Line() {
        const std::string body = "*D4E11860A" + std::string(32, '1') + "11111111" + "1F40" + "32" + "00";
        unsigned sum = 0;
        for (std::size_t i = 1; i < body.size(); ++i) sum += static_cast<unsigned char>(body[i]);
        const std::string digits = "0123456789ABCDEF";
        return body + digits[sum / 16 % 16] + digits[sum % 16] + "\r";
    }
    void Hear() {
        port->Queue(Line());
        Run(*window_, kTick);
    }

    DataWindowState& State() { return window_->Link.State; }
    [[nodiscard]] double Depth() const { return window_->Link.State.CurrentSample.Depth; }

    std::unique_ptr<DataWindow> window_;
};

TEST_F(ArrivingCalibrationTest, SamplesAreConvertedWithTheNewOneThoughNobodyHasShownItYet) {
    EXPECT_NEAR(Depth(), 75, 1e-4);
    State().CalReady = false;
    SetDepth(25);
    Run(*window_, kTick);
    State().CalReady = true;
    Hear();
    EXPECT_EQ(State().Counted.samples, 2);
    EXPECT_NEAR(Depth(), 55, 1e-4);
}

TEST_F(ArrivingCalibrationTest, LinesWaitInTheTickThatBringsItsEnd) {
    State().CalReady = false;
    Run(*window_, kTick);
    // What the end of the reply does: complete by its words, its numbers still to be checked.
    window_->Link.OnChunk = [this](std::string_view) { State().CalReady = true; };
    Hear();
    EXPECT_EQ(State().Counted.samples, 1);
    EXPECT_EQ(window_->Link.DataLineQueue.size(), 1);
    SetDepth(30);
    Run(*window_, kTick);
    EXPECT_EQ(State().Counted.samples, 2);
    EXPECT_NEAR(Depth(), 50, 1e-4);
}

TEST_F(ArrivingCalibrationTest, GraphIsLaidOutForTheModelItIsOf) {
    State().CalReady = false;
    Run(*window_, kTick);
    window_->Link.CalData.InstType = InstTypeCode::LTidal;
    State().CalReady = true;
    Run(*window_, kTick);
    EXPECT_EQ(window_->Plot.Model(), InstTypeCode::LTidal);
}

}  // namespace
}  // namespace marisonde
