#include "View/CustomMenu/KeySubMenuKeyFuncViewController.h"

#include "Common/InputKeyCodes.h"
#include "Common/NotificationCenter.h"
#include "Keylogger/LocalEventMonitor.h"
#include "Language/AppText.h"
#include "Language/Language.h"
#include "View/KeyboardLayout/KeyUsageNames.h"
#include "View/control/FrameLessView.h"
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

QPushButton* makeButton(QWidget* parent, const char* objectName, bool primary)
{
    auto* button = new QPushButton(parent);
    button->setObjectName(QString::fromLatin1(objectName));
    // The dialog captures every key: no button may take Space or Enter.
    button->setFocusPolicy(Qt::NoFocus);
    const QString blue = Theme::hoverBlue().name();
    button->setStyleSheet(primary ? QStringLiteral("QPushButton { background: %1; color: white; border: none;"
                                                   " border-radius: 6px; }"
                                                   "QPushButton:disabled { background: %2; }")
                                        .arg(blue, Theme::panelBorder().name())
                                  : QStringLiteral("QPushButton { background: white; color: #0d0d0d;"
                                                   " border: 1px solid %1; border-radius: 6px; }")
                                        .arg(Theme::panelBorder().name()));
    return button;
}

}  // namespace

KeySubMenuKeyFuncViewController::KeySubMenuKeyFuncViewController(QWidget* parent)
    : QWidget(parent, FloatingPanel::windowFlags())
{
    setObjectName(QStringLiteral("kbKeyFuncSubMenu"));
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

    label_note = new QLabel(this);
    label_note->setObjectName(QStringLiteral("label_note"));
    label_note->setGeometry(kMargin, 84, kWidth - 2 * kMargin, 36);
    label_note->setWordWrap(true);
    label_note->setAlignment(Qt::AlignHCenter | Qt::AlignTop);
    Theme::setTextColor(label_note, Theme::warningText());

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
    // Every opening starts empty: a capture made for another key is no
    // answer for this one.
    captured = {};
    heldModifiers_ = 0;
    label_note->clear();
    showCaptured();
    startLocalEventMoniter();
}

void KeySubMenuKeyFuncViewController::startLocalEventMoniter()
{
    if (eventHandler)
        return;
    eventHandler = LocalEventMonitor::addLocalMonitorForEvents(
        LocalEventMonitor::KeyDownMask | LocalEventMonitor::KeyUpMask | LocalEventMonitor::FlagsChangedMask,
        [this](QKeyEvent* event) { fillBindInput(*event); });
}

void KeySubMenuKeyFuncViewController::viewDidDisappear()
{
    if (eventHandler)
        LocalEventMonitor::removeMonitor(eventHandler);
    eventHandler = 0;
}

void KeySubMenuKeyFuncViewController::fillBindInput(const QKeyEvent& event)
{
    const bool down = event.type() == QEvent::KeyPress;
    const int usage = hidUsageFromNativeScanCode(event.nativeScanCode()).value_or(0);
    if (KeyCombination::isModifier(usage)) {
        const uint8_t bit = KeyCombination::modifierBit(usage);
        heldModifiers_ = down ? uint8_t(heldModifiers_ | bit) : uint8_t(heldModifiers_ & ~bit);
        // Modifiers alone stand until a key joins them.
        if (down && !event.isAutoRepeat())
            captured = {heldModifiers_, 0};
    } else if (down) {
        if (usage == 0 || !KeyUsageNames::usageName(usage)) {
            label_note->setText(appText(AppText::KeyCannotBeSet));
            return;
        }
        captured = {heldModifiers_, usage};
    } else {
        return;
    }
    label_note->clear();
    showCaptured();
}

void KeySubMenuKeyFuncViewController::showCaptured()
{
    currentModifyKeysStr = KeyUsageNames::combinationText(captured);
    edit_keyfunc->setText(currentModifyKeysStr);
    btn_okfunc->setEnabled(!captured.empty());
}

void KeySubMenuKeyFuncViewController::action_onkeyfunc()
{
    const auto row = KeyCombination::toRow(captured);
    if (!row)
        return;
    NotificationCenter::defaultCenter().post(QStringLiteral("CustomKeyFuncMsg"),
                                             QVariantMap{{QStringLiteral("keyvalue"), row->macroValue},
                                                         {QStringLiteral("modifiers"), row->macro2Value},
                                                         {QStringLiteral("keyDesc"), currentModifyKeysStr}});
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
    QPainter painter(this);
    FloatingPanel::paint(painter, rect(), Theme::panel());
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
