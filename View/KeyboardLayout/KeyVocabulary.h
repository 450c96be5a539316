#pragma once
// The vocabulary both models share, and the per-model rows that place a
// key in a code map. The model files (Orvane61kKeyCode, Orvane68kKeyCode)
// list their rows; the maps are built from these.

#include "View/KeyboardLayout/KeyCodeMaps.h"

#include <span>

namespace KeyVocabulary {

// One word of the vocabulary. Names, codes and table slots agree between the
// models; only `light_index` and `pos_index` are the model's own.
struct Word {
    const char* key_name;
    int key_code;
    const char* short_name;
    const char* full_name;
    int layout_index;
    bool flag;
    // The code maps shorten a few names further; null where they do not.
    const char* code_short_name = nullptr;
};

// A key of one model's code maps: which of the three maps holds it, and the
// model's own slots.
struct ModelKey {
    const char* key_name;
    int map;  // 1, 2 or 3
    int light_index;
    int pos_index;
};

const Word& word(const char* keyName);
// The word of a key code, of either model; null for a code no word has.
const Word* wordOfCode(int keyCode);

// A model's name map and its three code maps.
struct ModelMaps {
    KeyNameMap names;
    KeyCodeMap codes[3];
};

// The name map holds every key of the code maps plus `namesWithoutKey`.
ModelMaps modelMaps(std::span<const ModelKey> keys, std::span<const char* const> namesWithoutKey);

// Each model's maps, built once on first use.
const ModelMaps& orvane61kMaps();
const ModelMaps& orvane68kMaps();

}  // namespace KeyVocabulary
