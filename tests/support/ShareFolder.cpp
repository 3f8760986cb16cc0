#include "support/ShareFolder.h"

namespace marisonde {

// Compiled here alone, so that every other object is the same in whatever folder it is built.
const char* ShareFolder() {
    return MARISONDE_SHARE;
}

}  // namespace marisonde
