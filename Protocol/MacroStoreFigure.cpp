#include "Protocol/MacroStoreFigure.h"

namespace MacroStoreFigure {
namespace {

// The last byte a body may end at: the report after the last body must fit
// the store too.
constexpr std::size_t kLastEnd = MacroStoreBlock::kMaxBytes - Protocol::kReportSize;

}  // namespace

MacroStoreBlock::MacroSteps records(const MacroSteps::Steps& steps, int64_t macroId)
{
    MacroStoreBlock::MacroSteps out;
    for (const MacroStep& step : steps)
        out.push_back({0, macroId, step.type, int64_t(out.size()), step.value, step.text});
    return out;
}

Figure figure(std::vector<MacroStoreBlock::MacroSteps> library, std::optional<std::size_t> place,
              const MacroSteps::Steps& steps)
{
    if (!place || *place >= library.size()) {
        place = library.size();
        library.emplace_back();
    }
    library[*place].clear();
    const MacroStoreBlock::Result without = MacroStoreBlock::build(library);
    library[*place] = records(steps);
    const MacroStoreBlock::Result with = MacroStoreBlock::build(library);

    int64_t recordCount = 0;
    for (const MacroStoreBlock::MacroSteps& macro : library)
        recordCount += int64_t(macro.size());
    const int64_t counted = 4 * recordCount + 8 * int64_t(library.size());

    Figure f;
    f.macroBytes = with.end - without.end;
    f.roomBytes = without.end < kLastEnd ? kLastEnd - without.end : 0;
    f.bytesOver = with.bytesOver;
    f.recordBytesOver = std::max<int64_t>(0, counted - MacroStoreBlock::kRecordLimitBytes);
    f.macrosOver = with.macrosOver;
    return f;
}

}  // namespace MacroStoreFigure
