#pragma once
// KeyboardView: the keyboard picture. It stacks, from bottom to top, one
// KeyView per key (the colour seen through the key's windows), the picture
// of the case, one SelectKeyView per key (the marker) and the rubber band.
//
// Keys are given in picture units with y growing upward. The view shows its
// bounds (the picture's size in those units) scaled to its own size, so the
// key geometry is converted once here, when keys arrive or the view is
// resized, and hitTest answers from that. The view speaks in key indices;
// it knows nothing of stores or the keyboard's protocol.

#include "View/KeyboardLayout/KeyboardLayouts.h"

#include <QColor>
#include <QPointF>
#include <QRectF>
#include <QWidget>

#include <optional>
#include <vector>

class FrameSelectView;
class KeyView;
class NamedImageView;
class SelectKeyView;

class KeyboardView : public QWidget {
    Q_OBJECT
public:
    explicit KeyboardView(QWidget* parent = nullptr);

    // Moves the view, keeping its size; x and y are the lower-left corner in
    // the parent, y upward.
    void setFrameOrigin(int x, int y);
    // The picture units the view shows across its size.
    void setBoundsSize(const QSizeF& size);
    QSizeF boundsSize() const { return bounds_; }

    // Replaces all keys and the picture. `type` is kept for the picture's
    // kind; every model passes 1.
    void initKeyboard(int type, const QString& kb_image, std::vector<KeyData> keyArray);
    // Takes every key's views and the picture away.
    void removeKeyboard();
    // Every key's `keyMacro` becomes the full name of its key.
    void resetKeyMacro();
    // The colour every KeyView shows while it has no colour of its own.
    void setKeyBackgroundColor(const QColor& color);

    // ---- Key colours (KeyboardViewColour.cpp) -----------------------------
    // Gives `color` to every checked key and to the key clicked last, checked
    // or not. Black takes a key's own colour off.
    void setCheckItemColor(const QColor& color);
    // Every key back to black (no colour of its own) and unchecked; hover and
    // the last click stay.
    void resetKeyColor();

    // The key under a point in view coordinates: the first of
    // kbKeyArraySelect whose rectangle holds it.
    std::optional<int> hitTest(const QPointF& point) const;
    // A key's rectangle in view coordinates.
    QRectF keyGeometry(int index) const;

    std::vector<KeyData> kbKeyArrayHover;   // with their KeyView
    std::vector<KeyData> kbKeyArraySelect;  // with their SelectKeyView; holds the keyMacro texts
    int hoverKeyItem = -1;
    int selectKeyItem = -1;
    bool isEvent = false;
    bool customMode = false;
    int kbType = 0;
    NamedImageView* kbImageView = nullptr;
    NamedImageView* kbNewView = nullptr;  // the two pictures of a slide
    NamedImageView* kbOldView = nullptr;
    int animationIndex = 0;
    FrameSelectView* frameSelectView = nullptr;
    QPointF ptMouseDown;
    QRectF frameSelect;

    KeyView* keyView(int index) const;
    SelectKeyView* selectKeyView(int index) const;

protected:
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void placeChildren();

    QSizeF bounds_;
    std::vector<QRectF> keyGeometry_;  // view coordinates, index = key index
};
