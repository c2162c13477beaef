#pragma once

#include "testunit.h"

#include <QAbstractButton>
#include <QAbstractScrollArea>
#include <QCoreApplication>
#include <QMouseEvent>
#include <QTest>
#include <QTimerEvent>
#include <QWidget>
#include <QWindow>

/// What a finger does, and what an eye sees. For tests that link the pages.
namespace Touchscreen
{
/// A page of the size that the window gives it, visible. Starts the unit if that has not been done.
template <typename Page>
std::unique_ptr<Page> open(TestUnit &unit)
{
    if (g_mxComm == nullptr) {
        unit.start(false);
    }
    auto page = std::make_unique<Page>(nullptr);
    page->setFixedSize(1024, 505);
    page->show();
    QCoreApplication::processEvents();
    return page;
}

inline QList<QAbstractButton *> buttons(const QWidget &page)
{
    QList<QAbstractButton *> visible;
    for (QAbstractButton *button : page.findChildren<QAbstractButton *>()) {
        if (button->isVisible()) {
            visible.append(button);
        }
    }
    return visible;
}

/// The visible button that shows this text, the `index`-th of them; null when there is none.
inline QAbstractButton *button(const QWidget &page, const QString &text, int index = 0)
{
    for (QAbstractButton *button : buttons(page)) {
        if (button->text() == text && index-- == 0) {
            return button;
        }
    }
    return nullptr;
}

/// \return whether there was such a button
inline bool touch(const QWidget &page, const QString &text, int index = 0)
{
    QAbstractButton *found = button(page, text, index);
    if (found != nullptr) {
        QTest::mouseClick(found, Qt::LeftButton);
    }
    return found != nullptr;
}

/// Types on a keyboard; each word is the caption of one key. \return whether all were there
inline bool typeOn(const QWidget &keyboard, const QStringList &keys)
{
    bool found = keyboard.isVisible();
    for (const QString &key : keys) {
        found = found && touch(keyboard, key);
    }
    return found;
}

/// The keys for a text.
inline QStringList letters(const QString &text)
{
    QStringList all;
    for (const QChar letter : text) {
        all.append(letter);
    }
    return all;
}

/// Lays a press, a move or a release before the widget's window as the window system does: it waits there for
/// the event loop.
inline void queue(const QWidget &widget, QEvent::Type type)
{
    const QWidget &window = *widget.window();
    const QPoint place = widget.mapTo(&window, widget.rect().center());
    const Qt::MouseButtons down = type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton;
    auto *event =
        new QMouseEvent(type, place, place, window.mapToGlobal(place), Qt::LeftButton, down, Qt::NoModifier);
    QCoreApplication::postEvent(window.windowHandle(), event);
}

inline void queueTap(const QWidget &widget)
{
    queue(widget, QEvent::MouseButtonPress);
    queue(widget, QEvent::MouseButtonRelease);
}

/// Lets the event loop go through what has queued up, and some turns more.
inline void catchUp()
{
    for (int turn = 0; turn < 10; ++turn) {
        QCoreApplication::processEvents();
    }
}

/// The colour of a dot of the widget as it is painted.
inline QColor colourAt(QWidget &widget, const QPoint &place)
{
    return widget.grab().toImage().pixelColor(place);
}

/// Delivers what a timer of the page would. (The number 0 is taken: Qt has it for a timer that does not run.)
inline void tick(QObject &page)
{
    QTimerEvent event(-1);
    QCoreApplication::sendEvent(&page, &event);
}

inline bool scrolls(const QWidget *widget)
{
    while (widget != nullptr && qobject_cast<const QAbstractScrollArea *>(widget) == nullptr) {
        widget = widget->parentWidget();
    }
    return widget != nullptr;
}

/// Visible buttons that a finger would miss: cut off by what they lie in, over each other, or too small.
inline QStringList misplaced(const QWidget &page)
{
    QStringList wrong;
    const QList<QAbstractButton *> all = buttons(page);
    for (int i = 0; i < all.size(); ++i) {
        const QAbstractButton *button = all.at(i);
        const auto complain = [&](const char *what) { wrong.append(button->text() + QLatin1String(what)); };
        const QWidget &within = scrolls(button) ? *button->parentWidget() : page;
        if (!within.rect().contains(QRect(button->mapTo(&within, QPoint()), button->size()))) {
            complain(" is cut off");
        }
        if (button->width() < 45 || button->height() < 45) {
            complain(" is too small");
        }
        for (int k = 0; k < i; ++k) {
            if (all.at(k)->parent() == button->parent() &&
                all.at(k)->geometry().intersects(button->geometry())) {
                complain(" is over another");
            }
        }
    }
    return wrong;
}
} // namespace Touchscreen
