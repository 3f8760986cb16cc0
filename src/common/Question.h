#pragma once

#include <string>

namespace marisonde {

/// A question with up to three buttons; an empty caption hides its button.
struct Question {
    std::string message;
    std::string first;
    std::string second;
    std::string third;
};

}  // namespace marisonde
