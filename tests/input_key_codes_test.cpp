// The host's key codes (evdev, and Qt's native scan codes on X11 and
// Wayland) turned into HID usages: the kernel's own constants on one side,
// the HID Usage Tables' numbers on the other, so a slip in our table shows.
#include "Common/InputKeyCodes.h"
#include "View/KeyboardLayout/KeyCodeMaps.h"

#include <linux/input-event-codes.h>

#include <gtest/gtest.h>

#include <map>

namespace {

// Each key of the models by its kernel key code.
const std::map<QString, int>& evdevByKeyName()
{
    static const std::map<QString, int> codes{
        {"escape", KEY_ESC}, {"backtick", KEY_GRAVE}, {"i1", KEY_1}, {"i2", KEY_2}, {"i3", KEY_3}, {"i4", KEY_4},
        {"i5", KEY_5}, {"i6", KEY_6}, {"i7", KEY_7}, {"i8", KEY_8}, {"i9", KEY_9}, {"i0", KEY_0},
        {"minus", KEY_MINUS}, {"equal", KEY_EQUAL}, {"backspace", KEY_BACKSPACE}, {"tab", KEY_TAB}, {"q", KEY_Q},
        {"w", KEY_W}, {"e", KEY_E}, {"r", KEY_R}, {"t", KEY_T}, {"y", KEY_Y}, {"u", KEY_U}, {"i", KEY_I},
        {"o", KEY_O}, {"p", KEY_P}, {"leftBracket", KEY_LEFTBRACE}, {"rightBracket", KEY_RIGHTBRACE},
        {"backslash", KEY_BACKSLASH}, {"capsLock", KEY_CAPSLOCK}, {"a", KEY_A}, {"s", KEY_S}, {"d", KEY_D},
        {"f", KEY_F}, {"g", KEY_G}, {"h", KEY_H}, {"j", KEY_J}, {"k", KEY_K}, {"l", KEY_L},
        {"semicolon", KEY_SEMICOLON}, {"quote", KEY_APOSTROPHE}, {"enter", KEY_ENTER}, {"leftShift", KEY_LEFTSHIFT},
        {"z", KEY_Z}, {"x", KEY_X}, {"c", KEY_C}, {"v", KEY_V}, {"b", KEY_B}, {"n", KEY_N}, {"m", KEY_M},
        {"comma", KEY_COMMA}, {"period", KEY_DOT}, {"slash", KEY_SLASH}, {"rightShift", KEY_RIGHTSHIFT},
        {"leftControl", KEY_LEFTCTRL}, {"leftWin", KEY_LEFTMETA}, {"leftAlt", KEY_LEFTALT}, {"space", KEY_SPACE},
        {"rightAlt", KEY_RIGHTALT}, {"menu", KEY_COMPOSE}, {"fn", KEY_FN}, {"rightControl", KEY_RIGHTCTRL},
        {"home", KEY_HOME}, {"pageUp", KEY_PAGEUP}, {"pageDown", KEY_PAGEDOWN}, {"delete", KEY_DELETE},
        {"upArrow", KEY_UP}, {"leftArrow", KEY_LEFT}, {"downArrow", KEY_DOWN}, {"rightArrow", KEY_RIGHT}};
    return codes;
}

}  // namespace

TEST(InputKeyCodes, EveryKeyOfBothModelsArrivesAsItsCodeFromEvdevAndFromTheNativeScanCode)
{
    const std::vector<const KeyCodeMap*> maps{
        &Orvane61K_SuperKeyCodeMap1(), &Orvane61K_SuperKeyCodeMap2(), &Orvane61K_SuperKeyCodeMap3(),
        &Orvane68K_SuperKeyCodeMap1(), &Orvane68K_SuperKeyCodeMap2(), &Orvane68K_SuperKeyCodeMap3()};
    int keys = 0;
    for (const KeyCodeMap* map : maps)
        for (const auto& [code, record] : *map) {
            const auto evdev = evdevByKeyName().find(record.key_name);
            ASSERT_NE(evdev, evdevByKeyName().end()) << record.key_name.toStdString();
            EXPECT_EQ(hidUsageFromEvdev(evdev->second), code) << record.key_name.toStdString();
            EXPECT_EQ(hidUsageFromNativeScanCode(evdev->second + 8), code) << record.key_name.toStdString();
            ++keys;
        }
    EXPECT_EQ(keys, 61 + 69);
}

TEST(InputKeyCodes, TheRestOfThePageFollowsTheUsageTablesAndOtherCodesAreNone)
{
    // Usage ids as the HID Usage Tables list them on the Keyboard/Keypad page.
    const std::vector<std::pair<int, int>> rows{
        {KEY_F1, 0x3A}, {KEY_F12, 0x45}, {KEY_F13, 0x68}, {KEY_F24, 0x73}, {KEY_SYSRQ, 0x46}, {KEY_PAUSE, 0x48},
        {KEY_NUMLOCK, 0x53}, {KEY_KPSLASH, 0x54}, {KEY_KPENTER, 0x58}, {KEY_KP1, 0x59}, {KEY_KP0, 0x62},
        {KEY_KPDOT, 0x63}, {KEY_102ND, 0x64}, {KEY_KPEQUAL, 0x67}, {KEY_KPCOMMA, 0x85}, {KEY_KPRIGHTPAREN, 0xB7},
        {KEY_MUTE, 0x7F}, {KEY_VOLUMEDOWN, 0x81}, {KEY_RO, 0x87}, {KEY_HANJA, 0x91}, {KEY_RIGHTMETA, 0xE7}};
    for (const auto& [evdev, usage] : rows) {
        EXPECT_EQ(hidUsageFromEvdev(evdev), usage) << evdev;
        EXPECT_EQ(hidUsageFromNativeScanCode(evdev + 8), usage) << evdev;
    }
    // Mouse buttons, codes past the table, and scan codes below the xkb
    // offset (offscreen Qt gives 0) are no key of the page.
    for (int evdev : {KEY_RESERVED, BTN_LEFT, KEY_MAX, KEY_MAX + 1, -1})
        EXPECT_EQ(hidUsageFromEvdev(evdev), std::nullopt) << evdev;
    for (quint32 native : {0u, 7u, 0xFFFFFFFFu})
        EXPECT_EQ(hidUsageFromNativeScanCode(native), std::nullopt) << native;
}
