// The per-key colours of the keyboard picture, as user light modes paint and
// show them.
#include "View/control/KeyboardView.h"

#include "View/control/KeyView.h"
#include "View/control/SelectKeyView.h"

void KeyboardView::setCheckItemColor(const QColor& color)
{
    for (int index = 0; index < int(kbKeyArraySelect.size()); ++index) {
        SelectKeyView* marker = selectKeyView(index);
        KeyView* key = keyView(index);
        if (marker && key && marker->keyCheck)
            key->setKeyColor(color);
    }
    // An index from a larger model can outlive a rebuild: keyView() answers
    // nothing for it.
    if (KeyView* last = selectKeyItem == -1 || !lastClickPaints_ ? nullptr : keyView(selectKeyItem))
        last->setKeyColor(color);
}

void KeyboardView::resetKeyColor()
{
    for (int index = 0; index < int(kbKeyArrayHover.size()); ++index) {
        if (KeyView* key = keyView(index))
            key->setKeyColor(Qt::black);
        if (SelectKeyView* marker = selectKeyView(index))
            marker->setKeyCheck(false);
    }
}
