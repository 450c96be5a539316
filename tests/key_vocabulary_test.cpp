// The key vocabulary of both models, checked against the USB HID usage
// tables (keyboard page 0x07) rather than against our own table: a wrong
// code breaks a key on a real keyboard.
#include "View/KeyboardLayout/KeyCodeMaps.h"
#include "View/KeyboardLayout/KeyboardLayouts.h"

#include <gtest/gtest.h>

#include <set>
#include <tuple>

namespace {

// Usage ids as the HID Usage Tables list them on the Keyboard/Keypad page.
int hidUsage(const QString& name)
{
    static const std::map<QString, int> named{
        {"enter", 0x28},      {"escape", 0x29},     {"backspace", 0x2A},   {"tab", 0x2B},
        {"space", 0x2C},      {"minus", 0x2D},      {"equal", 0x2E},       {"leftBracket", 0x2F},
        {"rightBracket", 0x30}, {"backslash", 0x31}, {"semicolon", 0x33},  {"quote", 0x34},
        {"backtick", 0x35},   {"comma", 0x36},      {"period", 0x37},      {"slash", 0x38},
        {"capsLock", 0x39},   {"pause", 0x48},      {"insert", 0x49},      {"home", 0x4A},
        {"pageUp", 0x4B},     {"delete", 0x4C},     {"end", 0x4D},         {"pageDown", 0x4E},
        {"rightArrow", 0x4F}, {"leftArrow", 0x50},  {"downArrow", 0x51},   {"upArrow", 0x52},
        {"menu", 0x65},       {"leftControl", 0xE0}, {"leftShift", 0xE1},  {"leftAlt", 0xE2},
        {"leftWin", 0xE3},    {"rightControl", 0xE4}, {"rightShift", 0xE5}, {"rightAlt", 0xE6}};
    if (auto it = named.find(name); it != named.end())
        return it->second;
    if (name.size() == 1 && name[0] >= 'a' && name[0] <= 'z')
        return 0x04 + (name[0].unicode() - 'a');  // "Keyboard a and A" onwards
    if (name.size() == 2 && name[0] == 'i' && name[1].isDigit())  // "Keyboard 1 and !" .. "0 and )"
        return name[1] == '0' ? 0x27 : 0x1E + (name[1].unicode() - '1');
    return -1;
}

constexpr int kFnUsage = 0xAF;  // the keyboard's own Fn, outside the assigned usages

int expectedCode(const QString& name) { return name == "fn" ? kFnUsage : hidUsage(name); }

struct Model {
    const char* label;
    const KeyNameMap& names;
    std::vector<const KeyCodeMap*> codes;
};

std::vector<Model> models()
{
    return {{"61k", Orvane61K_SuperKeyNameMap(),
             {&Orvane61K_SuperKeyCodeMap1(), &Orvane61K_SuperKeyCodeMap2(), &Orvane61K_SuperKeyCodeMap3()}},
            {"68k", Orvane68K_SuperKeyNameMap(),
             {&Orvane68K_SuperKeyCodeMap1(), &Orvane68K_SuperKeyCodeMap2(), &Orvane68K_SuperKeyCodeMap3()}}};
}

}  // namespace

TEST(KeyVocabulary, EveryCodeIsTheHidUsageOfItsKeyAndEveryNameAgreesAcrossMaps)
{
    for (const Model& m : models()) {
        SCOPED_TRACE(m.label);
        for (const auto& [name, record] : m.names)
            EXPECT_EQ(record.key_code, expectedCode(name)) << name.toStdString();
        for (const KeyCodeMap* map : m.codes)
            for (const auto& [code, record] : *map) {
                EXPECT_EQ(code, expectedCode(record.key_name)) << record.key_name.toStdString();
                const KeyNameRecord& named = m.names.at(record.key_name);
                EXPECT_EQ(std::tuple(record.layout_index, record.full_name, record.key_type.has_value()),
                          std::tuple(named.layout_index, named.full_name, named.key_type.has_value()));
            }
    }
}

