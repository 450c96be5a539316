#include "Simulator/LightModeState.h"

#include "Protocol/LightModeBlock.h"
#include "Simulator/FirmwareModel.h"

#include <algorithm>

namespace {
bool isBuiltInEffect(int mode) { return (mode >= 1 && mode <= 15) || mode == 32; }
}  // namespace

std::optional<LightModeState> decodeLightModeBlock(std::span<const uint8_t> block)
{
    if (block.size() != Protocol::kReportSize)
        return std::nullopt;
    LightModeState state;
    state.mode = block[0];
    if (state.mode == Protocol::kUserLightModeByte)
        state.kind = LightModeState::Kind::UserSlots;
    else if (isBuiltInEffect(state.mode))
        state.kind = LightModeState::Kind::BuiltIn;
    // The firmware ignores what it does not expect after the effect number;
    // a difference there is noted, not refused.
    const auto expected = Protocol::lightModeBlock(block[0]);
    state.settingsAsFixed = std::equal(block.begin() + 1, block.begin() + Protocol::kLightModeMarkerAt,
                                       expected.begin() + 1);
    return state;
}

std::optional<LightModeState> FirmwareModel::lightModeState(int profile) const
{
    return decodeLightModeBlock(lightMode(profile));
}
