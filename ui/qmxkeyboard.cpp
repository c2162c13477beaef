#include "qmxkeyboard.h"

#include "page.h"
#include "touchbutton.h"

#include <QBoxLayout>
#include <QLineEdit>

namespace
{
constexpr QSize KeySize(78, 78);
constexpr QSize WideKeySize(161, 78);
constexpr QSize EditorSize(410, 78);
constexpr int EditorFontSize = 20; ///< in points

/// Four rows of 12, 12, 12 and 10 keys; a key's id is its index.
constexpr char LowerSet[] = "1234567890.|qwertyuiop-=asdfghjkl;[] zxcvbnm()";
constexpr char UpperSet[] = "1234567890.@QWERTYUIOP_+ASDFGHJKL:{} ZXCVBNM<>";
constexpr int KeyCount = sizeof LowerSet - 1;
static_assert(KeyCount == 46 && sizeof UpperSet == sizeof LowerSet, "");

constexpr int KeysPerRow = 12;
constexpr int DigitKeys = 10;
constexpr int AddressKeys = 11; ///< the digits and "."

QBoxLayout *makeRow()
{
    auto *row = new QHBoxLayout;
    row->setMargin(0);
    row->setSpacing(5);
    return row;
}

QString captionOf(const char *set, int key)
{
    return QString(QLatin1Char(set[key]));
}

/// Behind the last digit, and not behind the blanks that a mask keeps for more.
int endOfDigits(const QString &text)
{
    int end = text.size();
    while (end > 0 && !text.at(end - 1).isDigit()) {
        --end;
    }
    return end;
}
} // namespace

QMxKeyboard::QMxKeyboard(QWidget *parent)
    : QWidget(parent)
    , m_keys(new QButtonGroup(this))
    , m_editor(new QLineEdit)
{
    move(0, 0);
    resize(PageSize);
    m_keys->setExclusive(false);
    connect(m_keys, static_cast<void (QButtonGroup::*)(int)>(&QButtonGroup::buttonReleased), this,
            &QMxKeyboard::onKeyClicked);

    QBoxLayout *rows[] = {makeTopRow(), makeKeyRow(0, KeysPerRow), makeKeyRow(KeysPerRow, 2 * KeysPerRow),
                          makeKeyRow(2 * KeysPerRow, 3 * KeysPerRow), makeKeyRow(3 * KeysPerRow, KeyCount)};
    addKey(rows[4], QStringLiteral("Capslock"), WideKeySize, Qt::Key_CapsLock)->setCheckable(true);
    auto *layout = new QVBoxLayout(this);
    layout->setMargin(0);
    layout->setSpacing(0);
    for (QBoxLayout *row : rows) {
        layout->addLayout(row);
        layout->setAlignment(row, Qt::AlignCenter);
    }

    setAutoFillBackground(true);
    setWindowFlags(Qt::FramelessWindowHint);
    hide();
}

QBoxLayout *QMxKeyboard::makeTopRow()
{
    QBoxLayout *row = makeRow();
    addKey(row, QStringLiteral("Esc"), KeySize, Qt::Key_Escape);
    addKey(row, QStringLiteral("<<"), KeySize, Qt::Key_Left);
    QFont font = m_editor->font();
    font.setPointSize(EditorFontSize);
    m_editor->setFont(font);
    m_editor->setFixedSize(EditorSize);
    m_editor->setStyleSheet(QStringLiteral("lineedit-password-character: 42"));
    row->addWidget(m_editor);
    addKey(row, QStringLiteral(">>"), KeySize, Qt::Key_Right);
    addKey(row, QStringLiteral("Backspace"), WideKeySize, Qt::Key_Backspace);
    addKey(row, QStringLiteral("Enter"), WideKeySize, Qt::Key_Enter);
    return row;
}

QBoxLayout *QMxKeyboard::makeKeyRow(int firstKey, int endKey)
{
    QBoxLayout *row = makeRow();
    for (int key = firstKey; key < endKey; ++key) {
        addKey(row, captionOf(LowerSet, key), KeySize, key);
    }
    return row;
}

TouchButton *QMxKeyboard::addKey(QBoxLayout *row, const QString &caption, QSize size, int id)
{
    auto *key = new TouchButton(size, caption);
    row->addWidget(key);
    m_keys->addButton(key, id);
    return key;
}

void QMxKeyboard::showModal(QPushButton *target, int maxLength, int mode)
{
    m_target = target;
    m_mode = mode;
    // Removing a mask also removes the limit of the length.
    m_editor->setInputMask(QString());
    m_editor->setMaxLength(maxLength);
    m_editor->setEchoMode(mode == Password ? QLineEdit::Password : QLineEdit::Normal);
    if (mode == Ipv4Address) {
        m_editor->setInputMask(QStringLiteral("000.000.000.000"));
    }
    if (mode != Password) {
        enableKeys(mode == WholeNumber ? DigitKeys : mode == Ipv4Address ? AddressKeys : KeyCount);
    }
    m_editor->setText(target != nullptr ? target->text() : QString());
    if (mode == Ipv4Address) {
        m_editor->setCursorPosition(endOfDigits(m_editor->displayText()));
    }
    m_editor->setFocus();
    show();
}

void QMxKeyboard::enableKeys(int count)
{
    for (int key = 0; key < KeyCount; ++key) {
        m_keys->button(key)->setEnabled(key < count);
    }
}

void QMxKeyboard::onKeyClicked(int id)
{
    switch (id) {
    case Qt::Key_Escape:
        emit onCancel();
        hide();
        break;
    case Qt::Key_Left:
        m_editor->cursorBackward(false);
        break;
    case Qt::Key_Right:
        m_editor->cursorForward(false);
        break;
    case Qt::Key_Backspace:
        m_editor->backspace();
        break;
    case Qt::Key_Enter:
        enter();
        break;
    case Qt::Key_CapsLock:
        captionKeys();
        break;
    default:
        if (id >= 0 && id < KeyCount) {
            m_editor->insert(m_keys->button(id)->text());
        }
    }
}

void QMxKeyboard::captionKeys()
{
    const char *set = m_keys->button(Qt::Key_CapsLock)->isChecked() ? UpperSet : LowerSet;
    for (int key = 0; key < KeyCount; ++key) {
        m_keys->button(key)->setText(captionOf(set, key));
    }
}

void QMxKeyboard::enter()
{
    const QString text = m_editor->text();
    if (m_target != nullptr) {
        m_target->setText(text);
    }
    emit onEnter(text);
    hide();
}
