#pragma once
// One row of the user light list: an icon, the mode's name, and buttons to
// import, export and delete. The row posts "UserLightTableViewButton" with
// "type" (1 import, 2 export, 3 delete, 5 renamed) and "index" (its row);
// a rename carries the new name in "text", once editing ends. The name can
// be edited only while the row is down (selected in the list); elsewhere a
// long name ends in an ellipsis, with the whole name as the tool tip. A
// right-click on the name posts "UserLightTableViewMenu" with the row, as
// one beside it does.

#include <QLineEdit>
#include <QWidget>

class ImageButton;
class NamedImageView;

class UserLightTableItemView : public QWidget {
    Q_OBJECT
public:
    static constexpr int kRowHeight = 40;
    static constexpr int kRowWidth = 208;

    explicit UserLightTableItemView(QWidget* parent = nullptr);

    // Stores the row number every time; makes the views only once.
    void initView(int index);
    void setDown(bool bDown);
    // The mode's whole name; the field shows it whole while it can be
    // edited, else as much as fits.
    void setName(const QString& name);
    QString name() const { return name_; }
    void setButtonTips(const QString& importTip, const QString& exportTip, const QString& deleteTip);

    NamedImageView* iconView = nullptr;
    QLineEdit* textView = nullptr;  // tag 556
    ImageButton* importBtnView = nullptr;
    ImageButton* exportBtnView = nullptr;
    ImageButton* delBtnView = nullptr;
    bool isDown = false;
    int tableViewIndex = 0;
    bool initFinish = false;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    ImageButton* makeButton(int x, const QString& stem, int type);
    void showButtonImages(const QString& suffix);
    void post(int type, const QString& text = {});
    void showName();

    QString name_;
};
