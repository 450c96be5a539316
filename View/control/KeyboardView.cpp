#include "View/control/KeyboardView.h"

#include "View/control/FlippedRect.h"
#include "View/control/KeyCapsView.h"
#include "View/control/KeyView.h"
#include "View/control/NamedImageView.h"
#include "View/control/SelectKeyView.h"

#include <QPainter>

KeyboardView::KeyboardView(QWidget* parent) : QWidget(parent)
{
    setMouseTracking(true);  // moves without a button drive the hover
}

void KeyboardView::setFrameOrigin(int x, int y)
{
    const int parentHeight = parentWidget() ? parentWidget()->height() : height();
    move(flippedRect(parentHeight, x, y, width(), height()).topLeft());
}

void KeyboardView::setBoundsSize(const QSizeF& size)
{
    bounds_ = size;
    placeChildren();
}

void KeyboardView::removeKeyboard()
{
    stopSlide();
    // The indices name keys of the old model, which may have more keys.
    if (hoverKeyItem != -1)
        postToolTip(-1);
    hoverKeyItem = -1;
    selectKeyItem = -1;
    markedKeyItem_ = -1;
    frameSelect = {};
    for (auto* keys : {&kbKeyArrayHover, &kbKeyArraySelect})
        for (KeyData& key : *keys) {
            delete key.view;  // the view is ours; the key forgets it
            key.view = nullptr;
        }
    kbKeyArrayHover.clear();
    kbKeyArraySelect.clear();
    for (NamedImageView** picture : {&kbImageView, &kbNewView, &kbOldView}) {
        delete *picture;
        *picture = nullptr;
    }
    delete frameSelectView;
    frameSelectView = nullptr;
    delete keyCapsView;
    keyCapsView = nullptr;
    keyGeometry_.clear();
    isEvent = false;
}

void KeyboardView::initKeyboard(int type, const QString& kb_image, std::vector<KeyData> keyArray)
{
    removeKeyboard();
    kbType = type;
    kbKeyArrayHover = keyArray;
    kbKeyArraySelect = std::move(keyArray);
    isEvent = true;

    for (KeyData& key : kbKeyArrayHover)
        key.view = new KeyView(this);
    kbImageView = new NamedImageView(this);
    kbImageView->setObjectName(QStringLiteral("kbImageView"));
    kbImageView->setImageName(kb_image);
    // The slide's pictures join the view only while a slide runs.
    kbNewView = new NamedImageView(this);
    kbNewView->setImageName(kb_image);
    kbNewView->hide();
    kbOldView = new NamedImageView(this);
    kbOldView->setImageName(kb_image);
    kbOldView->hide();
    keyCapsView = new KeyCapsView(this);
    for (KeyData& key : kbKeyArraySelect) {
        auto* marker = new SelectKeyView(this);
        key.view = marker;
        // A lit key's cap takes its colour; black leaves the cap unlit.
        connect(keyView(key.index), &KeyView::keyColorChanged, marker, [marker](const QColor& color) {
            marker->setCapColour(color == QColor(Qt::black) ? QColor() : color);
        });
    }
    frameSelectView = new FrameSelectView(this);
    frameSelectView->setGeometry(0, 0, 0, 0);

    // Children stack in creation order: key colours, picture, caps,
    // markers, band.
    placeChildren();
    for (KeyData& key : kbKeyArrayHover)
        key.view->show();
    kbImageView->show();
    keyCapsView->setVisible(keyCapTextsShown_);
    for (KeyData& key : kbKeyArraySelect)
        key.view->show();
    frameSelectView->show();
}

void KeyboardView::placeChildren()
{
    keyGeometry_.clear();
    if (bounds_.isEmpty())
        return;
    for (const KeyData& key : kbKeyArraySelect)
        keyGeometry_.push_back(flippedRect(bounds_, QSizeF(size()), key.rect));
    for (auto* keys : {&kbKeyArrayHover, &kbKeyArraySelect})
        for (const KeyData& key : *keys)
            if (key.view)
                key.view->setGeometry(keyGeometry_[size_t(key.index)].toAlignedRect());
    for (QWidget* picture : std::initializer_list<QWidget*>{kbImageView, kbNewView, kbOldView, keyCapsView})
        if (picture)
            picture->setGeometry(rect());
    placeCapFills();
}

// The caps as the picture paints them at this size, each handed to its key.
void KeyboardView::placeCapFills()
{
    std::vector<std::pair<QString, QRectF>> keys;
    for (const KeyData& key : kbKeyArraySelect)
        keys.emplace_back(key.keyname, keyGeometry_[size_t(key.index)]);
    const auto fills = KeyboardViewPicture::capFills(keys);
    for (size_t i = 0; i < fills.size(); ++i) {
        SelectKeyView* marker = selectKeyView(int(i));
        if (!marker)
            continue;
        // The marker sits on the whole pixels of its key.
        const QPointF shift = keyGeometry_[i].topLeft() - QPointF(marker->geometry().topLeft());
        KeyboardViewPicture::CapFill cap = fills[i];
        cap.skirt.translate(shift);
        cap.face.translate(shift);
        cap.legend.translate(shift);
        marker->setCapShape(cap);
    }
}

void KeyboardView::setKeyCapTexts(std::vector<QString> texts)
{
    if (keyCapsView)
        keyCapsView->setTexts(std::move(texts));
}

std::vector<QString> KeyboardView::keyCapTexts() const
{
    return keyCapsView ? keyCapsView->texts() : std::vector<QString>{};
}

void KeyboardView::setKeyCapTextsShown(bool shown)
{
    keyCapTextsShown_ = shown;
    if (keyCapsView)
        keyCapsView->setVisible(shown && kbImageView && kbImageView->isVisibleTo(this));
}

void KeyboardView::resetKeyMacro()
{
    for (KeyData& key : kbKeyArraySelect)
        if (const auto record = keyNameRecord(key.keyname))
            key.keyMacro = record->full_name;
}

void KeyboardView::setKeyBackgroundColor(const QColor& color)
{
    for (const KeyData& key : kbKeyArrayHover)
        if (auto* view = qobject_cast<KeyView*>(key.view))
            view->setBackgroundColor(color);
}

std::optional<int> KeyboardView::hitTest(const QPointF& point) const
{
    for (size_t i = 0; i < keyGeometry_.size(); ++i)
        if (keyGeometry_[i].contains(point))
            return int(i);
    return std::nullopt;
}

QRectF KeyboardView::keyGeometry(int index) const
{
    if (index < 0 || size_t(index) >= keyGeometry_.size())
        return {};
    return keyGeometry_[size_t(index)];
}

KeyView* KeyboardView::keyView(int index) const
{
    if (index < 0 || size_t(index) >= kbKeyArrayHover.size())
        return nullptr;
    return qobject_cast<KeyView*>(kbKeyArrayHover[size_t(index)].view);
}

SelectKeyView* KeyboardView::selectKeyView(int index) const
{
    if (index < 0 || size_t(index) >= kbKeyArraySelect.size())
        return nullptr;
    return qobject_cast<SelectKeyView*>(kbKeyArraySelect[size_t(index)].view);
}

void KeyboardView::resizeEvent(QResizeEvent*)
{
    placeChildren();
}

void KeyboardView::paintEvent(QPaintEvent*)
{
    if (bounds_.isEmpty() || frameSelect.width() <= 10 || frameSelect.height() <= 10)
        return;
    QPainter painter(this);
    painter.setPen(bandPen(Qt::yellow, 3));
    painter.drawRect(flippedRect(bounds_, QSizeF(size()), frameSelect));
}
