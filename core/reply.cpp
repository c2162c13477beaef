#include "reply.h"

#include "temperature.h"

#include <cstring>

namespace
{
void append(Reply &reply, const char *text, int size)
{
    std::memcpy(reply.text + reply.size, text, static_cast<size_t>(size));
    reply.size += size;
}

void append(Reply &reply, const char *text)
{
    append(reply, text, static_cast<int>(std::strlen(text)));
}

/// `number` is at most three digits long.
void appendNumber(Reply &reply, int number, char behind)
{
    char digits[4];
    char *first = digits + sizeof digits;
    *--first = behind;
    do {
        *--first = static_cast<char>('0' + number % 10);
        number /= 10;
    } while (number > 0);
    append(reply, first, static_cast<int>(digits + sizeof digits - first));
}

Reply routingAnswer(int input, const MxShm &shm)
{
    Reply reply;
    reply.size = 0;
    appendNumber(reply, input, 'x');
    for (int o = 0; o < portCount(shm); ++o) {
        if (shm.map[o] == input - 1) {
            appendNumber(reply, o + 1, '&');
        }
    }
    if (reply.text[reply.size - 1] == '&') {
        --reply.size;
    }
    append(reply, ".");
    return reply;
}
} // namespace

Reply replyTo(int result, const MxShm &shm)
{
    if (result >= 1 && result <= portCount(shm)) {
        return routingAnswer(result, shm);
    }
    Reply reply;
    reply.size = 0;
    append(reply, result == MxOk ? "OK." : "ERR.");
    return reply;
}

Reply temperatureReply()
{
    Reply reply;
    reply.size = 0;
    append(reply, "temp=");
    append(reply, readTemperature().text);
    append(reply, ".");
    return reply;
}
