#pragma once
// An image view that shows a named image at its own size, rendered at the
// screen's scale, so it stays sharp on any display. Presses go through it.

#include <QPixmap>
#include <QString>
#include <QWidget>

class NamedImageView : public QWidget {
    Q_OBJECT
public:
    explicit NamedImageView(QWidget* parent = nullptr);

    void setImageName(const QString& name);
    QString imageName() const { return name_; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QString name_;
    QPixmap cache_;
};