TEST(KeyVocabulary, EveryKeyOfEachPictureResolvesToOneSlotAndTheWorkingMapsFollowTheModel)
{
    // pos_index differs from the layout place only on the swapped keys.
    struct Case { const KeyboardModelLayout& model; std::map<QString, int> swapped; };
    const std::vector<Case> cases{
        {keyboardModel61k(), {{"leftWin", 55}, {"leftAlt", 54}}},
        {keyboardModelCnc(), {{"leftWin", 55}, {"leftAlt", 54}}},
        {keyboardModel68k(), {{"leftWin", 60}, {"leftAlt", 59}, {"rightControl", 62}, {"rightAlt", 64}}}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.model.localKey.toStdString());
        selectKeyMaps(c.model.keyMaps, CodeMapStart::Empty);
        const LayoutTable& table = *c.model.layout;
        std::set<int> layoutSlots, lightSlots;
        for (size_t place = 0; place < table.size(); ++place) {
            const QString& name = table[place].key_standard_name;
            const auto named = keyNameRecord(name);
            ASSERT_TRUE(named) << name.toStdString();
            const auto coded = keyCodeRecord(named->key_code);
            ASSERT_TRUE(coded && coded->key_name == name) << name.toStdString();
            const int expectedPos = c.swapped.count(name) ? c.swapped.at(name) : int(place);
            EXPECT_EQ(coded->pos_index, expectedPos) << name.toStdString();
            layoutSlots.insert(coded->layout_index);
            lightSlots.insert(coded->light_index);
            EXPECT_TRUE(coded->layout_index >= 1 && coded->layout_index <= 121) << coded->layout_index;
        }
        // Two keys in one slot would make one key drive another (positions are each checked above).
        EXPECT_EQ(layoutSlots.size(), table.size());
        EXPECT_EQ(lightSlots.size(), table.size());
    }

    // The working maps follow the model shown and answer "no such key".
    // Sizes of the code map, the name map, the flag keys and the normal keys.
    const auto sizes = [] {
        fillFlagAndNormalKeys();
        return std::vector{G_KB_SuperKeyCodeMap.size(), G_KB_SuperKeyNameMap.size(), G_KB_FlagKeys.size(),
                           G_KB_NormalKeys.size()};
    };
    selectKeyMaps(KeyMapModel::Orvane61k, CodeMapStart::Empty);
    EXPECT_EQ(sizes(), (std::vector<size_t>{61, 72, 8, 64}));
    EXPECT_TRUE(G_KB_SuperKeyNameMap.count("menu") && !G_KB_SuperKeyNameMap.count("backtick"));
    EXPECT_FALSE(keyCodeRecord(0x52));  // an arrow key of the host: no row, no stop
    EXPECT_FALSE(picturePosition(0x52, 61));

    selectKeyMaps(KeyMapModel::Orvane68k, CodeMapStart::Empty);
    for (const char* only61 : {"menu", "pause", "insert", "end"})
        EXPECT_FALSE(G_KB_SuperKeyNameMap.count(only61)) << only61;
    EXPECT_EQ(sizes(), (std::vector<size_t>{69, G_KB_SuperKeyNameMap.size(), 8, 61}));
    EXPECT_TRUE(keyCodeRecord(53));
    EXPECT_FALSE(picturePosition(53, 68));  // backtick has no place in the picture
    EXPECT_EQ(picturePosition(74, 68), 14);

    // The CNC model keeps the rows that only the 68-key maps have ...
    selectKeyMaps(KeyMapModel::Orvane61k, CodeMapStart::KeepCurrent);
    EXPECT_EQ(G_KB_SuperKeyCodeMap.size(), 61u + 9u);
    EXPECT_TRUE(keyCodeRecord(74));
    EXPECT_EQ(keyCodeRecord(228)->pos_index, 59);  // shared keys take the 61-key rows
    // ... a 61-key build does not.
    selectKeyMaps(KeyMapModel::Orvane68k, CodeMapStart::Empty);
    selectKeyMaps(KeyMapModel::Orvane61k, CodeMapStart::Empty);
    EXPECT_FALSE(keyCodeRecord(74));

    // Light slots that do not follow the key table slots (model, code, slot): menu,
    // rightControl and fn on the 61-key; on the 68-key escape shares 19 with backtick.
    const std::vector<std::tuple<KeyMapModel, int, int>> lights{
        {KeyMapModel::Orvane61k, 101, 96}, {KeyMapModel::Orvane61k, 228, 97}, {KeyMapModel::Orvane61k, 175, 98},
        {KeyMapModel::Orvane68k, 228, 95}, {KeyMapModel::Orvane68k, 175, 96}, {KeyMapModel::Orvane68k, 230, 98},
        {KeyMapModel::Orvane68k, 41, 19},  {KeyMapModel::Orvane68k, 53, 19}};
    for (const auto& [model, code, light] : lights) {
        selectKeyMaps(model, CodeMapStart::Empty);
        EXPECT_EQ(keyCodeRecord(code)->light_index, light) << code;
    }
}
