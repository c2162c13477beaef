#pragma once

#include "mxshm.h"

#include <QWidget>

class QBoxLayout;
class QButtonGroup;
class QMxWidget;
class QScrollArea;

/// The page on which outputs are routed: one input is selected, and a touch on an output connects it or takes
/// it off. Outputs that show the selected input are checked. The page keeps nothing but the selection
/// and what it shows: it compares that with the live map every 200 ms while it is visible. GUI thread only.
class QMxSwitch : public QWidget
{
    Q_OBJECT

public:
    explicit QMxSwitch(QWidget *parent = nullptr);

    /// Does what a touch on this input's button (0-based) does; nothing for an input without one.
    void selectInput(int input);

public slots:
    void OnLoadCaption();
    void OnInputPressed(int input);
    void OnOutputPressed(int output);
    /// 0: selected input to all outputs, 1: off all outputs, 2: input i to output i, 3: all off, 4: scenes.
    void OnActionPressed(int action);

signals:
    /// The user wants to see the scenes.
    void scenesWanted();

protected:
    void timerEvent(QTimerEvent *event) override;

private:
    /// What the outputs' buttons show.
    struct Shown {
        int ports; ///< 0 when they may show something else
        int input;
        quint16 map[MxMaxPort];
    };

    void showRouting(const Shown &now);
    QScrollArea *makeArea(QButtonGroup *group, int ports);
    QBoxLayout *makeActions();

    QButtonGroup *m_inputs;
    QButtonGroup *m_outputs;
    QButtonGroup *m_actions;
    QMxWidget *m_map = nullptr; ///< null when the matrix is too large for it
    Shown m_shown = {};
};
