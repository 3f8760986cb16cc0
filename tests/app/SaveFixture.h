#pragma once

#include "app/FilesFixture.h"
#include "app/LoadStored.h"
#include "app/SaveFile.h"

namespace marisonde {

/// Windows with recorded or opened data, and the commands that save them.
class SaveFixture : public FilesFixture {
  protected:
    using Command = QCoro::Task<bool> (*)(Operation&, DataWindow&);
    std::optional<bool> Save(DataWindow& window, Command command) {
        std::optional<bool> saved;
        Do(window, [&](Operation& operation) -> QCoro::Task<> {
            const bool done = co_await command(operation, window);
            saved = done;
        });
        return saved;
    }
    std::optional<bool> SaveAs(DataWindow& window, const std::string& path, int filter = 0) {
        dialogs.chosen = {{path, filter}};
        return Save(window, SaveAsMenuCommand);
    }
    DataWindow& Sampling() {
        DataWindow& window = Keep(Simulated(simulator::Model::Corvane6, {}));
        Run(window, std::chrono::seconds(10));
        return window;
    }
    DataWindow& Showing(const std::string& path, const char* type) {
        DataWindow& window = WithCal(simulator::Model::Corvane6);
        StartLoad(window, {path, type, InstTypeCode::Corvane6, ""});
        Settle();
        return window;
    }
    static std::string DataOf(const std::filesystem::path& path) {
        return BehindHeader(TestFolder::Read(path), "[Data]");
    }
};

}  // namespace marisonde
