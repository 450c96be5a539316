#pragma once
// The plain views a KeyboardView stacks: the coloured square under each key
// (KeyView) and the rubber band (FrameSelectView); the pictures are
// NamedImageViews. None of them takes pointer events; the keyboard view
// handles those for all keys.

#include <QColor>
#include <QPen>
#include <QPixmap>
#include <QWidget>

// The colour under one key, seen through the key's windows in the picture.
class KeyView : public QWidget {
    Q_OBJECT
public:
    explicit KeyView(QWidget* parent = nullptr);

    // Shown while the key has no colour of its own.
    QColor backgroundColor = Qt::white;
    // Black means "no colour of its own".
    QColor keyColor = Qt::black;

    void setKeyColor(const QColor& color);
    void setBackgroundColor(const QColor& color);
    QColor shownColor() const;

signals:
    // The key's own colour changed; black means it has none.
    void keyColorChanged(const QColor& color);

protected:
    void paintEvent(QPaintEvent* event) override;
};


// The rubber band's line: dashes of 3 units with gaps of 1, whatever its
// width (Qt counts dash lengths in line widths).
QPen bandPen(const QColor& color, qreal width);

// The rubber band: a dashed frame once it is larger than a few units.
class FrameSelectView : public QWidget {
    Q_OBJECT
public:
    explicit FrameSelectView(QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;
};
