#include "Protocol/SystemSettingsBlock.h"

namespace SystemSettingsBlock {
namespace {

uint8_t withAnyLockBit(uint8_t locks)
{
    return locks == 0 ? 0 : uint8_t(locks | kAnyLockBit);
}

}  // namespace

const LockSwitch* lockSwitchForTag(int tag)
{
    for (const auto& lock : kLockSwitches)
        if (lock.tag == tag)
            return &lock;
    return nullptr;
}

bool isLocked(std::string_view value)
{
    return value == "1";
}

uint8_t lockByte(const SettingReader& valueOf)
{
    uint8_t locks = 0;
    for (const auto& lock : kLockSwitches)
        if (isLocked(valueOf(lock.configKey)))
            locks |= lock.bit;
    return withAnyLockBit(locks);
}

uint8_t lockByteAfterSwitch(uint8_t current, int tag, int btnstate)
{
    const LockSwitch* lock = lockSwitchForTag(tag);
    if (!lock)
        return current;
    uint8_t locks = uint8_t(current & ~kAnyLockBit);
    locks = btnstate == 1 ? uint8_t(locks | lock->bit) : uint8_t(locks & ~lock->bit);
    return withAnyLockBit(locks);
}

Block build(uint8_t lockByte)
{
    Block block{};
    block[0] = lockByte;
    block[Protocol::kSystemSetMarkerAt] = Protocol::kEndMarker0;
    block[Protocol::kSystemSetMarkerAt + 1] = Protocol::kEndMarker1;
    return block;
}

}  // namespace SystemSettingsBlock
