#pragma once
// An image view that shows a named image, rendered at the screen's scale
// each time it paints, so it stays sharp on any display.

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
};
