#include <QAction>
#include <QLineEdit>
#include <QMenu>
#include <QToolButton>

#include "app/forms/StatusItems.h"
#include "app_forms/FormsFixture.h"
#include "platform/KeepAwake.h"
#include "support/NotingInhibitor.h"

namespace marisonde {
namespace {

using simulator::Model;

class StatusFormsTest : public FormsFixture {
  protected:
    static QAction* Item(const QWidget* form, const char* name) { return form->findChild<QAction*>(name); }
    static QString MenuCaption(const QWidget* form) { return form->findChild<QMenu*>("Inst_menu")->title(); }
    /// The instrument is heard of in this state.
    void Say(MainForm* form, InstStateCode state) {
        DataWindowState& record = form->Window().Link.State;
        record.LastInputTime = clock.Steady();
        record.InstState = state;
        record.PrevInstState = InstStateCode::Unknown;
        Run(kTick);
    }
    /// A window on a port that says nothing by itself.
    MainForm* Silent() {
        auto line = std::make_unique<ScriptedLine>();
        port = line.get();
        MainForm* const form = shell->NewWindow(std::move(line));
        EXPECT_EQ(form->Window().OpenWithoutQuery(2, 19200, InstTypeCode::Corvane6), "");
        form->show();
        form->findChild<QTimer*>("ProcessSerialInputTimer")->stop();
        if (QDialog* notice = Open(form, "ErrorForm")) notice->reject();
        Run(kTick);
        return form;
    }
    ScriptedLine* port = nullptr;
};

TEST_F(StatusFormsTest, ItemsFollowTheState) {
    MainForm* const form = Silent();
    struct Row {
        InstStateCode state;
        bool startStop;
        bool sleep;
        const char* caption;
        const char* sleepCaption;
    };
    for (const Row& row : {Row{InstStateCode::Stopped, true, true, "&Start", "S&leep"},
                           Row{InstStateCode::Sampling, true, true, "&Stop", "S&leep"},
                           Row{InstStateCode::StopSent, true, true, "&Stop", "S&leep"},
                           Row{InstStateCode::Sleeping, false, true, "&Start", "&Wake"},
                           Row{InstStateCode::Downloading, false, false, "&Start", "S&leep"}}) {
        Say(form, row.state);
        const int code = static_cast<int>(row.state);
        EXPECT_EQ(Item(form, "Start_Stop_menu")->isEnabled(), row.startStop) << code;
        EXPECT_EQ(form->findChild<QToolButton*>("Start_Button")->isEnabled(), row.startStop) << code;
        EXPECT_EQ(Item(form, "Sleep_menu")->isEnabled(), row.sleep) << code;
        EXPECT_TRUE(Item(form, "Disconnect_menu")->isEnabled()) << code;
        EXPECT_EQ(Item(form, "Start_Stop_menu")->text(), row.caption) << code;
        EXPECT_EQ(Item(form, "Sleep_menu")->text(), row.sleepCaption) << code;
    }
    form->Window().Link.ClosePort();
    Run(kTick);
    for (const char* name : {"Start_Stop_menu", "Sleep_menu", "Disconnect_menu"})
        EXPECT_FALSE(Item(form, name)->isEnabled()) << name;
    EXPECT_TRUE(Item(form, "Connect_menu")->isEnabled());
}

TEST_F(StatusFormsTest, TheStartButtonTellsOfTheShutter) {
    MainForm* const form = Silent();
    auto* const button = form->findChild<QToolButton*>("Start_Button");
    Say(form, InstStateCode::OpeningShutter);
    EXPECT_EQ(button->text(), "Open Shutter");
    const int width = button->width();
    Say(form, InstStateCode::ClosingShutter);
    EXPECT_EQ(button->text(), "Close Shutter");
    Say(form, InstStateCode::Sampling);
    EXPECT_EQ(button->text(), "Stop");
    EXPECT_EQ(button->width(), width) << "what stands beside it does not move";
}

TEST_F(StatusFormsTest, StartStopSendsWhatTheButtonSays) {
    MainForm* const form = Silent();
    Say(form, InstStateCode::Stopped);
    Item(form, "Start_Stop_menu")->trigger();
    EXPECT_EQ(form->Window().Link.State.CurrentCommand, "START");
    EXPECT_EQ(form->Window().StatusText(), "Pending");
    Say(form, InstStateCode::Sampling);
    QTest::mouseClick(form->findChild<QToolButton*>("Start_Button"), Qt::LeftButton);
    EXPECT_EQ(form->Window().Link.State.CurrentCommand, "STOP");
    Say(form, InstStateCode::Stopped);
    Item(form, "Sleep_menu")->trigger();
    EXPECT_EQ(form->Window().Link.State.CurrentCommand, "SETSLEEP");
}

TEST_F(StatusFormsTest, ItemsThatComeLaterFollowToo) {
    MainForm* const form = Silent();
    auto* const later = new QAction("Clock...", form);
    later->setObjectName("Date_Time_menu");
    Say(form, InstStateCode::Sleeping);
    EXPECT_FALSE(later->isEnabled());
    Say(form, InstStateCode::Stopped);
    EXPECT_TRUE(later->isEnabled());
}

TEST_F(StatusFormsTest, WhatIsNotOfferedYetSaysSo) {
    MainForm* const form = Silent();
    Say(form, InstStateCode::Stopped);
    for (const char* name : {"Transfer_menu", "Reset_menu", "DoCalMenu"}) {
        const QAction* const item = Item(form, name);
        ASSERT_NE(item, nullptr) << name;
        EXPECT_FALSE(item->isEnabled()) << name;
        EXPECT_TRUE(item->toolTip().endsWith("is not part of this version yet")) << name;
        const auto* const menu = qobject_cast<QMenu*>(item->associatedObjects().constFirst());
        ASSERT_NE(menu, nullptr) << name;
        EXPECT_TRUE(menu->toolTipsVisible()) << name;
    }
}

TEST_F(StatusFormsTest, TheMenuIsCalledAfterTheModel) {
    MainForm* const form = Silent();
    EXPECT_EQ(MenuCaption(form), "Corvane-6&");
    form->Window().Link.ClosePort();
    Run(kTick);
    EXPECT_EQ(MenuCaption(form), "&Instrument");
}

TEST_F(StatusFormsTest, ReadoutsWithoutAValueAreDashes) {
    const MainForm* const form = Empty();
    Run(kTick);
    for (const char* name : {"ElapsedPanel", "DepthPanel", "TemperaturePanel", "VoltagePanel"})
        EXPECT_EQ(Text(form, name), "---") << name;
    EXPECT_EQ(Text(form, "CountsPanel"), "0 lines, 0 samples, 0 bad");
}

TEST_F(StatusFormsTest, FeetAndFailedValues) {
    MainForm* const form = Sampling();
    Run(std::chrono::seconds(2));
    form->Window().Link.ClosePort();
    DataWindowState& state = form->Window().Link.State;
    state.CurrentSample.Depth = 12;
    state.SupplyVoltage = 11.26F;
    form->Window().Plot.ChangeDepthUnits(false);
    Run(kTick);
    EXPECT_EQ(Text(form, "DepthPanel"), "39.37 ft") << "12 m x 39.37 / 12";
    EXPECT_EQ(Text(form, "VoltagePanel"), "11.3 V");
    state.CurrentSample.Depth = 3.4e38F;
    state.CurrentSample.Temp = 3.4e38F;
    state.SupplyVoltage.reset();
    Run(kTick);
    for (const char* name : {"DepthPanel", "TemperaturePanel", "VoltagePanel"})
        EXPECT_EQ(Text(form, name), "---") << name;
}

TEST_F(StatusFormsTest, CountsOfLinesAreInView) {
    MainForm* const form = Silent();
    port->Queue("*B000102030405060708090A0B0C0D0E0F00\rready\r");
    Run(kTick);
    const DataWindowState::Counts& counted = form->Window().Link.State.Counted;
    EXPECT_EQ(counted.lines, 2);
    EXPECT_EQ(Text(form, "CountsPanel"),
              "2 lines, 0 samples, " + std::to_string(counted.badChecksums) + " bad");
}

TEST_F(StatusFormsTest, CountsOfAWeekAreNotCutOff) {
    MainForm* const form = Silent();
    form->Window().Link.State.Counted = {123456789, 123456780, 1234567};
    Run(kTick);
    const auto* const counts = form->findChild<QLabel*>("CountsPanel");
    EXPECT_EQ(counts->text(), "123456789 lines, 123456780 samples, 1234567 bad");
    EXPECT_GE(counts->width(), counts->fontMetrics().horizontalAdvance(counts->text()));
}

TEST_F(StatusFormsTest, TheStatusDialogShowsTheInstrument) {
    MainForm* const form = Silent();
    Say(form, InstStateCode::Stopped);
    Item(form, "InstStatusItem")->trigger();
    const QDialog* const dialog = Open(form, "InstStatusForm");
    ASSERT_NE(dialog, nullptr);
    EXPECT_FALSE(dialog->isModal()) << "it holds up nothing";
    const auto box = [&](const char* name) { return dialog->findChild<QLineEdit*>(name)->text(); };
    EXPECT_EQ(box("Device_Box"), "Corvane-6");
    EXPECT_EQ(box("Status_Box"), "Stopped");
    EXPECT_EQ(box("Com_Port_Box"), "2");
    EXPECT_EQ(box("BAUD_Rate_Box"), "19200");
    Say(form, InstStateCode::Sleeping);
    EXPECT_EQ(box("Status_Box"), "Sleeping") << "it follows the instrument";
}

TEST_F(StatusFormsTest, TheComputerStaysAwakeWhileAnyInstrumentSamples) {
    std::string notes;
    shell->UseInhibitor(std::make_unique<NotingInhibitor>(notes));
    Empty();
    MainForm* const first = Sampling();
    Run(kTick);
    EXPECT_EQ(notes, "");
    Run(std::chrono::seconds(3));
    EXPECT_EQ(notes, "hold ");
    MainForm* const second = Sampling();
    Run(std::chrono::seconds(3));
    first->Window().Link.ClosePort();
    Run(kTick);
    EXPECT_EQ(notes, "hold ") << "the second goes on";
    second->CloseWithoutAsking();
    Run(kTick);
    EXPECT_EQ(notes, "hold release ");
}

}  // namespace
}  // namespace marisonde
