#pragma once
// Rows of the lists: a text on a row that reacts to the pointer.
//
// RecordTableItemView, a step of the macro window's list: its text turns
// record blue under the pointer.
// MacroTableItemView, a macro of the macro page: under the pointer the row
// shows "view_row_hover" behind white text and two buttons, delete and edit,
// which post "MacroTableViewButton" with "type" 1 or 2 and the row's "index".

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

class MacroTableItemView : public QWidget {
    Q_OBJECT
public:
    static constexpr int kRowHeight = 30;

    explicit MacroTableItemView(QWidget* parent = nullptr);

    // The index at every call, the views on the first only.
    void initView(int index);

    QLabel* textView = nullptr;
    ImageButton* delBtnView = nullptr;
    ImageButton* editBtnView = nullptr;
    int tableViewIndex = 0;
    bool initFinish = false;

    QString shownImageName() const { return image_; }

protected:
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void setHovered(bool hovered);
    QString image_;
};
