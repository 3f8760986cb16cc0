#include <QAction>
#include <QFileInfo>
#include <QLabel>
#include <QMessageBox>
#include <QRegularExpression>
#include <array>
#include <fstream>
#include <sstream>

#include "app/forms/About.h"
#include "app/forms/HelpPages.h"
#include "app_forms/Browser.h"
#include "app_forms/FormsFixture.h"
#include "common/Version.h"
#include "platform/Paths.h"
#include "support/ScriptedDialogs.h"

namespace marisonde {
namespace {

class HelpTest : public FormsFixture {
  protected:
    Browser browser;
};

const std::vector<std::pair<const char*, const char*>> kItems{{"QuickStartItem", "quickstart.htm"},
                                                              {"ReleaseNotesItem", "releasenotes.htm"},
                                                              {"AboutSigmaItem", "aboutSigma.htm"},
                                                              {"AboutbbItem", "aboutbb.htm"}};

TEST_F(HelpTest, EachItemShowsItsPage) {
    const MainForm* const form = Empty();
    for (const auto& [item, page] : kItems) {
        browser.shown.clear();
        auto* const action = form->findChild<QAction*>(item);
        ASSERT_NE(action, nullptr) << item;
        action->trigger();
        ASSERT_EQ(browser.shown.size(), 1) << item;
        EXPECT_EQ(browser.shown[0].fileName(), page);
        EXPECT_TRUE(QFileInfo::exists(browser.shown[0].toLocalFile()))
            << browser.shown[0].toString().toStdString();
    }
    EXPECT_EQ(form->findChild<QAction*>("QuickStartItem")->shortcut(), QKeySequence(Qt::Key_F1));
}

TEST_F(HelpTest, AboutOfAParameterFormShowsItsPage) {
    const std::vector<std::array<const char*, 3>> forms{
        {"SigmaParamsItem", "SigmaParamsFormNew", "aboutSigma.htm"},
        {"PureWaterParamsItem", "bbParamsForm", "aboutbb.htm"}};
    const MainForm* const window = Empty();
    for (const auto& [item, name, page] : forms) {
        browser.shown.clear();
        window->findChild<QAction*>(item)->trigger();
        Settle();
        QDialog* const form = Open(window, name);
        ASSERT_NE(form, nullptr) << name;
        form->findChild<QAbstractButton*>("AboutButton")->click();
        ASSERT_EQ(browser.shown.size(), 1) << name;
        EXPECT_EQ(browser.shown[0].fileName(), page);
        EXPECT_TRUE(form->isVisible());
        form->reject();
    }
}

TEST_F(HelpTest, AMissingPageIsTold) {
    ScriptedDialogs dialogs;
    OpenHelpPage("aboutNothing.htm", dialogs);
    EXPECT_TRUE(browser.shown.isEmpty());
    ASSERT_EQ(dialogs.errors.size(), 1U);
    EXPECT_EQ(dialogs.errors[0], "The help page aboutNothing.htm was not found in " +
                                     (ProgramFolder() / "Help Files").string() + ".");
}

TEST_F(HelpTest, PagesNeedNothingFromElsewhere) {
    static const QRegularExpression kReference("(?:href|src)=\"([^\"]+)\"");
    for (const auto& [item, page] : kItems) {
        const std::filesystem::path path = DataFolder() / "help" / page;
        std::ostringstream text;
        text << std::ifstream(path, std::ios::binary).rdbuf();
        auto found = kReference.globalMatch(QString::fromStdString(text.str()));
        EXPECT_TRUE(found.hasNext()) << page;
        while (found.hasNext()) {
            const std::string target = found.next().captured(1).toStdString();
            EXPECT_TRUE(std::filesystem::exists(path.parent_path() / target)) << page << " wants " << target;
        }
    }
}

TEST_F(HelpTest, TheSplashTellsTheSameAndAsksNothing) {
    const auto splash = MakeSplash();
    splash->show();
    Settle();
    EXPECT_EQ(splash->objectName(), "AboutForm");
    EXPECT_EQ(qobject_cast<QLabel*>(splash.get())->text(), AboutText());
    EXPECT_TRUE(splash->findChildren<QAbstractButton*>().isEmpty());
    EXPECT_FALSE(splash->isModal());
    EXPECT_TRUE(splash->testAttribute(Qt::WA_ShowWithoutActivating));
}

TEST_F(HelpTest, AboutTellsVersionLicenceAndLibraries) {
    const MainForm* const form = Empty();
    form->findChild<QAction*>("AboutItem")->trigger();
    const auto* const box = form->findChild<QMessageBox*>("AboutForm");
    ASSERT_NE(box, nullptr);
    for (const QString& told :
         {QString::fromUtf8(kVersion.data(), kVersion.size()), QString("GNU General Public License"),
          QString("Qt "), QString("QCustomPlot"), QString("QCoro"), QString("{fmt}")})
        EXPECT_TRUE(box->text().contains(told)) << told.toStdString();
}

}  // namespace
}  // namespace marisonde
