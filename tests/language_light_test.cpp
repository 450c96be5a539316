// The text tables, the built-in light catalogue and its wire block.
#include "Common/Globals.h"
#include "Common/LightModeCatalogue.h"
#include "Language/Language.h"
#include "Protocol/LightModeBlock.h"
#include "SQLite/LocalSQLite.h"
#include "Simulator/LightModeState.h"
#include "support/HexBytes.h"

#include <gtest/gtest.h>

#include <QStringList>

#include <set>

using namespace testing_support;

TEST(LanguageTables, BothLanguagesKnowTheSame107IdsAndSayCHSForEveryOtherId)
{
    std::set<int> english, chinese;
    for (int id = -20; id <= 2000; ++id) {
        if (ENGLanguage::getLan(id) != "CHS")
            english.insert(id);
        if (CHSLanguage::getLan(id) != "CHS")
            chinese.insert(id);
    }
    EXPECT_EQ(english.size(), 107u);
    EXPECT_EQ(english, chinese);
    EXPECT_EQ(ENGLanguage::getLan(100000), "CHS");
    EXPECT_EQ(CHSLanguage::getLan(1), "");

    // getLan2 serves only its own ranges; getLan hands them on.
    EXPECT_EQ(QStringList({ENGLanguage::getLan2(201), ENGLanguage::getLan2(360), CHSLanguage::getLan(815),
                           ENGLanguage::getLan(623)}), QStringList({"CHS", "Record", "保存到自定义模式5", "OK"}));

    EXPECT_EQ(ENGLanguage::getLan(56), ENGLanguage::getLan(200));
    EXPECT_EQ(ENGLanguage::getLan(522), ENGLanguage::getLan(590));
    EXPECT_NE(CHSLanguage::getLan(522), CHSLanguage::getLan(590));

    // The language in force is read at each call.
    G_Language = kLanguageChinese;
    EXPECT_EQ(languageText(521), "灯光设置");
    G_Language = 1234;  // anything but 2052 is English
    EXPECT_EQ(languageText(521), "Light Set");
    G_Language = kLanguageEnglish;
    EXPECT_EQ(std::pair(profileTextId(5), profileTextId(6)), std::pair(36, 0));
}

TEST(LightCatalogue, PairsEachStemWithItsRowsTextRunsTo32AndEncodesItsWireBlock)
{
    struct Row { int mode; const char* stem; const char* english; const char* chinese; };
    const Row expected[] = {
        {1, "continued", "Continued", "常量"},       {2, "singleon", "SingleOn", "单点亮"},
        {3, "singleoff", "SingleOff", "单点灭"},     {4, "glittering", "Glittering", "繁星点点"},
        {5, "falling", "Fallen Flowers", "天女散花"}, {6, "breathing", "Colorful", "七彩画卷"},
        {7, "spectrum", "Breathing", "循环呼吸"},     {8, "outward", "SpectrumCycle", "光谱渐变"},
        {9, "scrolling", "Outward", "彩泉涌动"},      {10, "adrift", "Series", "浮光掠影"},
        {11, "rotating", "Adrift", "随波逐流"},       {12, "explode", "Rotating", "峰回路转"},
        {13, "launch", "Explode", "一触即发"},        {14, "ripples", "Launch", "一石二鸟"},
        {15, "tilt", "Pointing", "指点江山"},         {32, "shuttle", "Eggshells", "跑马游龙"},
    };
    const auto& catalogue = lightModeCatalogue();
    for (int row = 0; row < kLightModeRows; ++row) {
        const LightModeEntry& e = catalogue[row];
        EXPECT_EQ(e.mode, expected[row].mode) << row;
        EXPECT_STREQ(e.stem, expected[row].stem) << row;
        EXPECT_EQ(ENGLanguage::getLan(e.textId), expected[row].english) << row;
        EXPECT_EQ(CHSLanguage::getLan(e.textId), QString::fromUtf8(expected[row].chinese)) << row;
    }
    EXPECT_EQ(catalogue[5].iconSelected(), "icon_light_breathing_s");
    EXPECT_EQ(lightModeRow(32), 15);
    EXPECT_EQ(lightModeRow(16), -1);

    // A stored mode that is not a decimal integer counts as empty.
    for (const char* stored : {"", "abc", "3x", "1.5", "0x20", " 7"})
        EXPECT_EQ(lightModeFromStored(stored), 1) << stored;
    EXPECT_EQ(lightModeFromStored("16"), 16);

    // The wire block holds the mode, the fixed settings and the marker, and decodes back.
    const auto block = Protocol::lightModeBlock(1);
    EXPECT_EQ(hexFromBytes({block.begin(), block.end()}),
              hexFromBytes(report({0x01, 0x00, 0x00, 0xff, 0xff, 0x00, 0x0f, 0x07, 0x01, 0x0f, 0x0f, 0x00, 0x00,
                                   0x00, 0xaa, 0x55})));
    auto builtIn = Protocol::lightModeBlock(32);
    EXPECT_EQ(decodeLightModeBlock(builtIn), (LightModeState{LightModeState::Kind::BuiltIn, 32, true}));
    EXPECT_EQ(decodeLightModeBlock(Protocol::lightModeBlock(0x80))->kind, LightModeState::Kind::UserSlots);
    EXPECT_EQ(decodeLightModeBlock(Protocol::lightModeBlock(16))->kind, LightModeState::Kind::Unknown);
    builtIn[7] = 0x03;
    EXPECT_FALSE(decodeLightModeBlock(builtIn)->settingsAsFixed);
    EXPECT_EQ(decodeLightModeBlock({}), std::nullopt);
}
