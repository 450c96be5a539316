#pragma once
// The caps of the keys whose assignment differs from their own function:
// each shows its printed legend small and, below it, what the key does now
// ("Mute", "Copy", "M: Greeting"), in the picture's second colour. Stacked
// over the keyboard picture and under the key markers; pointer events go
// through it to the keyboard view.

#include <QColor>
#include <QWidget>

#include <vector>

class KeyboardView;

class KeyCapsView : public QWidget {
    Q_OBJECT
public:
    explicit KeyCapsView(KeyboardView* keyboard);

    // One text per key index; an empty text leaves that key's cap as the
    // picture draws it.
    void setTexts(std::vector<QString> texts);
    const std::vector<QString>& texts() const { return texts_; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    KeyboardView* keyboard_;
    std::vector<QString> texts_;
};
