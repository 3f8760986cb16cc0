#include <QAction>
#include <QCheckBox>
#include <QFileDialog>
#include <QKeySequence>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QRadioButton>
#include <QTabWidget>
#include <set>

#include "app/forms/ParameterCommands.h"
#include "app_forms/FormsFixture.h"

namespace marisonde {
namespace {

/// One of the parameter forms, opened from the File menu of a window.
class ParameterFormsTest : public FormsFixture {
  protected:
    void OpenBy(const char* item, const char* name) {
        if (window == nullptr) window = Empty();
        auto* const action = window->findChild<QAction*>(item);
        ASSERT_NE(action, nullptr) << item;
        EXPECT_TRUE(window->findChild<QMenu*>("File_menu")->actions().contains(action));
        action->trigger();
        Settle();
        form = Open(window, name);
        ASSERT_NE(form, nullptr) << name;
    }
    void OpenPreferences() { OpenBy("PreferencesItem", "Preferences"); }
    void OpenSigma() {
        OpenBy("SigmaParamsItem", app.sigma.includePurewater ? "SigmaParamsFormOld" : "SigmaParamsFormNew");
    }
    void OpenWater() { OpenBy("PureWaterParamsItem", "bbParamsForm"); }

    template <class Control>
    Control* Get(const char* name) {
        auto* const control = form->findChild<Control*>(name);
        EXPECT_NE(control, nullptr) << name;
        return control;
    }
    void Click(const char* button) {
        QTest::mouseClick(Get<QPushButton>(button), Qt::LeftButton);
        Settle();
    }
    void Type(const char* box, const char* text) {
        Get<QLineEdit>(box)->selectAll();
        QTest::keyClicks(Get<QLineEdit>(box), text);
        if (std::string(text).empty()) QTest::keyClick(Get<QLineEdit>(box), Qt::Key_Backspace);
    }
    std::string Box(const char* name) { return Get<QLineEdit>(name)->text().toStdString(); }
    std::string Result(const char* name) { return Get<QLabel>(name)->text().toStdString(); }
    void Choose(PureWaterChoice choice) {
        const auto name = "PureWaterOption(" + std::to_string(static_cast<int>(choice)) + ")";
        Get<QRadioButton>(name.c_str())->click();
    }
    /// The text of the notice above the form, which is then closed.
    std::string Notice() {
        const std::string text = Message(form, "ErrorForm");
        if (QDialog* const notice = Open(form, "ErrorForm")) notice->accept();
        return text;
    }
    /// A form's letters each lead to one control, and each control has a name of its own for a screen reader.
    void ExpectUsableByKeyboard() {
        std::set<QString> letters;
        for (const QAbstractButton* button : form->findChildren<QAbstractButton*>())
            ExpectNew(letters, button->text());
        for (const QLabel* label : form->findChildren<QLabel*>())
            if (label->buddy() != nullptr) ExpectNew(letters, label->text());
        for (const QLineEdit* box : form->findChildren<QLineEdit*>())
            EXPECT_FALSE(box->accessibleName().isEmpty()) << box->objectName().toStdString();
        EXPECT_TRUE(Get<QPushButton>("OKButton")->isDefault());
    }
    /// From where the form opens, the tab key leads right or down until it starts again at the top.
    void ExpectTabFollowsTheEye() {
        std::vector<QWidget*> order;
        QWidget* const first = form->focusWidget();
        ASSERT_NE(first, nullptr);
        for (QWidget* at = first; order.empty() || at != first; at = form->focusWidget()) {
            ASSERT_LT(order.size(), 50U);
            order.push_back(at);
            QTest::keyClick(at, Qt::Key_Tab);
        }
        int wraps = 0;
        for (std::size_t i = 0; i < order.size(); ++i) {
            const QWidget* const next = order[(i + 1) % order.size()];
            const QRect from(order[i]->mapTo(form, QPoint()), order[i]->size());
            const QRect to(next->mapTo(form, QPoint()), next->size());
            const bool goesOn = to.top() >= from.bottom() || to.left() >= from.right();
            if (!goesOn) ++wraps;
            EXPECT_TRUE(goesOn || wraps == 1)
                << order[i]->objectName().toStdString() << " to " << next->objectName().toStdString();
        }
        EXPECT_EQ(wraps, 1);
    }
    static void ExpectNew(std::set<QString>& letters, const QString& text) {
        const QKeySequence letter = QKeySequence::mnemonic(text);
        if (letter.isEmpty()) return;
        EXPECT_TRUE(letters.insert(letter.toString()).second) << text.toStdString();
    }

