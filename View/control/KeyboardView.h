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
//
// The pointer: a move marks the key under it (hover) and shows its tool tip;
// a press selects the hovered key (with Shift held, in addition to the keys
// selected before; with Ctrl, toggling it); a drag of more than 6 units
// draws a rubber band and selects exactly the keys it touches (with Shift,
// in addition); the release reports the last clicked key by name. What these do for the window is told by notifications:
// "ShowKeyboardToolTipWnd", "keyboardKeyAction" and, after a slide between
// two pictures, "KeyboardViewAnimationStop".

#include "View/KeyboardLayout/KeyboardLayouts.h"

#include <QColor>
#include <QPointF>
#include <QPointer>
#include <QRectF>
#include <QWidget>

#include <array>
#include <optional>
#include <set>
#include <vector>

class FrameSelectView;
class KeyCapsView;
class QAbstractAnimation;
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
    // kind; every model passes 1. No key is hovered or selected afterwards.
    void initKeyboard(int type, const QString& kb_image, std::vector<KeyData> keyArray);
    // Takes every key's views and the picture away.
    void removeKeyboard();
    // Every key's `keyMacro` becomes the full name of its key.
    void resetKeyMacro();
    // What each key does when it differs from the key's own function, by
    // key index ("" for a key that keeps it), shown on the caps; the texts
    // go with the keys at the next initKeyboard.
    void setKeyCapTexts(std::vector<QString> texts);
    std::vector<QString> keyCapTexts() const;
    // The caps show those texts or, hidden, the picture's own legends.
    void setKeyCapTextsShown(bool shown);
    // The colour every KeyView shows while it has no colour of its own.
    void setKeyBackgroundColor(const QColor& color);

    // ---- Key colours (KeyboardViewColour.cpp) -----------------------------
    // Gives `color` to every checked key and to the key clicked last, checked
    // or not, unless a band or a Ctrl+click has taken it out since. Black
    // takes a key's own colour off.
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
    KeyCapsView* keyCapsView = nullptr;
    QPointF ptMouseDown;  // picture units, y upward, like the keys' rects
    QRectF frameSelect;   // the last rubber band, picture units

    KeyView* keyView(int index) const;
    SelectKeyView* selectKeyView(int index) const;

    // Keeps a key's marker on while its menu is open, whatever the pointer
    // and the selection do; -1 lets it go.
    void setMarkedKey(int index);
    int markedKey() const { return markedKeyItem_; }

    // ---- Pointer (points in view coordinates) ----------------------------
    void mouseMoved(const QPointF& point);
    // Shift adds the key (or a band's keys) to the selection, Ctrl toggles
    // the key in it.
    void mouseDown(const QPointF& point, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    void mouseDragged(const QPointF& point);
    void mouseUp();
    void mouseEntered();
    void mouseExited();

    // ---- Showing and sliding ----------------------------------------------
    // Hides or shows the picture, the key colours, the markers and the band.
    void setControlHideStatus(bool isHidden);
    // Slides `new_image` in while `old_image` leaves, in 0.68 s: move_type 0
    // from above, 1 from below, 2 from the left, 3 from the right. Any other
    // type starts nothing and leaves the two pictures over hidden controls.
    void animationMoveKBView(const QString& new_image, const QString& old_image, int move_type);
    bool isSliding() const;

protected:
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;

private:
    void placeChildren();
    void placeCapFills();
    void toggleKey(int index);
    void setKeyCheck(int index, bool check);
    // Posts the tool tip of one key, or the hiding one for -1.
    void postToolTip(int index);
    QPointF toPicture(const QPointF& point) const;
    // The view's lower-left corner in its parent, y upward.
    QPointF frameOrigin() const;
    void stopSlide();
    void animationDidEnd();

    std::array<QPointer<QAbstractAnimation>, 2> slide_;

    // Whether a colour goes to the key clicked last even when it is not
    // selected: not after a band or a Ctrl+click took it out.
    bool lastClickPaints_ = true;
    std::set<int> bandBase_;  // selected before a band drawn with Shift

    QSizeF bounds_;
    std::vector<QRectF> keyGeometry_;  // view coordinates, index = key index
    bool keyCapTextsShown_ = true;
    int markedKeyItem_ = -1;
};
