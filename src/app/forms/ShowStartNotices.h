#pragma once

#include <vector>

#include "app/WindowStart.h"

namespace marisonde {

class MainForm;

/// Puts the notices of the start into the window's strip, where they wait for the user and hold up nothing.
void ShowStartNotices(MainForm& form, Settings& settings, const std::vector<StartNotice>& notices);

}  // namespace marisonde
