#pragma once

#include <QWidget>

class QButtonGroup;

/// The help: pictures numbered from 1 without gaps, in a folder per language. It opens where it was left. GUI
/// thread only.
class QMxHelp : public QWidget
{
    Q_OBJECT

public:
    explicit QMxHelp(QWidget *parent);

public slots:
    /// 0: a page back, 1: a page on, 2: leave.
    void OnActionPressed(int id);
    /// Hides `QWidget::show()`, which is not virtual: to be called on a `QMxHelp`.
    void show();

private:
    void addButton(const char *text, int id, int x);
    void showPage();

    QButtonGroup *m_buttons;
    QWidget *m_sheet;
    int m_page = 1;
};
