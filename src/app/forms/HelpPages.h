#pragma once

namespace marisonde {

class Dialogs;

/// Shows a help page, such as "aboutSigma.htm", in the system's browser: from the folder "Help Files" beside
/// the program, or from "help" among its data. `dialogs` tell when it is in neither.
void OpenHelpPage(const char* name, Dialogs& dialogs);

}  // namespace marisonde
