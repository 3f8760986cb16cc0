#include "app/forms/HelpCommands.h"

#include <QAction>
#include <QMenuBar>
#include <QMessageBox>
#include <array>
#include <string>

#include "app/forms/About.h"
#include "app/forms/HelpPages.h"
#include "app/forms/MainForm.h"

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
