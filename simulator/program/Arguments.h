#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "simulator/Options.h"

namespace marisonde::simulator {

/// What the command line asks for.
struct Arguments {
    std::vector<Model> models;
    Options options;
    std::string link;
    std::string cal;  ///< where the calibration is written; empty: nowhere
    bool help = false, version = false;
    std::string error;  ///< what is wrong with the command line; empty when nothing is
};

Arguments ReadArguments(const std::vector<std::string_view>& words);
/// The text of --help.
std::string HelpText();
/// The link or file of the instrument `index` of `count`: the path itself for one, else the path and the
/// number.
std::string NumberedPath(const std::string& path, std::size_t index, std::size_t count);

}  // namespace marisonde::simulator
