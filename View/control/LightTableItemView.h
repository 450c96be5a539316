#pragma once
// One row of the light list: the effect's icon and name. The icon shows the
// selected image while the row's effect is the one in force, else the hover
// image under the pointer and the normal image otherwise; the name turns
// hover blue under the pointer whatever the selection.
//
// The row ignores mouse presses so that they reach the list, whose selection
// is what changes the effect.

#include "View/control/NamedImageView.h"

#include <QLabel>
#include <QString>
#include <QWidget>

class LightTableItemView : public QWidget {
    Q_OBJECT
public:
    static constexpr int kRowHeight = 30;

    explicit LightTableItemView(QWidget* parent = nullptr);

    // Once only: a recycled row keeps the icons and text of its first use.
    void initView(const QString& icon_n, const QString& icon_h, const QString& icon_s, const QString& text);
    void setSelect(bool bCheck);

    QString normal_icon;
    QString hover_icon;
    QString select_icon;
    NamedImageView* iconView = nullptr;
    QLabel* textView = nullptr;
    bool isSelect = false;
    bool initFinish = false;

    // The image the icon shows now.
    QString shownIconName() const { return iconView ? iconView->imageName() : QString(); }

protected:
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void showIcon(const QString& name);
};
