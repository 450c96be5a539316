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
// Steps and figures that keep a macro from being saved.
inline QColor problemText() { return QColor(0xc6, 0x28, 0x28); }
inline QColor hoverBlue() { return QColor::fromRgbF(0.2235294117647059f, 0.6470588235294118f, 1.0f); }
inline QColor recordBlue() { return QColor::fromRgbF(0.00392156862745098f, 0.5882352941176471f, 1.0f); }
inline QColor panel() { return QColor(0xff, 0xff, 0xff); }
inline QColor panelBorder() { return QColor(0xe3, 0xe6, 0xea); }
// What a reassigned key does, on its cap in the keyboard picture: a deeper
// blue on light caps, the hover blue on dark ones.
inline QColor assignedKeyText(bool lightCaps) { return lightCaps ? QColor(0x00, 0x6c, 0xc8) : hoverBlue(); }
// The button of a question that deletes the user's data.
inline QColor destructive() { return QColor(0xd9, 0x30, 0x25); }
// A refusal or a warning in a dialog.
inline QColor warningText() { return QColor(0xc0, 0x39, 0x2b); }
// The edge and the drop shadow of the floating menus and dialogs.
inline QColor floatingEdge() { return QColor(0xc4, 0xc9, 0xd1); }
inline QColor floatingShadow() { return QColor(0x9a, 0xa1, 0xab); }
// Behind the row of the effect in force.
inline QColor selectedRow() { return QColor(0xe9, 0xf4, 0xff); }
// The window's messages: dark amber text on a pale amber panel.
inline QColor messageText() { return QColor(0x3d, 0x2a, 0x00); }
inline QColor messageBackground() { return QColor(0xff, 0xf4, 0xe5); }
inline QColor messageBorder() { return QColor(0xf0, 0xc3, 0x6d); }

// The legend on a lit key cap: near-black on light colours (yellow, pale
// green, white), white on dark ones (blue, red, purple), by the colour's
// perceived lightness.
inline QColor legendInkOn(const QColor& fill)
{
    const QColor rgb = fill.toRgb();
    const double lightness = 0.299 * rgb.redF() + 0.587 * rgb.greenF() + 0.114 * rgb.blueF();
    return lightness > 0.55 ? normalText() : QColor(0xff, 0xff, 0xff);
}

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
