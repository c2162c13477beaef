#pragma once

#include <QWidget>

class QButtonGroup;
class QLayout;
class QMxWidget;

/// The page of the scenes: the live routing at the left, that of the selected scene at the right, and between
/// them the scenes and what moves a routing from one side to the other. GUI thread only.
class QMxScene : public QWidget
{
    Q_OBJECT

public:
    explicit QMxScene(QWidget *parent = nullptr);

public slots:
    void OnLoadCaption();
    void OnScenePressed(int scene);
    /// 0: load, 1: save the selected scene.
    void OnSceneActionPressed(int action);
    /// Whether the user may store scenes.
    void setSaveEnabled(bool enabled);

protected:
    void timerEvent(QTimerEvent *event) override;

private:
    QLayout *makeButtons();

    QButtonGroup *m_scenes;
    QButtonGroup *m_actions;
    QMxWidget *m_liveView;
    QMxWidget *m_sceneView;
};
