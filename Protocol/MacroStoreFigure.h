#pragma once
// How much of the keyboard's macro store one macro takes while it is being
// edited, and whether the library would still be sent with it. Worked out
// by building the store exactly as an upload does, so the figure the window
// shows is the figure the upload meets.

#include "Common/MacroSteps.h"
#include "Protocol/MacroStoreBlock.h"

#include <optional>

namespace MacroStoreFigure {

// The stored records of a list of steps, numbered from 0 for `macroId`.
MacroStoreBlock::MacroSteps records(const MacroSteps::Steps& steps, int64_t macroId = 0);

struct Figure {
    std::size_t macroBytes = 0;  // this macro's body: 8 bytes of head and 4 a step, inserted delays included
    std::size_t roomBytes = 0;   // what the other macros leave for it
    // Over the limits by this much (0 when it fits): the store's bytes, the
    // upload's first check on the records (4 bytes a step, 8 a macro), and
    // the directory's places.
    std::size_t bytesOver = 0;
    int64_t recordBytesOver = 0;
    int macrosOver = 0;

    bool fits() const { return bytesOver == 0 && recordBytesOver == 0 && macrosOver == 0; }
};

// `library`: every macro's stored steps in place order. `place`: this
// macro's place in it, or none for a macro not stored yet (it then goes to
// the end). `steps`: the macro as edited.
Figure figure(std::vector<MacroStoreBlock::MacroSteps> library, std::optional<std::size_t> place,
              const MacroSteps::Steps& steps);

}  // namespace MacroStoreFigure
