#pragma once

#include <QWidget>

class QButtonGroup;
class QLayout;
class QMxKeyboard;
class QScrollArea;

/// The page of the captions. It shows one of three lists; what is typed stays on the buttons until it is
/// saved. GUI thread only.
class QMxSetup : public QWidget
{
    Q_OBJECT

public:
    explicit QMxSetup(QWidget *parent = nullptr);

public slots:
    void OnLoadCaption();
    void OnCapPressed(int id);
    /// 0: scenes, 1: inputs, 2: outputs.
    void OnCapSelectPressed(int list);
    /// 0: default, 1: load, 2: save the list that is shown.
    void OnCapActionPressed(int action);
    /// Whether the user may store captions.
    void setSaveEnabled(bool enabled);

signals:
    /// The record holds captions that other pages do not show yet.
    void captionsStored();

private:
    QScrollArea *makeEntries();
    QLayout *makeButtons();
    void showEntries(int count);
    void showDefaults();
    void load();
    void store();

    QButtonGroup *m_numbers;
    QButtonGroup *m_captions;
    QButtonGroup *m_lists;
    QButtonGroup *m_actions;
    QMxKeyboard *m_keyboard;
};
