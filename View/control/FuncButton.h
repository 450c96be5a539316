#pragma once
// Buttons that keep a state.
//
// FuncButton: an image button with a centred title that stays on its hover
// image while it is selected, so the page it stands for stays marked after
// the pointer has left.
// SwitchButton: an on/off switch drawn as "switch_button_on" or
// "switch_button_off"; a click turns it over.

#include "View/control/ButtonView.h"

#include <QLabel>

class FuncButton : public ImageButton {
    Q_OBJECT
    // The title is the button's text: the language switch sets it as it
    // sets every control's.
    Q_PROPERTY(QString text READ title WRITE setTitle)
public:
    using ImageButton::ImageButton;

    // As ImageButton's; the title view is made on the first call only.
    void initControl(const QString& img_normal, const QString& img_hover, const QString& title);
    void setSelect(bool select);
    QString title() const { return textView ? textView->text() : QString(); }
    void setTitle(const QString& title);

    bool isSelect = false;
    QLabel* textView = nullptr;

    QString shownImageName() const { return image_; }

protected:
    void paintEvent(QPaintEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;

private:
    QString image_;
};

class SwitchButton : public QAbstractButton {
    Q_OBJECT
public:
    explicit SwitchButton(QWidget* parent = nullptr);

    void setBtnState(bool state);

    bool check_state = false;

    QString shownImageName() const;

protected:
    void paintEvent(QPaintEvent* event) override;
};
