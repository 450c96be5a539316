#pragma once
// The colours of the interface, in one place.

#include <QColor>
#include <QLabel>
#include <QPalette>

namespace Theme {
// Near-black text on light panels.
inline QColor normalText() { return QColor::fromRgbF(0.05f, 0.05f, 0.05f); }
// The light list's effect names, a touch darker.
inline QColor lightRowText() { return QColor::fromRgbF(0.02f, 0.02f, 0.02f); }
// Captions of controls that cannot be used at the moment.
inline QColor disabledText() { return QColor::fromRgbF(0.6f, 0.6f, 0.6f); }
inline QColor hoverBlue() { return QColor::fromRgbF(0.2235294117647059f, 0.6470588235294118f, 1.0f); }
inline QColor recordBlue() { return QColor::fromRgbF(0.00392156862745098f, 0.5882352941176471f, 1.0f); }
inline QColor panel() { return QColor(0xff, 0xff, 0xff); }
inline QColor panelBorder() { return QColor(0xe3, 0xe6, 0xea); }
// Behind the row of the effect in force.
inline QColor selectedRow() { return QColor(0xe9, 0xf4, 0xff); }
// The window's messages: dark amber text on a pale amber panel.
inline QColor messageText() { return QColor(0x3d, 0x2a, 0x00); }
inline QColor messageBackground() { return QColor(0xff, 0xf4, 0xe5); }
inline QColor messageBorder() { return QColor(0xf0, 0xc3, 0x6d); }

// The colour of a label's text, kept in its palette.
inline void setTextColor(QLabel* label, const QColor& color)
{
    if (!label)
        return;
    QPalette pal = label->palette();
    pal.setColor(QPalette::WindowText, color);
    label->setPalette(pal);
}
}  // namespace Theme