    MainForm* window = nullptr;
    QDialog* form = nullptr;
};

TEST_F(ParameterFormsTest, PreferencesAreKeptByOk) {
    OpenPreferences();
    EXPECT_EQ(form->windowModality(), Qt::WindowModal);
    EXPECT_TRUE(Get<QRadioButton>("ConnectOption(0)")->isChecked());
    EXPECT_EQ(Box("MaxGraphPointsBox"), "50000");
    EXPECT_TRUE(Get<QCheckBox>("RecallLastCalCheck")->isChecked());
    Get<QRadioButton>("ConnectOption(1)")->click();
    Get<QCheckBox>("FileNameOnDetect_Check")->click();
    Get<QCheckBox>("RecallLastCalCheck")->click();
    Get<QCheckBox>("ORCACheck")->click();
    Type("Header_text", "Station 5");
    Type("MaxGraphPointsBox", "5");
    Click("OKButton");
    EXPECT_FALSE(form->isVisible());
    EXPECT_EQ(app.prefs.ConnectOnStartup, 1);
    EXPECT_TRUE(app.prefs.NameFilesOnOpen);
    EXPECT_FALSE(app.prefs.RecallLastCal);
    EXPECT_TRUE(app.prefs.ORCA);
    EXPECT_EQ(app.prefs.UserHeader, "Station 5");
    EXPECT_EQ(app.prefs.MaxGraphPoints, 1000);
    EXPECT_EQ(window->Window().Plot.MaxGraphPoints, 1000);
    EXPECT_EQ(settings.GetSetting("App", "UserHeader", ""), "Station 5");
    OpenPreferences();
    EXPECT_TRUE(Get<QRadioButton>("ConnectOption(1)")->isChecked());
    EXPECT_EQ(Box("MaxGraphPointsBox"), "1000");
    EXPECT_EQ(Box("Header_text"), "Station 5");
}

TEST_F(ParameterFormsTest, CaptionsOfTheConnectOptions) {
    OpenPreferences();
    const auto caption = [this](const char* name) {
        return Get<QRadioButton>(name)->text().remove('&').toStdString();
    };
    EXPECT_EQ(caption("ConnectOption(0)"), "Do not connect");
    EXPECT_EQ(caption("ConnectOption(1)"), "Restore previous connection");
    EXPECT_EQ(caption("ConnectOption(2)"), "Search for instruments");
}

TEST_F(ParameterFormsTest, PreferencesAreForgottenByCancelAndEscape) {
    for (const bool escape : {false, true}) {
        OpenPreferences();
        Get<QRadioButton>("ConnectOption(2)")->click();
        Type("Header_text", "no");
        Type("MaxGraphPointsBox", "7000");
        if (escape)
            QTest::keyClick(form, Qt::Key_Escape);
        else
            Click("CancelButton");
        EXPECT_FALSE(form->isVisible());
        EXPECT_EQ(app.prefs.ConnectOnStartup, 0);
        EXPECT_EQ(app.prefs.UserHeader, "");
        EXPECT_EQ(app.prefs.MaxGraphPoints, 50000);
        OpenPreferences();
        EXPECT_TRUE(Get<QRadioButton>("ConnectOption(0)")->isChecked());
        EXPECT_EQ(Box("Header_text"), "");
        form->reject();
    }
}

TEST_F(ParameterFormsTest, PointsThatAreNoNumberAreAskedForAgain) {
    OpenPreferences();
    Type("MaxGraphPointsBox", "many");
    QTest::keyClick(form, Qt::Key_Return);
    EXPECT_EQ(Notice(), "Please enter a numeric value between 1000 and 100000 for the points of a graph.");
    EXPECT_TRUE(form->isVisible());
    EXPECT_EQ(form->focusWidget(), Get<QLineEdit>("MaxGraphPointsBox"));
    EXPECT_EQ(app.prefs.MaxGraphPoints, 50000);
}

TEST_F(ParameterFormsTest, TheFormsAreUsableByKeyboard) {
    OpenPreferences();
    ExpectUsableByKeyboard();
    form->reject();
    OpenWater();
    ExpectUsableByKeyboard();
    form->reject();
    app.sigma.includePurewater = true;
    OpenSigma();
    ExpectUsableByKeyboard();
}

TEST_F(ParameterFormsTest, EachItemOfTheFileMenuHasALetterOfItsOwn) {
    window = Empty();
    std::set<QString> letters;
    for (const QAction* item : window->findChild<QMenu*>("File_menu")->actions())
        ExpectNew(letters, item->text());
    EXPECT_GT(letters.size(), 8U);
}

TEST_F(ParameterFormsTest, TabFollowsTheEye) {
    OpenPreferences();
    ExpectTabFollowsTheEye();
    form->reject();
    OpenWater();
    Choose(PureWaterChoice::Custom);
    ExpectTabFollowsTheEye();
    form->reject();
    app.sigma.includePurewater = true;
    OpenSigma();
    for (const int page : {0, 1}) {
        Get<QTabWidget>("SSTab")->setCurrentIndex(page);
        ExpectTabFollowsTheEye();
    }
}

TEST_F(ParameterFormsTest, AShareThatIsNotUsedHoldsNothing) {
    OpenSigma();
    Get<QTabWidget>("SSTab")->setCurrentIndex(1);
    Type("pBox", "x");
    Get<QRadioButton>("cvOption")->click();
    Click("OKButton");
    EXPECT_FALSE(form->isVisible());
    EXPECT_TRUE(app.sigma.cUseCV);
    EXPECT_EQ(app.sigma.p, 0.6);
}

TEST_F(ParameterFormsTest, SigmaDefaultsAreThoseOfTheOpenPage) {
    OpenSigma();
    Type("cBox", "3");
    Type("pBox", "0.2");
    Get<QRadioButton>("cvOption")->setChecked(true);
    Click("DefaultsButton");
    EXPECT_EQ(Box("cBox"), "0.1");
    EXPECT_EQ(Box("ad400Box"), "0.01");
    EXPECT_EQ(Box("bTildeBox"), "0.015");
    EXPECT_EQ(Box("gammadBox"), "0.011");
    EXPECT_EQ(Box("gammaYBox"), "0.014");
    EXPECT_EQ(Get<QLineEdit>("aStarBox")->text().section('/', -1), "aStar.csv");
    EXPECT_EQ(Box("pBox"), "0.2");
    EXPECT_TRUE(Get<QRadioButton>("cvOption")->isChecked());
    Type("cBox", "3");
    Get<QTabWidget>("SSTab")->setCurrentIndex(1);
    Click("DefaultsButton");
    EXPECT_EQ(Box("pBox"), "0.6");
    EXPECT_TRUE(Get<QRadioButton>("cOption")->isChecked());
    EXPECT_EQ(Box("cBox"), "3");
}

TEST_F(ParameterFormsTest, SigmaParametersAreKeptByOk) {
    window = Sampling(simulator::Model::NTidal);
    OpenSigma();
    EXPECT_EQ(form->findChild<QLineEdit*>("awBox"), nullptr);
    Type("aStarBox", "0.5");
    Type("bTildeBox", "0.02");
    Type("cBox", "0");
    Type("ad400Box", "0.0625");
    Type("gammadBox", "0");
    Type("gammaYBox", "0.02");
    Get<QTabWidget>("SSTab")->setCurrentIndex(1);
    Type("pBox", "0.7");
    Get<QRadioButton>("cvOption")->click();
    EXPECT_FALSE(Get<QLineEdit>("pBox")->isEnabled());
    QTest::keyClick(form, Qt::Key_Return);
    EXPECT_FALSE(form->isVisible());
    EXPECT_EQ(app.sigma.aStarValue, 0.5);
    EXPECT_EQ(app.sigma.bbTildeValue, 0.02);
    EXPECT_EQ(app.sigma.C, 0);
    EXPECT_EQ(app.sigma.ad400, 0.0625);
    EXPECT_EQ(app.sigma.gammad, 0);
    EXPECT_EQ(app.sigma.gammay, 0.02);
    EXPECT_EQ(app.sigma.p, 0.7);
    EXPECT_TRUE(app.sigma.cUseCV);
    EXPECT_EQ(window->Window().Link.CalData.Channel(0).a, 0.0625);
    EXPECT_EQ(settings.GetSetting("Sigma", "cUseCV", ""), "TRUE");
    EXPECT_EQ(settings.GetSetting("Sigma", "aStar", ""), "0.5");
    OpenSigma();
    EXPECT_EQ(Box("aStarBox"), "0.5");
    EXPECT_EQ(Box("gammaYBox"), "0.02");
}

TEST_F(ParameterFormsTest, SigmaParametersAreForgottenByCancel) {
    const SigmaParams before = app.sigma;
    OpenSigma();
    Type("cBox", "3");
    Click("CancelButton");
    EXPECT_EQ(app.sigma, before);
    EXPECT_EQ(settings.GetSetting("Sigma", "C", "-"), "-");
    OpenSigma();
    EXPECT_EQ(Box("cBox"), "0.1");
}

TEST_F(ParameterFormsTest, AWrongSigmaParameterHoldsTheFormAndGetsTheFocus) {
    OpenSigma();
    Get<QTabWidget>("SSTab")->setCurrentIndex(1);
    Type("bTildeBox", "0.05");
    Click("OKButton");
    EXPECT_EQ(Notice(),
              "Please enter either a valid file name or a numeric value between 0.005 and 0.04 for the "
              "backscatter probability.");
    EXPECT_TRUE(form->isVisible());
    EXPECT_EQ(Get<QTabWidget>("SSTab")->currentIndex(), 0);
    EXPECT_EQ(form->focusWidget(), Get<QLineEdit>("bTildeBox"));
    Type("bTildeBox", "0.015");
    Type("pBox", "x");
    Click("OKButton");
    EXPECT_EQ(Notice(), "Please enter a numeric value between 0 and 10 for the share of the attenuation.");
    EXPECT_EQ(Get<QTabWidget>("SSTab")->currentIndex(), 1);
    EXPECT_EQ(app.sigma.bbTildeValue, 0.015);
}

TEST_F(ParameterFormsTest, CalculateShowsTheModelAndForgetsItWithTheNextKey) {
    OpenSigma();
    Type("aStarBox", "0.5");
    Type("cBox", "1");
    Type("WavelengthText", "440");
    Click("CalculateButton");
    // 0.06 x 0.5 x 1.2 + 0.01 exp(-0.44) = 0.04244
    EXPECT_EQ(Result("aResult"), " 0.042");
    EXPECT_EQ(Result("bTildeResult"), " 0.015");
    Type("cBox", "2");
    EXPECT_EQ(Result("aResult"), "");
    Type("aStarBox", "nothing.csv");
    Click("CalculateButton");
    EXPECT_EQ(Result("aResult"), " -----");
    EXPECT_EQ(Result("bTildeResult"), " 0.015");
}

TEST_F(ParameterFormsTest, TheOlderFormHasABoxForWater) {
    app.sigma.includePurewater = true;
    OpenSigma();
    EXPECT_EQ(Get<QLineEdit>("awBox")->text().section('/', -1), "aw.csv");
    Type("aStarBox", "0.5");
    Type("cBox", "1");
    Type("awBox", "0.01");
    Type("WavelengthText", "440");
    Click("CalculateButton");
    EXPECT_EQ(Result("aResult"), " 0.0544");  // 0.036 + 0.012 + 0.00644
    EXPECT_EQ(Result("bTildeResult"), " 0.0150");
    Type("awBox", "20");
    Click("OKButton");
    EXPECT_EQ(Notice(),
              "Please enter either a valid file name or a numeric value between 0.005 and 10 for the "
              "pure-water absorption.");
    Click("DefaultsButton");
    EXPECT_EQ(Get<QLineEdit>("awBox")->text().section('/', -1), "aw.csv");
    Click("OKButton");
    EXPECT_FALSE(form->isVisible());
    EXPECT_TRUE(app.sigma.includePurewater);
}

TEST_F(ParameterFormsTest, ATableIsChosenByItsBrowseButton) {
    app.sigma.includePurewater = true;
    const auto table = folder / "my table.csv";
    TestFolder::Write(table, "400,0.5\n700,0.5\n");
    OpenSigma();
    const std::vector<std::pair<const char*, std::string>> titles{
        {"aStarBox", "Select chlorophyll-specific absorption file"},
        {"awBox", "Select pure-water absorption file"},
        {"bTildeBox", "Select backscattering probability file"},
    };
    for (const auto& [box, title] : titles) {
        Click((std::string(box) + "Browse").c_str());
        auto* const choose = form->findChild<QFileDialog*>("OpenFileDialog");
        ASSERT_NE(choose, nullptr) << box;
        EXPECT_EQ(choose->windowTitle().toStdString(), title);
        choose->findChild<QLineEdit*>("fileNameEdit")->setText(QString::fromStdString(table.string()));
        static_cast<QDialog*>(choose)->accept();
        Run(2 * kTick);
        EXPECT_EQ(Box(box), table.string());
    }
    Click("OKButton");
    EXPECT_EQ(app.sigma.aStarFile, table.string());
    EXPECT_EQ(app.sigma.aStarTable.Lookup(550), 0.5F);
}

TEST_F(ParameterFormsTest, ChoosingWaterFillsAndLocksTheBoxes) {
    OpenWater();
    EXPECT_TRUE(Get<QRadioButton>("PureWaterOption(1)")->isChecked());
    EXPECT_EQ(Box("beta0"), "8.34E-05");  // half of the model, as a new user has it
    Choose(PureWaterChoice::MorelSalt);
    EXPECT_EQ(Box("lambda0"), "525");
    EXPECT_EQ(Box("beta0"), "2.18E-04");
    EXPECT_EQ(Box("bb0"), "1.17E-03");
    EXPECT_EQ(Box("gammaLambda"), "4.32");
    for (const char* box : {"lambda0", "beta0", "bb0", "gammaLambda"}) {
        EXPECT_TRUE(Get<QLineEdit>(box)->isReadOnly()) << box;
        const std::string before = Box(box);
        Type(box, "7");
        EXPECT_EQ(Box(box), before);
    }
    Choose(PureWaterChoice::VenmarkRecommended);
    EXPECT_EQ(Box("beta0"), "1.92E-04");
    Click("OKButton");
    EXPECT_FALSE(form->isVisible());
    EXPECT_NEAR(app.pureWater.beta0, 1.922098e-4, 1e-10);
    EXPECT_EQ(settings.GetSetting("bbPrefs", "VenmarkRecommended", ""), "TRUE");
    EXPECT_EQ(LoadPureWaterParams(settings), app.pureWater);
}

TEST_F(ParameterFormsTest, OkWithoutAChangeChangesNothing) {
    const PureWaterParams before = app.pureWater;
    OpenWater();
    Click("OKButton");
    EXPECT_EQ(app.pureWater, before);
}

TEST_F(ParameterFormsTest, CustomWaterIsTyped) {
    window = Sampling();
    OpenWater();
    Choose(PureWaterChoice::NoPure);
    EXPECT_EQ(Box("beta0"), "0");
    EXPECT_EQ(Box("bb0"), "0");
    EXPECT_TRUE(Get<QLineEdit>("beta0")->isReadOnly());
    Choose(PureWaterChoice::Custom);
    EXPECT_FALSE(Get<QLineEdit>("beta0")->isReadOnly());
    Type("lambda0", "600");
    Type("beta0", "2E-4");
    Type("bb0", "1e-3");
    Type("gammaLambda", "4");
    Type("chi", "1.1");
    Get<QCheckBox>("WriteBetaColumns")->click();
    QTest::keyClick(form, Qt::Key_Return);
    EXPECT_FALSE(form->isVisible());
    PureWaterParams own;
    own.Choice = PureWaterChoice::Custom;
    own.lambda0 = 600;
    own.beta0 = 2e-4F;
    own.bb0 = 1e-3F;
    own.gammaLambda = 4;
    own.chi = 1.1F;
    own.WriteBetaColumns = true;
    EXPECT_EQ(app.pureWater, own);
    OpenWater();
    EXPECT_EQ(Box("beta0"), "0.0002");
    EXPECT_TRUE(Get<QRadioButton>("PureWaterOption(2)")->isChecked());
    EXPECT_TRUE(Get<QCheckBox>("WriteBetaColumns")->isChecked());
}

TEST_F(ParameterFormsTest, AWrongWaterValueHoldsTheFormAndGetsTheFocus) {
    const PureWaterParams before = app.pureWater;
    OpenWater();
    Type("chi", "0");
    Click("OKButton");
    EXPECT_EQ(Notice(), "Please enter a numeric value between 0.1 and 10 for the chi factor.");
    EXPECT_TRUE(form->isVisible());
    EXPECT_EQ(form->focusWidget(), Get<QLineEdit>("chi"));
    Get<QCheckBox>("UseCalChi")->click();
    EXPECT_TRUE(Get<QLineEdit>("chi")->isReadOnly());
    Click("OKButton");
    EXPECT_FALSE(form->isVisible());
    EXPECT_TRUE(app.pureWater.UseCalChi);
    EXPECT_EQ(app.pureWater.chi, before.chi);
}

TEST_F(ParameterFormsTest, WaterIsForgottenByCancel) {
    const PureWaterParams before = app.pureWater;
    OpenWater();
    Choose(PureWaterChoice::NoPure);
    Click("CancelButton");
    EXPECT_EQ(app.pureWater, before);
    OpenWater();
    EXPECT_TRUE(Get<QRadioButton>("PureWaterOption(1)")->isChecked());
    EXPECT_EQ(Box("beta0"), "8.34E-05");
}

TEST_F(ParameterFormsTest, ArrowKeysChooseWaterToo) {
    OpenWater();
    auto* const fresh = Get<QRadioButton>("PureWaterOption(1)");
    fresh->setFocus();
    QTest::keyClick(fresh, Qt::Key_Down);
    EXPECT_TRUE(Get<QRadioButton>("PureWaterOption(0)")->isChecked());
    EXPECT_EQ(Box("beta0"), "2.18E-04");
}

TEST_F(ParameterFormsTest, KeepsThePlaceOfItsForms) {
    OpenWater();
    form->setGeometry(30, 60, 700, 500);
    Click("CancelButton");
    EXPECT_EQ(settings.GetSetting("bbParamsForm", "Left", ""), "30");
    EXPECT_EQ(settings.GetSetting("bbParamsForm", "Width", ""), "700");
}

}  // namespace
}  // namespace marisonde
