#include "View/control/FuncButton.h"

#include "View/control/FlippedRect.h"
#include "View/control/NamedImage.h"
#include "View/control/Theme.h"

#include <QPainter>

void FuncButton::initControl(const QString& img_normal, const QString& img_hover, const QString& title)
{
    ImageButton::initControl(img_normal, img_hover);
    image_ = isSelect ? cur_hover_name : cur_normal_name;
    if (!textView) {
        textView = new QLabel(title, this);
        textView->setGeometry(flippedRect(height(), 2, 100, 150, 30));
        textView->setAlignment(Qt::AlignCenter);
        textView->setAttribute(Qt::WA_TransparentForMouseEvents);
        QFont font = textView->font();
        font.setPixelSize(15);
        font.setWeight(QFont::DemiBold);
        textView->setFont(font);
        Theme::setTextColor(textView, Theme::normalText());
    }
}

void FuncButton::setTitle(const QString& title)
{
    if (textView)
        textView->setText(title);
    setAccessibleName(title);
}

void FuncButton::setSelect(bool select)
{
    isSelect = select;
    image_ = isSelect || underMouse() ? cur_hover_name : cur_normal_name;
    update();
}

void FuncButton::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    NamedImage::paintFill(painter, *this, image_);
}

void FuncButton::enterEvent(QEnterEvent* event)
{
    image_ = cur_hover_name;
    ImageButton::enterEvent(event);
}

void FuncButton::leaveEvent(QEvent* event)
{
    image_ = isSelect ? cur_hover_name : cur_normal_name;
    ImageButton::leaveEvent(event);
}

SwitchButton::SwitchButton(QWidget* parent) : QAbstractButton(parent)
{
    setCheckable(true);
    setCursor(Qt::PointingHandCursor);
    // A click, setChecked or setBtnState: the shown state follows each.
    connect(this, &QAbstractButton::toggled, this, [this](bool on) {
        check_state = on;
        update();
    });
}

void SwitchButton::setBtnState(bool state)
{
    check_state = state;
    setChecked(state);
    update();
}

QString SwitchButton::shownImageName() const
{
    return check_state ? QStringLiteral("switch_button_on") : QStringLiteral("switch_button_off");
}

void SwitchButton::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    NamedImage::paintFill(painter, *this, shownImageName());
}
