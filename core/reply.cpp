#include "reply.h"

#include "mxresult.h"
#include "temperature.h"

#include <cstring>

namespace
{
template <int Size>
int writeText(char *to, const char (&text)[Size])
{
    std::memcpy(to, text, Size - 1);
    return Size - 1;
}

/// `number` is at most three digits long. \return behind the character that ends it
char *appendNumber(char *to, int number, char behind)
{
    if (number >= 100) {
        *to++ = static_cast<char>('0' + number / 100);
    }
    if (number >= 10) {
        *to++ = static_cast<char>('0' + number / 10 % 10);
    }
    *to++ = static_cast<char>('0' + number % 10);
    *to++ = behind;
    return to;
}

int writeRoutingAnswer(char *to, int input, const MxShm &shm)
{
    char *at = appendNumber(to, input, 'x');
    const int ports = portCount(shm);
    for (int o = 0; o < ports; ++o) {
        if (shm.map[o] == input - 1) {
            at = appendNumber(at, o + 1, '&');
        }
    }
    if (at[-1] == '&') {
        --at;
    }
    *at++ = '.';
    return static_cast<int>(at - to);
}
} // namespace

int writeReply(char *to, int result, const MxShm &shm)
{
    if (result == MxOk) {
        return writeText(to, "OK.");
    }
    return result >= 1 && result <= portCount(shm) ? writeRoutingAnswer(to, result, shm)
                                                   : writeText(to, "ERR.");
}

int writeTemperatureReply(char *to)
{
    const Temperature degrees = readTemperature();
    int size = writeText(to, "temp=");
    const std::size_t length = std::strlen(degrees.text);
    std::memcpy(to + size, degrees.text, length);
    size += static_cast<int>(length);
    to[size++] = '.';
    return size;
}
