#include "files/GroupLoad.h"

#include <algorithm>
#include <string>

#include "common/VectorState.h"

namespace marisonde {

GroupLoad::Step GroupLoad::Run(int lines) {
    if (full_) return Step::GroupFull;
    ClearUpperVectorState();
    for (; lines > 0; --lines) {
        if (!reader_.NextLine()) return reader_.Error() ? Step::Failed : Step::Done;
        if (!reader_.HasSample()) continue;
        full_ = points_ >= maxPoints_;
        if (full_) return Step::GroupFull;
        Append();
    }
    if (!told_ && points_ > 0) TellExpected();
    return Step::Working;
}

void GroupLoad::NextGroup() {
    sink_.Clear();
    points_ = 0;
    begin_ = reader_.Progress().done;
    told_ = false;
    if (full_) Append();
    full_ = false;
}

void GroupLoad::Append() {
    sink_.Append(reader_.Raw(), reader_.Sample());
    ++points_;
}

void GroupLoad::TellExpected() {
    told_ = true;
    const ReadProgress at = reader_.Progress();
    if (at.done <= begin_ || at.done >= at.size) return;
    const double share = static_cast<double>(at.size - begin_) / static_cast<double>(at.done - begin_);
    sink_.Expect(static_cast<int>(std::min<double>(points_ * share, maxPoints_)));
}

Question NextGroupQuestion(int points, bool raw) {
    // The odd word in the text of raw files is known to users and manuals.
    return {
        "This file contains more points than can be displayed at one time. "
        "Would you like to stop now and display this group of " +
            std::to_string(points) + " points, " +
            (raw ? "or load then next group?" : "or load the next group?"),
        "Next", "Stop", ""};
}

}  // namespace marisonde
