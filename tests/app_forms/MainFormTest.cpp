#include <QAction>
#include <QKeyEvent>
#include <QMenuBar>
#include <QStatusBar>

#include "app/forms/ChannelPanel.h"
#include "app/forms/NoticeStrip.h"
#include "app_forms/FormsFixture.h"

namespace marisonde {
namespace {

using simulator::Model;

class MainFormTest : public FormsFixture {
  protected:
    static QWidget* PanelOf(MainForm* form) { return form->findChild<QWidget*>("ChannelPanel"); }
    static void PressF4(MainForm* form) {
        form->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(form));
        QTest::keyClick(form, Qt::Key_F4);
    }
    std::string Stored(const char* key) const { return settings.GetSetting("App", key, "-"); }
};

TEST_F(MainFormTest, WithoutConnectionSaysSo) {
    MainForm* const form = Empty();
    Run(kTick);
    EXPECT_EQ(form->windowTitle(), "No connection - Marisonde");
    EXPECT_EQ(Text(form, "Status_Box"), "No Connection");
    EXPECT_EQ(Text(form, "DataPath"), "");
}

TEST_F(MainFormTest, ShowsReadoutsOfASamplingInstrument) {
    MainForm* const form = Sampling();
    Run(std::chrono::seconds(5));
    EXPECT_EQ(Text(form, "Status_Box"), "Sampling");
    EXPECT_EQ(form->windowTitle(), "untitled1 - Marisonde");
    const CalibratedSample& sample = form->Window().Link.State.CurrentSample;
    for (int channel = 0; channel < 6; ++channel) {
        const std::string box = Text(form, ("DataBox(" + std::to_string(channel) + ")").c_str());
        // Whole hundred-thousandths of the shown backscattering.
        const double shown = std::stod(box);
        EXPECT_NEAR(shown, sample.bb.at(static_cast<std::size_t>(channel)), 0.0005) << channel;
        EXPECT_EQ(box.size() - box.find('.') - 1, 5U) << box;
        EXPECT_TRUE(form->findChild<QWidget*>(QString("Channel_Frame(%1)").arg(channel))->isVisible());
    }
    EXPECT_FALSE(form->findChild<QWidget*>("Channel_Frame(12)")->isVisible());
    EXPECT_EQ(Text(form, "DepthPanel").substr(Text(form, "DepthPanel").size() - 2), " m");
    EXPECT_NEAR(std::stod(Text(form, "DepthPanel")), sample.Depth, 0.0051);
    EXPECT_NEAR(std::stod(Text(form, "TemperaturePanel")), sample.Temp, 0.0051);
    EXPECT_EQ(Text(form, "ElapsedPanel"), "0.1 min");
    form->resize(1100, 680);
    Settle();
    EXPECT_NE(Text(form, "DataPath").find("Recording in"), std::string::npos);
    form->resize(form->minimumSize());
    Settle();
    EXPECT_NE(Text(form, "DataPath").find("href"), std::string::npos)
        << "a narrow window keeps the way there";
}

TEST_F(MainFormTest, SaysWhatBecomesOfTheData) {
    MainForm* const form = Sampling();
    form->resize(1400, 680);
    Run(std::chrono::seconds(1));
    DataWindow& window = form->Window();
    const std::string folderName = folder.Path().filename().string();
    EXPECT_NE(Text(form, "DataPath").find("Recording in "), std::string::npos);
    EXPECT_NE(Text(form, "DataPath").find(folderName), std::string::npos);

    // As after an error: what was written stays.
    ASSERT_FALSE(window.Files.SetAside([](const auto&) { return false; }));
    Run(kTick);
    EXPECT_NE(Text(form, "DataPath").find("Recorded in "), std::string::npos);

    window.Files.CloseDataFiles(false);
    Run(std::chrono::seconds(1));
    EXPECT_EQ(Text(form, "DataPath"), "Not recorded");
    EXPECT_NE(form->findChild<QLabel*>("DataPath")->toolTip().indexOf("Use New File"), -1);

    window.OpenDataFiles("raw", true);
    Run(kTick);
    EXPECT_NE(Text(form, "DataPath").find("Recording in "), std::string::npos);
}

TEST_F(MainFormTest, EveryStateHasItsWord) {
    MainForm* const form = Empty();
    DataWindowState& state = form->Window().Link.State;
    const std::vector<std::pair<InstStateCode, std::string>> words{
        {InstStateCode::Unknown, "unknown"},
        {InstStateCode::NoConnection, "No Connection"},
        {InstStateCode::Starting, "Starting: 7 s"},
        {InstStateCode::Sampling, "Sampling"},
        {InstStateCode::Stopped, "Stopped"},
        {InstStateCode::Sleeping, "Sleeping"},
        {InstStateCode::Waking, "Waking"},
        {InstStateCode::Downloading, "Downloading"},
        {InstStateCode::Pending, "Pending"},
        {InstStateCode::NoData, "No Data"},
        {InstStateCode::OpeningShutter, "Open Shutter"},
        {InstStateCode::ClosingShutter, "Close Shutter"}};
    state.StartsInSeconds = 7;
    for (const auto& [code, word] : words) {
        state.LastInputTime = clock.Steady();
        state.InstState = code;
        Run(kTick);
        EXPECT_EQ(Text(form, "Status_Box"), word);
    }
}

TEST_F(MainFormTest, F4TogglesTheChannelPanelAndKeepsIt) {
    settings.SaveSetting("App", "ChannelViewOpen", "1");
    MainForm* const form = Empty();
    EXPECT_TRUE(PanelOf(form)->isVisible());
    PressF4(form);
    EXPECT_FALSE(PanelOf(form)->isVisible());
    EXPECT_FALSE(FlagFromText(Stored("ChannelViewOpen")));
    MainForm* const later = Empty();
    EXPECT_FALSE(PanelOf(later)->isVisible());
    PressF4(later);
    EXPECT_TRUE(PanelOf(later)->isVisible());
    EXPECT_TRUE(FlagFromText(Stored("ChannelViewOpen")));
    EXPECT_FALSE(PanelOf(form)->isVisible()) << "each window has its own";
}

TEST_F(MainFormTest, ThePointerShowsThatTheUserHasToWait) {
    MainForm* const form = Empty();
    form->Window().Busy = true;
    Run(kTick);
    EXPECT_EQ(form->cursor().shape(), Qt::WaitCursor);
    form->Window().Busy = false;
    Run(kTick);
    EXPECT_EQ(form->cursor().shape(), Qt::ArrowCursor);
}

TEST_F(MainFormTest, TheTabKeyFollowsTheEye) {
    MainForm* const form = Sampling();
    form->Notices().AddNotice("Data were recovered.");
    form->Window().StatusLine = "Saved.";
    Run(2 * kTick);
    EXPECT_EQ(form->focusWidget(), form->findChild<QWidget*>("Chart2D1"))
        << "the keys of the graph work at once";
    const std::vector<const char*> order{"Load_Button",
                                         "Connect_Button",
                                         "Termulator_Button",
                                         "Start_Button",
                                         "Full_Button",
                                         "Vs_Depth_Button",
                                         "OKButton",
                                         "Chart2D1",
                                         "ChannelOnOff_Check(0)",
                                         "Channel_Open(0)",
                                         "ChannelOnOff_Check(1)",
                                         "HideStatusLine",
                                         "DataPath"};
    form->findChild<QWidget*>(order.front())->setFocus();
    for (std::size_t i = 1; i < order.size(); ++i) {
        const QWidget* const wanted = form->findChild<QWidget*>(order[i]);
        ASSERT_NE(wanted, nullptr) << order[i];
        for (int key = 0; key < 30 && form->focusWidget() != wanted; ++key)
            QTest::keyClick(form->focusWidget(), Qt::Key_Tab);
        EXPECT_EQ(form->focusWidget(), wanted) << order[i];
    }
}

TEST_F(MainFormTest, PlaceAndSizeComeBack) {
    MainForm* const form = Empty();
    form->setGeometry(60, 70, 700, 500);
    form->close();
    Run(2 * kTick);
    EXPECT_EQ(Stored("Top") + " " + Stored("Left") + " " + Stored("Height") + " " + Stored("Width"),
              "70 60 500 700");
    EXPECT_EQ(Empty()->geometry(), QRect(60, 70, 700, 500));
}

TEST_F(MainFormTest, AMinimisedWindowKeepsNothing) {
    settings.SaveSetting("App", "Top", "55");
    MainForm* const form = Empty();
    form->showMinimized();
    form->close();
    Run(2 * kTick);
    EXPECT_TRUE(shell->Windows().empty());
    EXPECT_EQ(Stored("Top"), "55");
    EXPECT_EQ(Stored("Width"), "-");
}

TEST_F(MainFormTest, APlaceOffTheScreenIsBroughtBack) {
    settings.SaveSetting("App", "Top", "20000");
    settings.SaveSetting("App", "Left", "-20000");
    settings.SaveSetting("App", "Width", "650");
    const MainForm* const form = Empty();
    const QRect place = form->geometry();
    EXPECT_TRUE(form->screen()->availableGeometry().contains(place))
        << place.left() << " " << place.top() << " " << place.width() << " " << place.height();
}

TEST_F(MainFormTest, LaterWindowsDoNotCoverTheFirst) {
    settings.SaveSetting("App", "Top", "40");
    settings.SaveSetting("App", "Left", "30");
    settings.SaveSetting("App", "Width", "650");
    settings.SaveSetting("App", "Height", "430");
    EXPECT_EQ(Empty()->geometry().topLeft(), QPoint(30, 40));
    EXPECT_EQ(Empty()->geometry().topLeft(), QPoint(58, 68));
}

TEST_F(MainFormTest, ControlsCarryTheirNames) {
    MainForm* const form = Sampling();
    for (const char* name :
         {"File_menu", "Graph_menu", "Window_menu", "Help_menu", "ExitItem", "ChannelViewItem", "AboutItem",
          "StatusBar", "Status_Box", "ElapsedPanel", "DepthPanel", "TemperaturePanel", "VoltagePanel",
          "DataPath", "ChannelPanel", "ProcessSerialInputTimer"})
        EXPECT_NE(form->findChild<QObject*>(name), nullptr) << name;
    for (int channel = 0; channel < kChannelSlots; ++channel)
        for (const char* array : {"Channel_Frame(%1)", "Color_sel(%1)", "Channel_Text(%1)", "DataBox(%1)"})
            EXPECT_NE(form->findChild<QWidget*>(QString(array).arg(channel)), nullptr) << array << channel;
}

TEST_F(MainFormTest, WhatIsShownCanBeReadAloud) {
    MainForm* const form = Sampling();
    for (const char* name :
         {"Status_Box", "ElapsedPanel", "DepthPanel", "TemperaturePanel", "VoltagePanel"}) {
        const auto* const panel = form->findChild<QWidget*>(name);
        EXPECT_FALSE(panel->accessibleName().isEmpty()) << name;
        EXPECT_FALSE(panel->toolTip().isEmpty()) << name;
    }
    EXPECT_EQ(form->findChild<QWidget*>("DataBox(0)")->accessibleName(), "bb470  (1/m)");
    EXPECT_EQ(form->findChild<QWidget*>("Color_sel(0)")->accessibleName(), "Colour of bb470");
    EXPECT_FALSE(PanelOf(form)->accessibleName().isEmpty());
}

TEST_F(MainFormTest, ThePanelKeepsItsWidthWhenValuesAppear) {
    MainForm* const form = Empty();
    const int empty = PanelOf(form)->width();
    const auto* const hint = PanelOf(form)->findChild<QLabel*>("Hint");
    EXPECT_GE(hint->height(), hint->heightForWidth(hint->width())) << "the hint is not cut";
    EXPECT_EQ(PanelOf(Sampling())->width(), empty);
}

}  // namespace
}  // namespace marisonde
