#pragma once

#include <string>

#include "platform/KeepAwake.h"

namespace marisonde {

/// Writes down what is asked of the computer instead of keeping it awake.
class NotingInhibitor final : public SleepInhibitor {
  public:
    explicit NotingInhibitor(std::string& notes) : notes_(notes) {}
    void Hold() override { notes_ += "hold "; }
    void Release() override { notes_ += "release "; }

  private:
    std::string& notes_;
};

}  // namespace marisonde
