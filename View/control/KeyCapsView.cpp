#include "View/control/KeyCapsView.h"

#include "View/control/KeyboardView.h"
#include "View/control/KeyboardViewPicture.h"
#include "View/control/NamedImageView.h"
#include "View/control/Theme.h"

#include <QPainter>

KeyCapsView::KeyCapsView(KeyboardView* keyboard) : QWidget(keyboard), keyboard_(keyboard)
{
    setObjectName(QStringLiteral("keyCapsView"));
    setAttribute(Qt::WA_TransparentForMouseEvents);
}

void KeyCapsView::setTexts(std::vector<QString> texts)
{
    if (texts == texts_)
        return;
    texts_ = std::move(texts);
    update();
}

void KeyCapsView::paintEvent(QPaintEvent*)
{
    if (!keyboard_->kbImageView || texts_.empty())
        return;
    const QString picture = keyboard_->kbImageView->imageName();
    // One key's height sets every proportion of the picture.
    const qreal unit = keyboard_->keyGeometry(0).height();
    const QColor functionColour = Theme::assignedKeyText(KeyboardViewPicture::hasLightCaps(picture));
    QPainter painter(this);
    const std::size_t keys = std::min(texts_.size(), keyboard_->kbKeyArraySelect.size());
    for (std::size_t i = 0; i < keys; ++i)
        if (!texts_[i].isEmpty())
            KeyboardViewPicture::paintAssignedCap(painter, picture, keyboard_->kbKeyArraySelect[i].keyname,
                                                  keyboard_->keyGeometry(int(i)), unit, texts_[i], functionColour);
}
