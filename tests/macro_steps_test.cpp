// The macro window's step edits as pure functions: delete, insert, move,
// the marks for keys and buttons left pressed or never pressed, the store
// figure against the block builder, the text form and undo/redo.
#include "Common/MacroEditHistory.h"
#include "Common/MacroStepText.h"
#include "Protocol/MacroStoreFigure.h"
#include "View/KeyboardLayout/KeyCodeMaps.h"

#include <QStringList>
#include <gtest/gtest.h>

using namespace MacroSteps;
using F = MacroSteps::Fault;

namespace {

constexpr int kA = 4;
constexpr int kB = 5;
constexpr int kShift = 225;

MacroStep down(int code) { return {kKeyDownStep, {}, code}; }
MacroStep up(int code) { return {kKeyUpStep, {}, code}; }

QStringList texts(const Steps& steps)
{
    QStringList out;
    for (const MacroStep& step : steps)
        out << step.text;
    return out;
}

class MacroStepsTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        selectKeyMaps(KeyMapModel::Orvane61k, CodeMapStart::Empty);
        shiftA = numbered({down(kShift), down(kA), delay(80), up(kA), up(kShift), down(kB), up(kB)});
    }

    Steps shiftA;  // Shift+A, a pause, then B
};

}  // namespace

TEST_F(MacroStepsTest, DeleteInsertAndDelayEditsRenumberTheListAndSayWhatToSelect)
{
    const Edited removed = removeRows(shiftA, {3, 2, 3, 99});
    EXPECT_EQ(texts(removed.steps), QStringList({"1 Keyboard Down (Left Shift)", "2 Keyboard Down (A)",
                                                 "3 Keyboard Up (Left Shift)", "4 Keyboard Down (B)",
                                                 "5 Keyboard Up (B)"}));
    EXPECT_EQ(removed.selection, Rows{2});
    EXPECT_EQ(removeRows(numbered({down(kA)}), {0}).selection, Rows{});

    // Before the first selected row, after the last, at the end without one.
    EXPECT_EQ(insertPlace(shiftA, {4, 1}, false), 1);
    EXPECT_EQ(insertPlace(shiftA, {4, 1}, true), 5);
    EXPECT_EQ(insertPlace(shiftA, {}, false), 7);
    const Edited clicked = insertAt(shiftA, 5, mouseClick(kRightButton));
    EXPECT_EQ(clicked.selection, (Rows{5, 6}));
    EXPECT_EQ(texts(clicked.steps).mid(4, 4), QStringList({"5 Keyboard Up (Left Shift)", "6 Mouse Right Down",
                                                           "7 Mouse Right Up", "8 Keyboard Down (B)"}));
    EXPECT_EQ(insertAt(shiftA, 0, keyPress(kB)).steps.front(), (MacroStep{kKeyDownStep, "1 Keyboard Down (B)", kB}));

    // A delay is 1 to 65535 ms as the store holds it; only delays change.
    EXPECT_EQ(parseDelay(" 65535 "), 65535);
    for (const char* bad : {"0", "65536", "-5", "12ms", "", "1.5"})
        EXPECT_EQ(parseDelay(bad), std::nullopt) << bad;
    EXPECT_EQ(setDelay(shiftA, 2, 250).steps[2], (MacroStep{kDelayStep, "3 Delay (250)", 250}));
    EXPECT_EQ(setDelay(shiftA, 1, 250).steps, shiftA);
}

TEST_F(MacroStepsTest, MovesKeepEveryKeysDownBeforeItsUp)
{
    // The delay moves up past A's down; A's up can't pass its own down.
    const std::optional<Edited> delayUp = moveRows(shiftA, {2}, -1);
    ASSERT_TRUE(delayUp);
    EXPECT_EQ(delayUp->selection, Rows{1});
    EXPECT_EQ(texts(delayUp->steps).mid(1, 2), QStringList({"2 Delay (80)", "3 Keyboard Down (A)"}));
    const std::optional<Edited> aLater = moveRows(shiftA, {1}, +1);
    ASSERT_TRUE(aLater);
    EXPECT_EQ(aLater->steps, delayUp->steps);
    EXPECT_FALSE(moveRows(aLater->steps, {2}, +1));  // A's down after its up

    // A whole press moves as a block, up and down, but not out of the list.
    const std::optional<Edited> bFirst = moveRowsTo(shiftA, {5, 6}, 0);
    ASSERT_TRUE(bFirst);
    EXPECT_EQ(bFirst->selection, (Rows{0, 1}));
    EXPECT_EQ(bFirst->steps.front().text, "1 Keyboard Down (B)");
    EXPECT_FALSE(moveRows(shiftA, {5, 6}, +1));
    EXPECT_FALSE(moveRows(shiftA, {0}, -1));
    EXPECT_TRUE(moveRows(shiftA, {5, 6}, -1));
    // Dropping a row onto its own place changes nothing.
    EXPECT_FALSE(moveRowsTo(shiftA, {3}, 4));
    // Shift's up may not go ahead of Shift's down, even by a drop.
    EXPECT_FALSE(moveRowsTo(shiftA, {4}, 0));
}

TEST_F(MacroStepsTest, KeysAndButtonsLeftPressedOrNeverPressedAreMarked)
{
    EXPECT_EQ(faultCount(shiftA), 0);
    // A held key repeats its down; one up releases it.
    EXPECT_EQ(faults({down(kA), down(kA), down(kA), up(kA)}), std::vector<F>(4, F::None));
    EXPECT_EQ(faults({up(kA), down(kB), delay(70000), delay(0)}),
              (std::vector<F>{F::NeverPressed, F::NeverReleased, F::DelayTooLong, F::None}));
    // A key's up does not release a button of the same number.
    const Steps crossed{{kMouseDownStep, {}, kA}, up(kA), {kMouseUpStep, {}, kRightButton}};
    EXPECT_EQ(faults(crossed), (std::vector<F>{F::NeverReleased, F::NeverPressed, F::NeverPressed}));
    EXPECT_EQ(faults(mouseClick(kMiddleButton)), std::vector<F>(2, F::None));
}

