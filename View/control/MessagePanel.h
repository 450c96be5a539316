#pragma once
// MessagePanel: the window's messages, in one panel along the bottom edge,
// below the page buttons and the keyboard picture, so it never covers them.
// The newest message stands on top; each has its own close button. More
// messages than fit scroll inside the panel instead of growing it.
//
// A message is kept by topic (one message per topic) and as a function
// that gives its text, asked again at retranslate(), so messages follow a
// language switch.

#include <QScrollArea>
#include <QString>

#include <functional>
#include <vector>

class QLabel;
class QVBoxLayout;

class MessagePanel : public QScrollArea {
public:
    explicit MessagePanel(QWidget* parent);

    // Adds the message on top, unless `topic` has one already: false then.
    bool add(const QString& topic, std::function<QString()> text);
    void remove(const QString& topic);
    bool has(const QString& topic) const;
    // Every message's text again, in the language now in force.
    void retranslate();

    int count() const { return static_cast<int>(messages_.size()); }
    // The messages, newest first, with a blank line between them.
    QString text() const;
    // The panel's place: its left, bottom and width in the window, and the
    // most height it may take.
    void place(const QRect& band);

private:
    struct Message {
        QString topic;
        std::function<QString()> text;
        QWidget* row = nullptr;
        QLabel* label = nullptr;
    };
    QWidget* makeRow(const QString& topic, QLabel*& label);
    void fit();

    std::vector<Message> messages_;  // newest first
    QVBoxLayout* rows_ = nullptr;
    QRect band_;
};
