#pragma once
// The marker over one key: the "key_bkg" image, shown while the key is
// selected or under the pointer. The marker is made on first use.

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

protected:
    void resizeEvent(QResizeEvent* event) override;
};
