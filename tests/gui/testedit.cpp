#include "rows.h"
#include "testdisplay.h"
#include "testregistry.h"

#include <algorithm>
#include <cstring>
#include <random>

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
        COMPARE_REPAINTED();
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
        columns<bool, int, int>("isWide", "align", "left");
        for (const bool isWide : {false, true}) {
            const QByteArray font = isWide ? "wide, " : "6x8, ";
            row(font + "at the left", isWide, int(GUI_ALIGN_LEFT), 10);
            row(font + "centred", isWide, int(GUI_ALIGN_HCENTER), 10);
            row(font + "at the right", isWide, int(GUI_ALIGN_RIGHT), 10);
            row(font + "beyond the display", isWide, int(GUI_ALIGN_LEFT), 90);
        }
    }
    /// A text that fits stands where it is aligned; another one moves by an arrow only if it must, so that
    /// the cursor is seen whole.
    void editsKeepTheirCursorInSight()
    {
        QFETCH(bool, isWide);
        QFETCH(int, align);
        QFETCH(int, left);
        const GUI_Font &font = isWide ? WideFont : GUI_Font6x8;
        const GUI_Rect box = {left, 8, left + 49, 19};
        const GUI_Rect field = {left + 1, 9, std::min(left + 48, LCD_GetXSize() - 1), 18};
        const WM_Handle edit = EDIT_CreateEx(left, box.y0, 50, 12, 0, WM_VISIBLE, 1, 14);
        EDIT_SetFont(edit, &font);
        EDIT_SetTextAlign(edit, align);
        std::mt19937 generator(11);
        bool inserts = false;
        EDIT_SetInsertMode(edit, 0);
        int textX = 0;
        GUI_Rect cursor = {};
        for (int round = 0; round < 1000; ++round) {
            const char keys[] = {"<<<>>^$--##~|}ab"[generator() % 16], '\0'};
            inserts = inserts != (keys[0] == '~');
            WM_SetFocus(edit);
            WM_Exec();
            pressKeys(keys);
            paintAnew();
            const TestDisplay focused = display;
            WM_SetFocus(0);
            paintAnew();

            const QByteArray text = textOf(edit);
            const int position = EDIT_GetCursorCharPos(edit);
            const int cursorX = widthOf(text, font, position);
            const int end = widthOf(text + ' ', font, inserts ? text.size() : text.size() + 1);
            const int spare = field.x1 - field.x0 + 1 - widthOf(text, font);
            const int aligned = field.x0 + (align == GUI_ALIGN_LEFT ? int(spare > 0) : spare * align / 2);
            const int before = textX;
            textX = spare < 0 ? display.damage.x0 + 1 - cursorX : aligned;
            const int cursorEnd = inserts ? cursorX : widthOf(text + ' ', font, position + 1);
            const GUI_Rect cursorBefore = cursor;
            cursor = {textX + cursorX - 1, 9, textX + cursorEnd - 1, 9 + font.height - 1};
            if (spare >= 0) {
                cursor.x0 = std::clamp(cursor.x0, field.x0, field.x1);
                cursor.x1 = std::clamp(cursor.x1, cursor.x0, field.x1);
            } else {
                const int by = textX - before;
                QVERIFY(textX <= field.x0 + 1 && textX + end > field.x1);
                QVERIFY(by == 0 || std::strchr("<>^$", keys[0]) == nullptr || cursor.x0 - by < field.x0 ||
                        cursor.x1 - by > field.x1);
            }
            QVERIFY(display.isDamageWithin(cursor));
            QVERIFY(textX != before || std::strchr("<>^$~", keys[0]) == nullptr ||
                    focused.isDamageWithin({std::min(cursor.x0, cursorBefore.x0), cursor.y0,
                                            std::max(cursor.x1, cursorBefore.x1), cursor.y1}));
            COMPARE_PAINTED(isOnEdge(box, x, y) ||
                            (isWithin(field, x, y) && isTextDot(text, textX, 9, x, y, font)));
            COMPARE_DOTS(focused.dots, dotsWhere([&](int x, int y) {
                             return isWithin(cursor, x, y) != (display.dots[y][x] == 0);
                         }));
        }
    }
};

static const RegisteredTest<TestEdit> registered;
#include "testedit.moc"
