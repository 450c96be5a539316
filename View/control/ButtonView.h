#pragma once
// Image buttons: a named image that swaps to its hover image while the
// pointer is over the button.

#include <QAbstractButton>
#include <QString>

class ImageButton : public QAbstractButton {
    Q_OBJECT
public:
    explicit ImageButton(QWidget* parent = nullptr);

    void initControl(const QString& img_normal, const QString& img_hover);

    QString cur_normal_name;
    QString cur_hover_name;
    bool isTrackingArea = false;

    // The image on show now, for tests and tool tips.
    QString shownImageName() const { return hovered_ ? cur_hover_name : cur_normal_name; }

protected:
    void paintEvent(QPaintEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;

private:
    bool hovered_ = false;
};
