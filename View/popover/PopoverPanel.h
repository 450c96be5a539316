#pragma once
// The shared frame of the small popovers (language, profile, main menu): a
// transient popup drawn as a white rounded panel, closed by a click outside
// it, shown under the button that opens it. Each popover sets its texts again
// in the language of the moment every time it is shown (viewDidAppear).

#include <QWidget>

class PopoverPanel : public QWidget {
    Q_OBJECT
public:
    static constexpr int kPadding = 6;

    explicit PopoverPanel(QWidget* parent = nullptr);

    // Below `anchor`: right edges lined up, or, with `alignLeft`, left edges.
    void showBelow(QWidget* anchor, bool alignLeft = false);

protected:
    virtual void viewDidAppear() {}
    void showEvent(QShowEvent* event) override;
    // A row under the pointer when the popup closes gets no leave of its
    // own; it is given one, so that the next showing starts unhovered.
    void hideEvent(QHideEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
};
