#pragma once
// The key tool tip: a dark floating window over the keyboard picture with
// the key's own name in blue and what the key does, in white, below it.

#include "View/control/FrameLessView.h"

class QLabel;

class KBToolTipsViewController : public FramelessWindow {
    Q_OBJECT
public:
    static constexpr int kWidth = 164;
    static constexpr int kHeight = 56;

    explicit KBToolTipsViewController(QWidget* parent = nullptr);

    QLabel* label_keydesc = nullptr;
    QLabel* label_keymacro = nullptr;
};
