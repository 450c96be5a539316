#pragma once
// Image buttons: a named image that swaps to its hover image while the
// pointer is over the button.

#include <QAbstractButton>
#include <QRect>
#include <QString>

class NamedImageView;
class QLabel;

class ImageButton : public QAbstractButton {
    Q_OBJECT
public:
    explicit ImageButton(QWidget* parent = nullptr);

    void initControl(const QString& img_normal, const QString& img_hover);

    QString cur_normal_name;
    QString cur_hover_name;
    bool isTrackingArea = false;

    // The image on show now, for tests and tool tips.
    QString shownImageName() const { return hovered_ ? cur_hover_name : cur_normal_name; }

protected:
    // A disabled button is drawn faded.
    void paintEvent(QPaintEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;

private:
    bool hovered_ = false;
};

// An image button with an icon and a left-aligned title over its background.
// Under the pointer the background and the icon swap to their hover images
// and the title turns white. Rectangles are given y-up within the button.
class IconButton : public ImageButton {
    Q_OBJECT
    // The title is the button's text: the language switch sets it as it
    // sets every control's.
    Q_PROPERTY(QString text READ text WRITE setTitle)
public:
    using ImageButton::ImageButton;

    // The icon view is made on first use; later calls keep its frame.
    void setIcon(const QString& icon_normal, const QString& icon_hover, const QRect& icon_rt);
    // The text field is made on first use; later calls keep its frame.
    void setText(const QRect& text_rt, const QString& title);
    // A new title in the text field's frame.
    void setTitle(const QString& title) { setText(text_rect, title); }

    QString icon_normal_name;
    QString icon_hover_name;
    QString btn_text;
    QRect icon_rect;
    QRect text_rect;
    NamedImageView* iconView = nullptr;
    QLabel* textView = nullptr;

protected:
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void changeEvent(QEvent* event) override;
};
