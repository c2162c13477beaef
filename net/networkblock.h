#pragma once

#include "reply.h"

class CommandBlock;
class QByteArray;

/// What TCP and UDP do alike with what a client sends. Main thread.
namespace NetworkBlock
{
/// True for a block that goes to the switching board as it is: it begins with EB 90.
bool isForBoard(const QByteArray &bytes);

/// Writes the whole block to the switching board. \return true when the board's link took all of it
bool forward(QByteArray &bytes);

/// Carries out the present line of `block`. The temperature is asked for over serial only; here it is an
/// error.
Reply answer(CommandBlock &block);
} // namespace NetworkBlock
