#pragma once

class QAbstractButton;

/// An operation that blocks the touchscreen, for as long as one of these lives. The button that began it is
/// disabled meanwhile, which is seen at once. What is touched meanwhile waits for the event loop, and is
/// dropped there when the operation is over. Scopes may lie in each other. GUI thread only.
class BusyScope
{
public:
    explicit BusyScope(QAbstractButton *button);
    BusyScope(const BusyScope &) = delete;
    BusyScope &operator=(const BusyScope &) = delete;
    ~BusyScope();

private:
    QAbstractButton *const m_button;
    const bool m_wasEnabled;
};
