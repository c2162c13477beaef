#include "commandinterpreter.h"
#include "commandtext.h"
#include "fuzz.h"

/// One command line, of which the interpreter may read nothing behind the end.
int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const auto *text = reinterpret_cast<const char *>(data);
    const CommandInterpreter command(text, text + size, CommandText::CommandEnd);
    require(command.end() >= text && command.end() <= text + size);
    return 0;
}
