#include <gtest/gtest.h>
#include <random>

#include "operations/TerminalBox.h"

namespace marisonde {
namespace {

/// A view that knows the box by its changes alone.
class View {
  public:
    void Follow(TerminalBox& box) {
        const TerminalBox::Changes changes = box.TakeChanges();
        ASSERT_LE(changes.fromEnd + changes.fromFront, text.size());
        text.resize(text.size() - changes.fromEnd);
        text.erase(0, changes.fromFront);
        text += changes.added;
    }
    std::string text;
};

std::string Shown(std::string text) {
    std::erase(text, '\r');
    return text;
}

TEST(TerminalBoxTest, AViewGetsWhatWasAdded) {
    TerminalBox box;
    View view;
    box.Append("one\r\ntw");
    view.Follow(box);
    EXPECT_EQ(view.text, "one\ntw");
    box.Append("o\r");
    EXPECT_EQ(box.TakeChanges().added, "o");
    EXPECT_EQ(box.Text(), "one\r\ntwo\r");
    EXPECT_EQ(box.TakeChanges().added, "");
}

TEST(TerminalBoxTest, CutsReachAViewOnlyAsFarAsItHasSeen) {
    TerminalBox box;
    box.Append("abc");
    box.TakeChanges();
    box.Append("def");
    box.CutBack(5);  // "f", which no view has
    EXPECT_EQ(box.TakeChanges().fromEnd, 0U);
    box.Append("gh");
    box.CutBack(2);  // "cdegh": "cde" have been seen
    const TerminalBox::Changes back = box.TakeChanges();
    EXPECT_EQ(back.fromEnd, 3U);
    EXPECT_EQ(back.added, "");
    box.Append("xyz");
    box.CutFront(4);  // "abxy": "ab" have been seen
    const TerminalBox::Changes front = box.TakeChanges();
    EXPECT_EQ(front.fromFront, 2U);
    EXPECT_EQ(front.added, "z");
    box.CutFront(100);
    EXPECT_EQ(box.Text(), "");
    box.CutBack(7);
    EXPECT_EQ(box.Text(), "");
}

TEST(TerminalBoxTest, AViewThatFollowsNowAndThenShowsTheBox) {
    std::mt19937 random(20111);
    TerminalBox box;
    View view;
    const std::string pool = "ab\r\ncd\re\nf\r\r\n";
    for (int step = 0; step < 20000; ++step) {
        const std::size_t n = random() % (pool.size() + 1);
        switch (random() % 6) {
            case 0:
                box.CutFront(n);
                break;
            case 1:
                box.CutBack(box.Text().size() - std::min(box.Text().size(), n));
                break;
            case 2:
                view.Follow(box);
                ASSERT_EQ(view.text, Shown(box.Text())) << "step " << step;
                break;
            default:
                box.Append(std::string_view(pool).substr(0, n));
        }
    }
}

}  // namespace
}  // namespace marisonde
