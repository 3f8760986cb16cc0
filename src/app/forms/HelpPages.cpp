#include "app/forms/HelpPages.h"

#include <QDesktopServices>
#include <QFileInfo>
#include <QUrl>
#include <string>

#include "app/Dialogs.h"
#include "platform/Paths.h"

namespace marisonde {

void OpenHelpPage(const char* name, Dialogs& dialogs) {
    const auto beside = ProgramFolder() / "Help Files";
    for (const auto& folder : {beside, DataFolder() / "help"}) {
        const QString path = TextFromPath(folder / name);
        if (!QFileInfo::exists(path)) continue;
        if (!QDesktopServices::openUrl(QUrl::fromLocalFile(path)))
            dialogs.ShowError("No program was found that shows " + path.toStdString() + ".");
        return;
    }
    dialogs.ShowError("The help page " + std::string(name) + " was not found in " + beside.string() + ".");
}

}  // namespace marisonde
