#include "touchbutton.h"

#include <QEvent>
#include <QStyleOptionButton>
#include <QStylePainter>
#include <algorithm>

namespace
{
constexpr int TextMargin = 4; ///< kept free at either side

QString onOneLine(QString text)
{
    std::replace_if(
        text.begin(), text.end(), [](QChar c) { return c < QLatin1Char(' '); }, QLatin1Char(' '));
    return text;
}
} // namespace

TouchButton::TouchButton(QWidget *parent)
    : QPushButton(parent)
{
    setFocusPolicy(Qt::NoFocus);
}

TouchButton::TouchButton(QSize size, const QString &text, Kind kind, QWidget *parent)
    : TouchButton(parent)
{
    setFixedSize(size);
    setText(text);
    setCheckable(kind == Checkable);
}

bool TouchButton::event(QEvent *event)
{
    // Qt makes a shortcut of "&" in whatever text a button gets.
    return event->type() == QEvent::Shortcut || QPushButton::event(event);
}

void TouchButton::paintEvent(QPaintEvent *)
{
    QStyleOptionButton option;
    initStyleOption(&option);
    option.text = fontMetrics().elidedText(onOneLine(text()), Qt::ElideRight, width() - 2 * TextMargin);
    option.text.replace(QLatin1Char('&'), QLatin1String("&&"));
    QStylePainter(this).drawControl(QStyle::CE_PushButton, option);
}

void clickButton(const QButtonGroup *group, int id)
{
    if (QAbstractButton *button = group->button(id)) {
        button->click();
    }
}

void checkButton(QButtonGroup *group, int id)
{
    if (QAbstractButton *button = group->button(id)) {
        button->setChecked(true);
    } else if (QAbstractButton *checked = group->checkedButton()) {
        // An exclusive group lets none go without another in its place.
        group->setExclusive(false);
        checked->setChecked(false);
        group->setExclusive(true);
    }
}

void showCaptions(const QButtonGroup *group, const SharedText<32> *captions, int count)
{
    const QList<QAbstractButton *> buttons = group->buttons();
    for (int i = 0; i < qMin(buttons.size(), count); ++i) {
        buttons.at(i)->setText(QString::fromLatin1(captions[i].get()));
    }
}
