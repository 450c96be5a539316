#pragma once
// A button drawn as a named image stretched to its size, with a centred
// title in a colour of its own: the tabs of the light page.

#include <QAbstractButton>
#include <QColor>
#include <QString>

class ImageTitleButton : public QAbstractButton {
    Q_OBJECT
public:
    explicit ImageTitleButton(QWidget* parent = nullptr);

    void setImageName(const QString& name);
    QString imageName() const { return image_; }
    void setTitleTextColor(const QColor& color);
    QColor titleTextColor() const { return titleColor_; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QString image_;
    QColor titleColor_ = Qt::black;
};
