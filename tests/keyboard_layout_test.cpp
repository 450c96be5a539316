// Where the keys of each model stand, and which picture a stored case colour
// picks.
#include "View/KeyboardLayout/KeyboardLayouts.h"

#include <gtest/gtest.h>

namespace {

std::vector<KeyData> keysOf(const KeyboardModelLayout& model)
{
    selectKeyMaps(model.keyMaps, CodeMapStart::Empty);
    return layoutKeys(*model.layout, *model.yPos, *model.sizes, G_KB_SuperKeyNameMap);
}

std::vector<int> rowRightEdges(const std::vector<KeyData>& keys)
{
    std::vector<int> edges;
    double lastY = -1;
    for (const KeyData& key : keys) {
        if (key.rect.y() != lastY) {
            edges.push_back(0);
            lastY = key.rect.y();
        }
        edges.back() = int(key.rect.right());
    }
    return edges;
}

const KeyData& key(const std::vector<KeyData>& keys, const char* name)
{
    for (const KeyData& k : keys)
        if (k.keyname == QLatin1String(name))
            return k;
    throw std::out_of_range(name);
}

}  // namespace

TEST(KeyboardLayout, KeysStandAtTheirPositionsWithTheirCodesAndRowsEndWhereThePictureExpects)
{
    const auto k61 = keysOf(keyboardModel61k());
    ASSERT_EQ(k61.size(), 61u);
    EXPECT_EQ(rowRightEdges(k61), (std::vector<int>{651, 653, 652, 652, 652}));
    EXPECT_EQ(key(k61, "escape").rect, QRectF(11, 180, 42, 41));
    EXPECT_EQ(key(k61, "i3").rect.x(), 139);
    EXPECT_EQ(key(k61, "backspace").rect, QRectF(566, 180, 85, 41));
    EXPECT_EQ(key(k61, "backspace").keycode, 42);
    EXPECT_EQ(k61.back().keyname, "fn");

    const auto k68 = keysOf(keyboardModel68k());
    ASSERT_EQ(k68.size(), 68u);
    EXPECT_EQ(rowRightEdges(k68), (std::vector<int>{622, 623, 622, 623, 622}));
    EXPECT_EQ(key(k68, "escape").rect, QRectF(19, 180, 37, 36));
    EXPECT_EQ(k68[63].keyname, "fn");  // between rightAlt and rightControl
    EXPECT_THROW(key(k68, "menu"), std::out_of_range);

    const auto cnc = keysOf(keyboardModelCnc());
    ASSERT_EQ(cnc.size(), 61u);
    EXPECT_EQ(rowRightEdges(cnc), (std::vector<int>{616, 615, 617, 616, 615}));
    EXPECT_EQ(key(cnc, "escape").rect, QRectF(32, 200, 28, 28));
    EXPECT_EQ(key(cnc, "fn").rect, QRectF(580, 41, 35, 28));
    for (size_t i = 0; i < cnc.size(); ++i)
        EXPECT_EQ(cnc[i].index, int(i));
}

TEST(KeyboardLayout, StoredDigitPicksThePictureAndUnknownDigitsGiveWhite)
{
    // The known digits' pictures are shown by clicking each colour in the window's tests.
    const auto &m61 = keyboardModel61k(), &m68 = keyboardModel68k(), &cnc = keyboardModelCnc();
    // Blue and purple exist on the CNC model only.
    for (const char* digit : {"3", "4", "0", "5", "22", "x", ""}) {
        EXPECT_EQ(casePictureForDigit(m61, digit), "kb_61k") << digit;
        EXPECT_FALSE(caseColourForDigit(m61, digit)) << digit;
    }
    EXPECT_EQ(casePictureForDigit(m68, "4"), "kb_68k");
    EXPECT_EQ(casePictureForDigit(cnc, "5"), "kb_61k_cnc");
    EXPECT_EQ(caseColourForDigit(cnc, "4")->tag, 203);
    EXPECT_EQ(caseColourForDigit(m68, "2")->tag, 201);

    EXPECT_EQ(caseColourSlide(4, 3), 2);  // purple to blue slides left
    EXPECT_EQ(caseColourSlide(3, 2), 2);
    EXPECT_FALSE(caseColourSlide(2, 2));
}
