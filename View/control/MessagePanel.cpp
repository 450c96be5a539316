#include "View/control/MessagePanel.h"

#include "Language/AppText.h"
#include "View/control/Theme.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QScrollBar>
#include <QToolButton>
#include <QVBoxLayout>

#include <algorithm>

namespace {

QString panelStyle()
{
    return QStringLiteral("QScrollArea#%1 { background: %2; border: 1px solid %3; border-radius: 6px; }")
        .arg(QStringLiteral("label_problem"), Theme::messageBackground().name(), Theme::messageBorder().name());
}

}  // namespace

MessagePanel::MessagePanel(QWidget* parent) : QScrollArea(parent)
{
    // The name the window's messages always had, for the tests and styles that find them.
    setObjectName(QStringLiteral("label_problem"));
    setStyleSheet(panelStyle());
    setWidgetResizable(true);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    auto* content = new QWidget(this);
    content->setObjectName(QStringLiteral("message_rows"));
    content->setAutoFillBackground(false);
    rows_ = new QVBoxLayout(content);
    rows_->setContentsMargins(10, 4, 4, 4);
    rows_->setSpacing(2);
    rows_->addStretch(1);
    setWidget(content);
    viewport()->setAutoFillBackground(false);
    hide();
}

QWidget* MessagePanel::makeRow(const QString& topic, QLabel*& label)
{
    auto* row = new QWidget(widget());
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    label = new QLabel(row);
    label->setObjectName(QStringLiteral("message_text"));
    label->setWordWrap(true);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    Theme::setTextColor(label, Theme::messageText());
    auto* close = new QToolButton(row);
    close->setObjectName(QStringLiteral("message_close"));
    close->setText(QStringLiteral("\u00d7"));
    close->setAutoRaise(true);
    close->setToolTip(appText(AppText::CloseMessage));
    connect(close, &QToolButton::clicked, this, [this, topic] { remove(topic); });
    layout->addWidget(label, 1);
    layout->addWidget(close, 0, Qt::AlignTop);
    return row;
}

bool MessagePanel::add(const QString& topic, std::function<QString()> text)
{
    if (has(topic))
        return false;
    Message message{topic, std::move(text)};
    message.row = makeRow(topic, message.label);
    message.label->setText(message.text());
    rows_->insertWidget(0, message.row);
    messages_.insert(messages_.begin(), std::move(message));
    fit();
    verticalScrollBar()->setValue(0);
    return true;
}

void MessagePanel::remove(const QString& topic)
{
    const auto found = std::find_if(messages_.begin(), messages_.end(), [&](const Message& m) { return m.topic == topic; });
    if (found == messages_.end())
        return;
    found->row->deleteLater();
    found->row->hide();
    messages_.erase(found);
    fit();
}

bool MessagePanel::has(const QString& topic) const
{
    return std::any_of(messages_.begin(), messages_.end(), [&](const Message& m) { return m.topic == topic; });
}

void MessagePanel::retranslate()
{
    for (Message& message : messages_) {
        message.label->setText(message.text());
        message.row->findChild<QToolButton*>(QStringLiteral("message_close"))->setToolTip(appText(AppText::CloseMessage));
    }
    fit();
}

QString MessagePanel::text() const
{
    QStringList texts;
    for (const Message& message : messages_)
        texts << message.label->text();
    return texts.join(QStringLiteral("\n\n"));
}

void MessagePanel::place(const QRect& band)
{
    band_ = band;
    fit();
}

// As tall as the messages need, up to the band's height, standing on the
// band's bottom edge.
void MessagePanel::fit()
{
    if (messages_.empty() || band_.isEmpty()) {
        hide();
        return;
    }
    // Each row as tall as its wrapped text needs at the panel's width.
    const QMargins margins = rows_->contentsMargins();
    const int rowWidth = band_.width() - 2 - margins.left() - margins.right() - verticalScrollBar()->sizeHint().width();
    int needed = 2 + margins.top() + margins.bottom() + rows_->spacing() * (count() - 1);
    for (const Message& message : messages_)
        needed += std::max(message.row->heightForWidth(rowWidth), message.row->sizeHint().height());
    const int height = std::min(needed, band_.height());
    setGeometry(band_.x(), band_.bottom() + 1 - height, band_.width(), height);
    show();
    raise();
}
