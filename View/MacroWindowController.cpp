#include "View/MacroWindowController.h"

#include "Language/AppText.h"
#include "Language/Language.h"
#include "View/MacroController.h"
#include "View/control/FrameLessView.h"
#include "View/control/Theme.h"

#include <QApplication>
#include <QCloseEvent>
#include <QMessageBox>
#include <QMouseEvent>
#include <QPushButton>
#include <QVBoxLayout>

MacroWindowController::MacroWindowController(QWidget* parent) : QWidget(parent, Qt::Dialog)
{
    setObjectName(QStringLiteral("MacroWindowController"));
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowModality(Qt::WindowModal);
    setAttribute(Qt::WA_StyledBackground);
    setStyleSheet(QStringLiteral("#MacroWindowController { background: #ffffff; }"));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    controller_ = new MaroController(this);
    layout->addWidget(controller_);
    controller_->installEventFilter(this);
    windowDidLoad();
}

void MacroWindowController::windowDidLoad()
{
    setWindowTitle(languageText(550));  // "Macro"
    setFixedSize(MaroController::kWidth, MaroController::kHeight);
    if (QWidget* owner = parentWidget()) {
        const QRect area = owner->window()->geometry();
        move(area.center() - rect().center());
    }
}

bool MacroWindowController::eventFilter(QObject* watched, QEvent* event)
{
    // The background moves the window; the content still sees every press
    // and every click, since a press on the window is also a recorded mouse
    // step: only a press that moves hands the pointer to the window manager.
    if (watched == controller_) {
        auto* mouse = static_cast<QMouseEvent*>(event);
        switch (event->type()) {
        case QEvent::MouseButtonPress:
            dragging_ = mouse->button() == Qt::LeftButton;
            pressPoint_ = mouse->globalPosition().toPoint();
            dragOffset_ = pressPoint_ - frameGeometry().topLeft();
            break;
        case QEvent::MouseMove:
            if (!dragging_ || !(mouse->buttons() & Qt::LeftButton))
                break;
            if ((mouse->globalPosition().toPoint() - pressPoint_).manhattanLength() < QApplication::startDragDistance())
                break;
            if (startSystemMove(this))
                dragging_ = false;
            else
                move(mouse->globalPosition().toPoint() - dragOffset_);
            break;
        case QEvent::MouseButtonRelease: dragging_ = false; break;
        default: break;
        }
    }
    return QWidget::eventFilter(watched, event);
}

void MacroWindowController::closeEvent(QCloseEvent* event)
{
    if (discardConfirmed_ || !controller_->hasUnsavedSteps()) {
        QWidget::closeEvent(event);
        return;
    }
    event->ignore();
    auto* alert = new QMessageBox(this);
    alert->setObjectName(QStringLiteral("unsavedMacroAlert"));
    alert->setAttribute(Qt::WA_DeleteOnClose);
    alert->setWindowModality(Qt::WindowModal);
    alert->setIcon(QMessageBox::Warning);
    alert->setText(appText(AppText::MacroUnsavedQuestion));
    alert->setInformativeText(appText(AppText::MacroUnsavedLoses).arg(controller_->RecordListDatas().size()));
    QPushButton* keep = alert->addButton(appText(AppText::MacroUnsavedKeep), QMessageBox::ActionRole);
    QPushButton* discard = alert->addButton(appText(AppText::MacroUnsavedDiscard), QMessageBox::ActionRole);
    keep->setObjectName(QStringLiteral("unsavedMacroKeep"));
    discard->setObjectName(QStringLiteral("unsavedMacroDiscard"));
    alert->setDefaultButton(keep);
    alert->setEscapeButton(keep);
    alert->setStyleSheet(QStringLiteral("QPushButton#unsavedMacroDiscard { background: %1; color: white; border: none;"
                                        " border-radius: 4px; padding: 5px 14px; }")
                             .arg(Theme::destructive().name()));
    connect(discard, &QAbstractButton::clicked, this, [this] {
        discardConfirmed_ = true;
        close();
    });
    alert->open();
}
