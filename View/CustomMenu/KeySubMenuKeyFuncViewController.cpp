#include "View/CustomMenu/KeySubMenuKeyFuncViewController.h"

#include "Common/Globals.h"
#include "Common/NotificationCenter.h"
#include "Keylogger/LocalEventMonitor.h"
#include "Language/AppText.h"
#include "Language/Language.h"
#include "View/KeyboardLayout/KeyCodeMaps.h"
#include "View/KeyboardLayout/KeyVocabulary.h"
#include "View/control/Theme.h"

#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QPushButton>
#include <QVariantMap>

QPointer<KeySubMenuKeyFuncViewController> kbKeyFuncSubMenu;

namespace {

constexpr int kMargin = 16;
constexpr int kButtonWidth = 88;
constexpr int kButtonHeight = 30;

// The name the dialog shows for a key code: the active model's first, then
// the vocabulary's for keys the model lacks.
std::optional<QString> capturedKeyName(int keyCode)
{
    if (const auto record = keyCodeRecord(keyCode))
        return record->full_name;
    if (const KeyVocabulary::Word* word = KeyVocabulary::wordOfCode(keyCode))
        return QString::fromLatin1(word->full_name);
    return std::nullopt;
}

QString refusalNote()
{
    return appText(AppText::KeyCannotBeSet);
}

QPushButton* makeButton(QWidget* parent, const char* objectName, bool primary)
{
    auto* button = new QPushButton(parent);
    button->setObjectName(QString::fromLatin1(objectName));
    // The dialog captures every key: no button may take Space or Enter.
    button->setFocusPolicy(Qt::NoFocus);
    const QString blue = Theme::hoverBlue().name();
    button->setStyleSheet(primary ? QStringLiteral("QPushButton { background: %1; color: white; border: none;"
                                                   " border-radius: 6px; }").arg(blue)
                                  : QStringLiteral("QPushButton { background: white; color: #0d0d0d;"
                                                   " border: 1px solid %1; border-radius: 6px; }")
                                        .arg(Theme::panelBorder().name()));
    return button;
}

}  // namespace

KeySubMenuKeyFuncViewController::KeySubMenuKeyFuncViewController(QWidget* parent)
    : QWidget(parent, Qt::Tool | Qt::FramelessWindowHint)
{
    setObjectName(QStringLiteral("kbKeyFuncSubMenu"));
    setAttribute(Qt::WA_TranslucentBackground);
    setFocusPolicy(Qt::StrongFocus);
    setFixedSize(kWidth, kHeight);

    label_keyfunc = new QLabel(this);
    label_keyfunc->setObjectName(QStringLiteral("label_keyfunc"));
    label_keyfunc->setGeometry(kMargin, 14, kWidth - 2 * kMargin, 24);
    Theme::setTextColor(label_keyfunc, Theme::normalText());

    edit_keyfunc = new QLineEdit(this);
    edit_keyfunc->setObjectName(QStringLiteral("edit_keyfunc"));
    edit_keyfunc->setGeometry(kMargin, 46, kWidth - 2 * kMargin, 34);
    edit_keyfunc->setReadOnly(true);
    edit_keyfunc->setFocusPolicy(Qt::NoFocus);
    edit_keyfunc->setAlignment(Qt::AlignCenter);
    QFont keyFont = edit_keyfunc->font();
    keyFont.setPixelSize(15);
    keyFont.setWeight(QFont::DemiBold);
    edit_keyfunc->setFont(keyFont);

    btn_okfunc = makeButton(this, "btn_okfunc", true);
    btn_okfunc->setGeometry(kWidth - kMargin - kButtonWidth, kHeight - kMargin - kButtonHeight, kButtonWidth,
                            kButtonHeight);
    btn_cancelfunc = makeButton(this, "btn_cancelfunc", false);
    btn_cancelfunc->setGeometry(btn_okfunc->x() - 10 - kButtonWidth, btn_okfunc->y(), kButtonWidth, kButtonHeight);
    connect(btn_okfunc, &QPushButton::clicked, this, [this] { action_onkeyfunc(); });
    connect(btn_cancelfunc, &QPushButton::clicked, this, [this] { action_cancelkeyfunc(); });
}

KeySubMenuKeyFuncViewController::~KeySubMenuKeyFuncViewController() { viewDidDisappear(); }

void KeySubMenuKeyFuncViewController::viewDidAppear()
{
    label_keyfunc->setText(languageText(90));
    btn_cancelfunc->setText(languageText(91));
    btn_okfunc->setText(languageText(92));
    startLocalEventMoniter();
}

void KeySubMenuKeyFuncViewController::startLocalEventMoniter()
{
    if (eventHandler)
        return;
    eventHandler = LocalEventMonitor::addLocalMonitorForEvents(
        LocalEventMonitor::KeyDownMask | LocalEventMonitor::FlagsChangedMask, [this](QKeyEvent*) {
            if (lastKeyOperate == QLatin1String("down"))
                fillBindInput();
        });
}

void KeySubMenuKeyFuncViewController::viewDidDisappear()
{
    // The field and the captured key stay for the next showing.
    if (eventHandler)
        LocalEventMonitor::removeMonitor(eventHandler);
    eventHandler = 0;
}

void KeySubMenuKeyFuncViewController::fillBindInput()
{
    const int code = GLOBAL_LAST_PRESS_KEY_SCANCODE;
    if (code == 0)
        return;
    const std::optional<QString> name = capturedKeyName(code);
    if (!name) {
        // Nothing captured: OK now means the key's own function, as it does
        // before any key is pressed.
        currentKeyValue = 0;
        currentModifyKeysStr.clear();
        edit_keyfunc->setText(refusalNote());
        return;
    }
    currentKeyValue = code;
    currentModifyKeysStr = *name;
    edit_keyfunc->setText(*name);
}

void KeySubMenuKeyFuncViewController::action_onkeyfunc()
{
    NotificationCenter::defaultCenter().post(
        QStringLiteral("CustomKeyFuncMsg"),
        QVariantMap{{QStringLiteral("keyvalue"), currentKeyValue}, {QStringLiteral("keyDesc"), currentModifyKeysStr}});
}

void KeySubMenuKeyFuncViewController::action_cancelkeyfunc()
{
    NotificationCenter::defaultCenter().post(
        QStringLiteral("CustomKeyFuncMsg"),
        QVariantMap{{QStringLiteral("keyvalue"), 0}, {QStringLiteral("keyDesc"), QString()}});
}

void KeySubMenuKeyFuncViewController::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    viewDidAppear();
}

void KeySubMenuKeyFuncViewController::hideEvent(QHideEvent* event)
{
    viewDidDisappear();
    QWidget::hideEvent(event);
}

void KeySubMenuKeyFuncViewController::paintEvent(QPaintEvent*)
{
    // White at 0.8, as the other floating menus, with an edge that holds
    // against the keys behind it.
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QColor(0xc4, 0xc9, 0xd1));
    painter.setBrush(QColor::fromRgbF(1, 1, 1, 0.8f));
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), 8, 8);
}

KeySubMenuKeyFuncViewController* ShowKBKeyFuncSubMenu(QWidget* owner)
{
    if (!kbKeyFuncSubMenu)
        kbKeyFuncSubMenu = new KeySubMenuKeyFuncViewController(owner);
    kbKeyFuncSubMenu->show();
    kbKeyFuncSubMenu->raise();
    kbKeyFuncSubMenu->activateWindow();
    return kbKeyFuncSubMenu;
}
