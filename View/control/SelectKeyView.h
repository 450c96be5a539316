#pragma once
// The marker over one key: the "key_bkg" image, shown while the key is
// selected or under the pointer. The marker is made on first use. Under the
// marker, a lit key's cap is filled with its colour.

#include "View/control/KeyboardViewPicture.h"

#include <QColor>
#include <QWidget>

class NamedImageView;

class SelectKeyView : public QWidget {
    Q_OBJECT
public:
    explicit SelectKeyView(QWidget* parent = nullptr);

    bool keyCheck = false;
    NamedImageView* imageView = nullptr;
    bool initView = false;

    void setKeyCheck(bool check);
    // Creates the marker if there is none yet; hidden until shown.
    void ensureMarker();
    // Shows or hides the marker, if the key has one, leaving keyCheck.
    void showMarker(bool shown);

    // Where the cap lies in this view, and the colour it is lit in; an
    // invalid colour leaves the picture's unlit cap to show.
    void setCapShape(const KeyboardViewPicture::CapFill& cap);
    void setCapColour(const QColor& colour);
    QColor capColour() const { return capColour_; }

protected:
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    KeyboardViewPicture::CapFill cap_;
    QColor capColour_;
};
