#include "app/forms/HelpCommands.h"

#include <QAction>
#include <QMenuBar>
#include <QMessageBox>
#include <array>
#include <string>

#include "app/forms/HelpPages.h"
#include "app/forms/MainForm.h"
#include "common/Version.h"

namespace marisonde {

namespace {

struct Page {
    const char* item;
    const char* caption;
    const char* file;
};
constexpr std::array kPages{
    Page{"QuickStartItem", "&Quick Start", "quickstart.htm"},
    Page{"ReleaseNotesItem", "&Release Notes", "releasenotes.htm"},
    Page{"AboutSigmaItem", "About &Sigma Correction", "aboutSigma.htm"},
    Page{"AboutbbItem", "About &Backscattering", "aboutbb.htm"},
};

QString AboutText() {
    return QString(
               "<h3>Marisonde %1</h3>"
               "<p>Live calibrated graphs of optical instruments in the sea.</p>"
               "<p>Free software under the GNU General Public License, version 3 or later. "
               "It comes without any warranty.</p>"
               "<p>Built with Qt %2, QCustomPlot, QCoro and {fmt}.</p>")
        .arg(QString::fromUtf8(kVersion.data(), kVersion.size()), qVersion());
}

}  // namespace

HelpCommands::HelpCommands(MainForm& form) : QObject(&form), form_(form) {}

void HelpCommands::MakeMenu(QMenuBar* bar) {
    QMenu* menu = bar->addMenu("&Help");
    menu->setObjectName("Help_menu");
    for (const Page& page : kPages) {
        QAction* item =
            menu->addAction(page.caption, this, [this, page] { OpenHelpPage(page.file, form_.Ask()); });
        item->setObjectName(page.item);
    }
    menu->actions().constFirst()->setShortcut(Qt::Key_F1);
    menu->addSeparator();
    menu->addAction("&About Marisonde", this, &HelpCommands::ShowAbout)->setObjectName("AboutItem");
}

void HelpCommands::ShowAbout() {
    auto* box =
        new QMessageBox(QMessageBox::Information, "About Marisonde", AboutText(), QMessageBox::Ok, &form_);
    box->setObjectName("AboutForm");
    box->setTextFormat(Qt::RichText);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->open();
}

}  // namespace marisonde
