#pragma once
// TableItemView: a list row showing one centred text, such as a macro's
// name in the key menu's macro list. Under the pointer the row shows
// "view_row_hover" behind white text. Presses go through to the list, whose
// selection is what the row stands for.

#include <QLabel>
#include <QString>
#include <QWidget>

class TableItemView : public QWidget {
    Q_OBJECT
public:
    explicit TableItemView(QWidget* parent = nullptr);

    // Once only: a recycled row keeps its text view.
    void initView();

    QLabel* textView = nullptr;
    bool initFinish = false;

    QString shownImageName() const { return image_; }

protected:
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    QString image_;
};
