#include "Common/InputKeyCodes.h"

#include <array>

namespace {

struct Row {
    int usage;  // HID Keyboard/Keypad page
    int evdev;  // linux/input-event-codes.h
};

// Every usage of the page from 0x04 to 0xE7 that the kernel's HID driver
// turns into a key code. Where two usages give one code (0x31 and the
// non-US 0x32 both arrive as KEY_BACKSLASH), the code answers the first.
// clang-format off
constexpr Row kRows[] = {
    // Letters a..z
    {0x04, 30}, {0x05, 48}, {0x06, 46}, {0x07, 32}, {0x08, 18}, {0x09, 33}, {0x0A, 34}, {0x0B, 35},
    {0x0C, 23}, {0x0D, 36}, {0x0E, 37}, {0x0F, 38}, {0x10, 50}, {0x11, 49}, {0x12, 24}, {0x13, 25},
    {0x14, 16}, {0x15, 19}, {0x16, 31}, {0x17, 20}, {0x18, 22}, {0x19, 47}, {0x1A, 17}, {0x1B, 45},
    {0x1C, 21}, {0x1D, 44},
    // Digits 1..9, 0
    {0x1E, 2}, {0x1F, 3}, {0x20, 4}, {0x21, 5}, {0x22, 6}, {0x23, 7}, {0x24, 8}, {0x25, 9},
    {0x26, 10}, {0x27, 11},
    // Enter, Escape, Backspace, Tab, Space, - = [ ] \ ; ' ` , . / Caps Lock
    {0x28, 28}, {0x29, 1}, {0x2A, 14}, {0x2B, 15}, {0x2C, 57}, {0x2D, 12}, {0x2E, 13}, {0x2F, 26},
    {0x30, 27}, {0x31, 43}, {0x33, 39}, {0x34, 40}, {0x35, 41}, {0x36, 51}, {0x37, 52}, {0x38, 53},
    {0x39, 58},
    // F1..F12
    {0x3A, 59}, {0x3B, 60}, {0x3C, 61}, {0x3D, 62}, {0x3E, 63}, {0x3F, 64}, {0x40, 65}, {0x41, 66},
    {0x42, 67}, {0x43, 68}, {0x44, 87}, {0x45, 88},
    // Print Screen, Scroll Lock, Pause, Insert, Home, Page Up, Delete, End,
    // Page Down, Right, Left, Down, Up
    {0x46, 99}, {0x47, 70}, {0x48, 119}, {0x49, 110}, {0x4A, 102}, {0x4B, 104}, {0x4C, 111},
    {0x4D, 107}, {0x4E, 109}, {0x4F, 106}, {0x50, 105}, {0x51, 108}, {0x52, 103},
    // Num Lock, keypad / * - + Enter 1..9 0 .
    {0x53, 69}, {0x54, 98}, {0x55, 55}, {0x56, 74}, {0x57, 78}, {0x58, 96}, {0x59, 79}, {0x5A, 80},
    {0x5B, 81}, {0x5C, 75}, {0x5D, 76}, {0x5E, 77}, {0x5F, 71}, {0x60, 72}, {0x61, 73}, {0x62, 82},
    {0x63, 83},
    // Non-US \, Application, Power, keypad =
    {0x64, 86}, {0x65, 127}, {0x66, 116}, {0x67, 117},
    // F13..F24
    {0x68, 183}, {0x69, 184}, {0x6A, 185}, {0x6B, 186}, {0x6C, 187}, {0x6D, 188}, {0x6E, 189},
    {0x6F, 190}, {0x70, 191}, {0x71, 192}, {0x72, 193}, {0x73, 194},
    // Execute, Help, Menu, Select, Stop, Again, Undo, Cut, Copy, Paste, Find,
    // Mute, Volume Up, Volume Down
    {0x74, 134}, {0x75, 138}, {0x76, 130}, {0x77, 132}, {0x78, 128}, {0x79, 129}, {0x7A, 131},
    {0x7B, 137}, {0x7C, 133}, {0x7D, 135}, {0x7E, 136}, {0x7F, 113}, {0x80, 115}, {0x81, 114},
    // Keypad comma, International 1..6, Lang 1..5
    {0x85, 121}, {0x87, 89}, {0x88, 93}, {0x89, 124}, {0x8A, 92}, {0x8B, 94}, {0x8C, 95},
    {0x90, 122}, {0x91, 123}, {0x92, 90}, {0x93, 91}, {0x94, 85},
    // Keypad ( )
    {0xB6, 179}, {0xB7, 180},
    // Left Control, Shift, Alt, GUI; Right Control, Shift, Alt, GUI
    {0xE0, 29}, {0xE1, 42}, {0xE2, 56}, {0xE3, 125}, {0xE4, 97}, {0xE5, 54}, {0xE6, 100}, {0xE7, 126},
    // KEY_FN: keyboards that report their Fn key give our Fn key's code,
    // which lies outside the page's assigned usages.
    {0xAF, 464},
};
// clang-format on

constexpr int kEvdevCodes = 512;

constexpr std::array<short, kEvdevCodes> usageByEvdev()
{
    std::array<short, kEvdevCodes> table{};
    for (const Row& row : kRows)
        if (table[row.evdev] == 0)
            table[row.evdev] = static_cast<short>(row.usage);
    return table;
}

constexpr auto kUsageByEvdev = usageByEvdev();

// xkb keycodes start at 8, evdev code 0.
constexpr quint32 kXkbKeycodeOffset = 8;

}  // namespace

std::optional<int> hidUsageFromEvdev(int code)
{
    if (code < 0 || code >= kEvdevCodes || kUsageByEvdev[code] == 0)
        return std::nullopt;
    return kUsageByEvdev[code];
}

std::optional<int> hidUsageFromNativeScanCode(quint32 nativeScanCode)
{
    if (nativeScanCode < kXkbKeycodeOffset)
        return std::nullopt;
    return hidUsageFromEvdev(static_cast<int>(nativeScanCode - kXkbKeycodeOffset));
}
