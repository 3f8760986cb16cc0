#include "app/forms/ShowStartNotices.h"

#include "app/forms/FormHelpers.h"
#include "app/forms/HelpPages.h"
#include "app/forms/MainForm.h"
#include "app/forms/NoticeStrip.h"
#include "app/forms/ParameterCommands.h"

namespace marisonde {

void ShowStartNotices(MainForm& form, Settings& settings, const std::vector<StartNotice>& notices) {
    for (const StartNotice& notice : notices) {
        const QString text = FromText(notice.text);
        switch (notice.after) {
            case AfterNotice::Nothing:
                form.Notices().AddNotice(text);
                break;
            case AfterNotice::CheckSigmaParams:
                form.Notices().AddNotice(text, [&form] { form.Parameters().ShowSigmaParams(); });
                break;
            case AfterNotice::OfferReleaseNotes:
                form.Notices().Add(text, {{"Yes", "YesButton",
                                           [&form, &settings] {
                                               NoteVersionSeen(settings);
                                               OpenHelpPage("releasenotes.htm", form.Ask());
                                           }},
                                          {"No", "NoButton", [&settings] { NoteVersionSeen(settings); }}});
                break;
        }
    }
}

}  // namespace marisonde
