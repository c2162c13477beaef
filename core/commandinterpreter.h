#pragma once

#include <QtGlobal>

/// What one command line asks for, as a value. It only reads the line; `runCommand` carries it out.
///
///   1x2  3*1&2&5  3v1,2,5   input to outputs; the separator after the input is one of * x v o b
///   4all  all1              an input to every output; input i to output i
///   save3 >s3  recall3 >r3  scenes
///   2?                      which outputs does the input feed
///   temp  beepon  beepoff
/// Upper case counts as lower case. "0m" in front of anything and ">c" in front of a routing or a question
/// are skipped. Numbers are decimal, cut to 16 bits, 0 without a digit; but an input to be routed needs a
/// digit, so that a mistyped word such as "recall" is an error and darkens nothing.
class CommandInterpreter
{
public:
    enum Command {
        SyntaxError,
        RouteToSome, ///< input(), outputs(), outputCount()
        RouteToAll,  ///< input()
        RouteOneToOne,
        SaveScene,   ///< number()
        RecallScene, ///< number()
        Query,       ///< number(): the input asked for, 1-based
        Temperature,
        BeepOn,
        BeepOff,
    };

    /// Parses the command that begins at `text` and ends in front of the first byte in the character classes
    /// `ends`, or at `limit`. Allocates nothing; any thread.
    CommandInterpreter(const char *text, const char *limit, int ends = 0);

    Command command() const { return m_command; }
    /// Where the command ends.
    const char *end() const { return m_end; }
    /// True for what waits or writes files: whoever serves several clients lets nothing wait behind it.
    bool blocks() const { return m_blocks; }
    quint16 number() const { return m_numbers[0]; }
    /// 0-based; a 0 on the line gives 0xFFFF, no input.
    quint16 input() const { return static_cast<quint16>(m_numbers[0] - 1); }
    /// 0-based; a 0 on the line gives 0xFFFF, which no matrix has.
    const quint16 *outputs() const { return m_numbers + 1; }
    int outputCount() const { return m_count - 1; }

private:
    /// More than a serial line can hold; a longer network line that names more is an error.
    static constexpr int MaxNumbers = 4096;

    Command route(const char *text, const char *limit, int ends);
    Command other(const char *line);
    Command word(const char *line);
    Command routeToAll(const char *line);
    Command query(const char *line);

    const char *m_end;
    bool m_blocks = false;
    bool m_plain = true; ///< nothing but short numbers and separators
    Command m_command;
    int m_count = 0; ///< numbers gathered: the input, then the outputs
    quint16 m_numbers[MaxNumbers];
};
