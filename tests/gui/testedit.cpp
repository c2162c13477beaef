#include "rows.h"
#include "testdisplay.h"
#include "testregistry.h"

#include <cstring>

namespace
{
QByteArray textOf(WM_Handle edit)
{
    char text[300];
    const int length = EDIT_GetText(edit, text, sizeof text);
    return QByteArray(text, length);
}

void pressKeys(const char *keys)
{
    for (; *keys != '\0'; ++keys) {
        const char *const name = std::strchr("<>^$~-#", *keys);
        const int codes[] = {GUI_KEY_LEFT,   GUI_KEY_RIGHT,     GUI_KEY_HOME,  GUI_KEY_END,
                             GUI_KEY_INSERT, GUI_KEY_BACKSPACE, GUI_KEY_DELETE};
        GUI_SendKeyMsg(name != nullptr ? codes[name - "<>^$~-#"] : static_cast<unsigned char>(*keys), 1);
    }
}
/// Of at most 8 characters, four of which it has.
WM_Handle filledEdit()
{
    const WM_Handle edit = EDIT_CreateEx(10, 8, 60, 32, 0, WM_VISIBLE, 1, 8);
    EDIT_SetText(edit, "Text");
    return edit;
}
} // namespace

/// Edit fields by their keys, and their cursor.
class TestEdit : public QObject
{
    Q_OBJECT

private slots:
    void init() { start(); }

    void editsAreTypedInto_data()
    {
        columns<QByteArray, QByteArray, int>("keys", "text", "cursor");
        row("inserted in front", "^ab", "abText", 2);
        row("up to the longest", "12345", "Text1234", 8);
        row("over what is there", "^~ab", "abxt", 2);
        row("over the end", "~<bcdefghi", "Texbcdef", 8);
        row("over a full one", "1234^~ab", "abxt1234", 2);
        row("insert mode again", "^~~a", "aText", 1);
        row("backspace", "<--", "Tt", 1);
        row("backspace at the beginning", "^-", "Text", 0);
        row("delete", "^>##", "Tt", 1);
        row("delete at the end", "#>", "Text", 4);
        row("cursor beyond both ends", "^<$>>", "Text", 4);
        row("no characters", "\t\r\n\x1B\x85", "Text", 4);
    }
    void editsAreTypedInto()
    {
        QFETCH(QByteArray, keys);
        const WM_Handle edit = filledEdit();
        WM_SetFocus(edit);
        pressKeys(keys);
        QTEST(textOf(edit), "text");
        QTEST(EDIT_GetCursorCharPos(edit), "cursor");
    }

    void editsCutTheirTexts()
    {
        const WM_Handle edit = filledEdit();
        EDIT_SetText(edit, "much too long");
        QCOMPARE(textOf(edit), QByteArray("much too"));
        char four[4];
        QCOMPARE(EDIT_GetText(edit, four, 4), 8);
        QCOMPARE(four, "muc");
        EDIT_SetCursorAtChar(edit, 99);
        QCOMPARE(EDIT_GetCursorCharPos(edit), 8);
        EDIT_SetCursorAtChar(edit, -1);
        QCOMPARE(EDIT_GetCursorCharPos(edit), 0);
        const WM_Handle least = EDIT_CreateEx(0, 0, 9, 9, 0, WM_HIDDEN, 3, -4);
        EDIT_SetText(least, "ab");
        QCOMPARE(textOf(least), QByteArray("a"));
    }

    void editsKeepTheirCursorInSight_data()
    {
        columns<QByteArray, int, int, int, int, int>("keys", "align", "left", "textX", "cursor", "cursorEnd");
        constexpr int Left = GUI_ALIGN_LEFT;
        constexpr int Right = GUI_ALIGN_RIGHT;
        row("at the left", "ab", Left, 10, 12, 23, 23);
        row("behind the end at the right", "ab", Right, 10, 47, 58, 58);
        row("replaced at the right", "ab~<", Right, 10, 47, 52, 58);
        row("centred", "ab^", int(GUI_ALIGN_HCENTER), 10, 29, 28, 28);
        row("full", "abcdefgh", Left, 10, 11, 58, 58);
        row("an arrow within", "abcdefghij<<<<<<", Left, 10, -1, 22, 22);
        row("an arrow beyond the left", "abcdefghij<<<<<<<<<", Left, 10, 6, 11, 11);
        row("an arrow beyond the right", "abcdefghij^>>>>>>>>>", Left, 10, 5, 58, 58);
        row("replaced at the end", "abcdefghij~", Right, 10, -7, 52, 58);
        row("no longer too long", "abcdefghij----", Right, 10, 23, 58, 58);
        row("beyond the display", "abcdefgh", Left, 90, 80, 127, 127);
    }
    /// A text that fits stands where it is aligned; another one moves by an arrow only if it must, so that
    /// the cursor is seen whole.
    void editsKeepTheirCursorInSight()
    {
        QFETCH(int, textX);
        QFETCH(int, cursor);
        QFETCH(int, cursorEnd);
        QFETCH(int, align);
        QFETCH(int, left);
        const GUI_Rect box = {left, 8, left + 49, 19};
        const WM_Handle edit = EDIT_CreateEx(left, box.y0, 50, 12, 0, WM_VISIBLE, 1, 14);
        EDIT_SetTextAlign(edit, align);
        WM_SetFocus(edit);
        QFETCH(QByteArray, keys);
        pressKeys(keys);
        const QByteArray text = textOf(edit);
        COMPARE_PAINTED(isOnEdge(box, x, y) ||
                        (isWithin({left + 1, 9, left + 48, 18}, x, y) &&
                         isWithin({cursor, 9, cursorEnd, 16}, x, y) != isTextDot(text, textX, 9, x, y)));
        display.forget();
        WM_SetFocus(0);
        WM_Exec();
        QVERIFY(display.isDamaged() && QRect(cursor, 9, cursorEnd - cursor + 1, 8).contains(display.damage));
    }
};

static const RegisteredTest<TestEdit> registered;
#include "testedit.moc"
