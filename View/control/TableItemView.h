#pragma once
// Rows of the lists: a text on a row that reacts to the pointer.
//
// TableItemView, a row of one centred text (the key menu's macro list):
// under the pointer it shows "view_row_hover" behind white text. Presses go
// through to the list, whose selection is what the row stands for. A text
// too long for the row ends in "…" and is whole in the row's tool tip.
// RecordTableItemView, a step of the macro window's list: its text turns
// record blue under the pointer.
// MacroTableItemView, a macro of the macro page: its name (ending in "…"
// when long) and its step count; under the pointer the row shows
// "view_row_hover" behind white text and two buttons, delete and edit, in
// place of the count, which post "MacroTableViewButton" with "type" 1 or 2
// and the row's "index".

#include "View/control/ButtonView.h"

#include <QLabel>
#include <QWidget>

class RecordTableItemView : public QWidget {
    Q_OBJECT
public:
    static constexpr int kRowHeight = 24;

    explicit RecordTableItemView(QWidget* parent = nullptr);

    // Once only.
    void initView();

    QLabel* textView = nullptr;
    bool initFinish = false;

protected:
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;
};

class TableItemView : public QWidget {
    Q_OBJECT
public:
    explicit TableItemView(QWidget* parent = nullptr);

    // Once only: a recycled row keeps its text view.
    void initView();
    // The row's text, elided to the room the row gives it.
    void setText(const QString& text);
    QString text() const { return text_; }

    QLabel* textView = nullptr;
    bool initFinish = false;

    QString shownImageName() const { return image_; }

protected:
    // Under the pointer: "view_row_hover" behind white text.
    virtual void setHovered(bool hovered);
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    // Shows text_ in textView, elided to the label's width.
    void elideText();

private:
    QString image_;
    QString text_;
};

// A macro row hovers as any row and shows its two buttons while it does.
class MacroTableItemView : public TableItemView {
    Q_OBJECT
public:
    static constexpr int kRowHeight = 30;

    explicit MacroTableItemView(QWidget* parent = nullptr);

    // The index at every call, the views on the first only.
    void initView(int index);
    // The macro's name and its number of steps.
    void setMacro(const QString& name, int steps);

    QLabel* countView = nullptr;
    ImageButton* delBtnView = nullptr;
    ImageButton* editBtnView = nullptr;
    int tableViewIndex = 0;

protected:
    void setHovered(bool hovered) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    // The name takes the row up to the count, or up to the buttons.
    void placeViews(bool hovered);
};
