#pragma once
// The built-in light effects the keyboard runs, in the order the light list
// shows them: effect number, image stem and text id. The numbers run 1 to 15
// and then 32; there is no effect 16. Stems and texts are paired as the rows
// stand, so the row with the stem "breathing" shows the text of id 206
// ("Colorful"), and the text "Breathing" stands beside the stem "spectrum".

#include <QString>

#include <array>

struct LightModeEntry {
    int mode;
    const char* stem;
    int textId;

    // "icon_light_<stem>_n", "_h" and "_s".
    QString iconNormal() const;
    QString iconHover() const;
    QString iconSelected() const;
};

inline constexpr int kLightModeRows = 16;
const std::array<LightModeEntry, kLightModeRows>& lightModeCatalogue();

// The row that shows `mode`, or -1.
int lightModeRow(int mode);

// A stored "currentLightMode" as an effect number: a value that is empty or
// not a decimal integer counts as 1.
int lightModeFromStored(const QString& stored);
