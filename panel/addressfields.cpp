#include "addressfields.h"

#include "ethernet.h"
#include "pages.h"
#include "qmxcomm.h"

#include <QByteArray>
#include <QList>
#include <cstdio>

namespace
{
constexpr char DefaultAddress[] = "192.168.0.80";

struct Field {
    SharedText<32> &address;
    WM_Handle edit;
};

/// Calls `use` with each of the six fields.
template <typename Use>
void forEachField(Use use)
{
    int number = 0;
    for (const EthernetInterface &interface : EthernetInterfaces) {
        for (const auto field : interface.fields) {
            use(Field{g_mxConfig->*field, setupField(number++)});
        }
    }
}

struct Address {
    int parts[4];

    /// Numbers are cut off behind the fourth; what is no number counts as 0.
    explicit Address(const char *text)
    {
        QList<QByteArray> texts = QByteArray(text).split('.');
        if (texts.size() < 4) {
            texts = QByteArray(DefaultAddress).split('.');
        }
        for (int i = 0; i < 4; ++i) {
            parts[i] = texts.at(i).toInt();
        }
    }
};
} // namespace

void loadAddressFields()
{
    forEachField([](const Field &field) {
        const Address address(field.address.get());
        char text[64];
        std::snprintf(text, sizeof text, "%03d.%03d.%03d.%03d", address.parts[0], address.parts[1],
                      address.parts[2], address.parts[3]);
        EDIT_SetText(field.edit, text);
    });
}

void saveAddressFields()
{
    forEachField([](const Field &field) {
        char text[64];
        EDIT_GetText(field.edit, text, sizeof text);
        const Address address(text);
        std::snprintf(text, sizeof text, "%d.%d.%d.%d", address.parts[0], address.parts[1], address.parts[2],
                      address.parts[3]);
        field.address.set(text);
    });
    g_mxComm->SaveConfig();
}
