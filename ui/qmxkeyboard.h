#pragma once

#include <QWidget>

class QBoxLayout;
class QButtonGroup;
class QLineEdit;
class QPushButton;
class TouchButton;

/// The keyboard on the screen. It covers its page while it is open, edits a copy of a button's text, and
/// hides itself on Enter and Esc. GUI thread only.
class QMxKeyboard : public QWidget
{
    Q_OBJECT

public:
    /// What may be typed. Any other number is free text as well.
    enum Mode { FreeText = 0, WholeNumber = 1, Ipv4Address = 2, Password = 3 };

    explicit QMxKeyboard(QWidget *parent);

    /// Opens the keyboard on the text of `target`, or on nothing when that is null. Enter puts the text, of
    /// at most `maxLength` characters, on `target`. A password may be typed with the keys that the opening
    /// before has left enabled.
    void showModal(QPushButton *target, int maxLength, int mode);

    /// The mode of the present opening, or the last.
    int mode() const { return m_mode; }

public slots:
    /// A key by its index, or a function key by its `Qt::Key`.
    void onKeyClicked(int id);

signals:
    void onEnter(QString text);
    void onCancel();

private:
    QBoxLayout *makeTopRow();
    QBoxLayout *makeKeyRow(int firstKey, int endKey);
    TouchButton *addKey(QBoxLayout *row, const QString &caption, QSize size, int id);
    void enableKeys(int count);
    void captionKeys();
    void enter();

    QButtonGroup *m_keys;
    QLineEdit *m_editor;
    QPushButton *m_target = nullptr;
    int m_mode = FreeText;
};
