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
    bool help = false, version = false;
    std::string error;  ///< what is wrong with the command line; empty when nothing is
};

Arguments ReadArguments(const std::vector<std::string_view>& words);
/// The text of --help.
std::string HelpText();
/// The link of the device `index` of `count`: the path itself for one device, else the path and the number.
std::string LinkPath(const std::string& link, std::size_t index, std::size_t count);

}  // namespace marisonde::simulator
