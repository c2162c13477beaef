#pragma once

#include "sharedfield.h"

#include <QButtonGroup>
#include <QPushButton>

/// A button for a finger: it never takes the keyboard focus, and its text is shown as it stands (an "&" is a
/// character like any other), with an ellipsis where it is too long.
class TouchButton : public QPushButton
{
    Q_OBJECT

public:
    enum Kind { Plain, Checkable };

    explicit TouchButton(QWidget *parent = nullptr);
    /// Of a fixed size.
    explicit TouchButton(QSize size, const QString &text = QString(), Kind kind = Plain,
                         QWidget *parent = nullptr);

protected:
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
};

/// Connects the group's clicks, by id, to the slot. (The signal is overloaded.)
template <typename Receiver>
void connectClicks(const QButtonGroup *group, Receiver *receiver, void (Receiver::*slot)(int))
{
    QObject::connect(group, static_cast<void (QButtonGroup::*)(int)>(&QButtonGroup::buttonClicked), receiver,
                     slot);
}

/// Clicks the button with this id; nothing when there is none.
void clickButton(const QButtonGroup *group, int id);

/// Checks the button with this id of an exclusive group; none when no button has it.
void checkButton(QButtonGroup *group, int id);

/// Puts the captions on the first `count` buttons of the group, in the order in which these were added.
void showCaptions(const QButtonGroup *group, const SharedText<32> *captions, int count);
