#pragma once
// One button of the case colour selector: a round swatch of the case colour.
// The selected button has the larger frame and shows a ring round the
// swatch; the frame is the state, as the controller sets it.

#include <QAbstractButton>
#include <QColor>

class CaseColorButton : public QAbstractButton {
    Q_OBJECT
public:
    CaseColorButton(int tag, const QColor& color, QWidget* parent = nullptr);

    int tag() const { return tag_; }
    QColor color() const { return color_; }
    // The selected frame is 26 by 26, the unselected one 20 by 20.
    bool looksSelected() const { return width() > 20; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    int tag_;
    QColor color_;
};
