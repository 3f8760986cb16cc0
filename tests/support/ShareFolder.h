#pragma once

namespace marisonde {

/// The folder with the tables that the program ships.
const char* ShareFolder();

}  // namespace marisonde