TEST_F(MacroStepsTest, StoreFigureIsTheBlockBuildersOwn)
{
    using MacroStoreFigure::records;
    const std::vector<MacroStoreBlock::MacroSteps> library{records(shiftA), {}, records(keyPress(kB))};
    // Key, key with nothing between: the builder puts 10 ms there, so two
    // recorded steps take 8 + 3 * 4 bytes.
    const Steps edited = keyPress(kA);
    const auto f = MacroStoreFigure::figure(library, 1, edited);
    std::vector<MacroStoreBlock::MacroSteps> withEdit = library;
    withEdit[1] = records(edited);
    EXPECT_EQ(f.macroBytes, MacroStoreBlock::build(withEdit).end - MacroStoreBlock::build(library).end);
    EXPECT_EQ(f.macroBytes, 20u);
    EXPECT_EQ(f.roomBytes, 3136 - MacroStoreBlock::build(library).end);
    EXPECT_TRUE(f.fits());

    // A new macro goes at the end; a store that would overflow says by how much.
    Steps many;
    for (int i = 0; i < 360; ++i)
        many.push_back(i % 2 ? up(kA) : down(kA));
    const auto over = MacroStoreFigure::figure(library, std::nullopt, many);
    std::vector<MacroStoreBlock::MacroSteps> withNew = library;
    withNew.push_back(records(many));
    EXPECT_EQ(over.macroBytes, 8u + 4u * 719u);
    EXPECT_FALSE(over.fits());
    EXPECT_EQ(over.bytesOver, MacroStoreBlock::build(withNew).bytesOver);
    EXPECT_GT(over.macroBytes, over.roomBytes);
    EXPECT_EQ(over.recordBytesOver, 0);

    // The upload's first check counts rows: 640 delays fit the block but
    // not the 2500 bytes it allows for 4 a step and 8 a macro.
    const auto counted = MacroStoreFigure::figure(library, std::nullopt, Steps(640, delay(5)));
    EXPECT_LE(counted.macroBytes, counted.roomBytes);
    EXPECT_EQ(counted.recordBytesOver, 4 * (7 + 2 + 640) + 8 * 4 - 2500);
    EXPECT_FALSE(counted.fits());
}

TEST_F(MacroStepsTest, TextFormReadsBackEveryStepKindAndRefusesABadLineByNumber)
{
    const Steps all = numbered({down(kShift), delay(100000), up(kShift), {kMouseDownStep, {}, kLeftButton},
                                delay(0), {kMouseUpStep, {}, kLeftButton}, {kMouseDownStep, {}, kMiddleButton},
                                {kMouseUpStep, {}, kRightButton}, down(0x68), up(0x68)});
    const QString text = MacroStepText::write(all);
    EXPECT_TRUE(text.startsWith("1 Keyboard Down (Left Shift)\n2 Delay (100000)\n")) << text.toStdString();
    EXPECT_TRUE(text.endsWith("8 Mouse Right Up\n9 Keyboard Down (code 104)\n10 Keyboard Up (code 104)"));
    EXPECT_EQ(std::get<Steps>(MacroStepText::read(text)), all);

    // Every key of both models reads back as itself.
    for (KeyMapModel model : {KeyMapModel::Orvane61k, KeyMapModel::Orvane68k}) {
        selectKeyMaps(model, CodeMapStart::Empty);
        for (const auto& [code, key] : G_KB_SuperKeyCodeMap) {
            const Steps press = numbered(keyPress(code));
            EXPECT_EQ(std::get<Steps>(MacroStepText::read(MacroStepText::write(press))), press) << code;
        }
    }

    // Numbers may go, blank lines and spacing don't matter; anything else is refused.
    selectKeyMaps(KeyMapModel::Orvane61k, CodeMapStart::Empty);
    EXPECT_EQ(std::get<Steps>(MacroStepText::read("\r\n keyboard down  (a)\r\n\r\n7 Delay (5)")),
              numbered({down(kA), delay(5)}));
    using Bad = MacroStepText::BadLine;
    EXPECT_EQ(std::get<Bad>(MacroStepText::read("Delay (5)\n\nKeyboard Down (Q W)")), (Bad{3, "Keyboard Down (Q W)"}));
    for (const char* line : {"Delay (100001)", "Keyboard Down (code 256)", "Mouse Back Down", "Delay (-1)", "Hello"})
        EXPECT_TRUE(std::holds_alternative<Bad>(MacroStepText::read(line))) << line;
}

TEST(MacroEditHistory, UndoAndRedoWalkTheEditsAndANewEditDropsWhatWasUndone)
{
    MacroEditHistory history;
    const Steps a{delay(1)}, b{delay(2)}, c{delay(3)};
    EXPECT_FALSE(history.undo(a));
    history.push(a);
    history.push(b);  // now showing c
    EXPECT_EQ(history.undo(c), b);
    EXPECT_EQ(history.undo(b), a);
    EXPECT_FALSE(history.canUndo());
    EXPECT_EQ(history.redo(a), b);
    history.push(b);  // a new edit from b
    EXPECT_FALSE(history.canRedo());
    EXPECT_EQ(history.undo(Steps{}), b);
}
