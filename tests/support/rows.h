#pragma once

#include <QByteArray>
#include <QTest>

/// Tables of Qt Test with a line for the columns and a line for each row; texts are byte arrays:
///     columns<QByteArray, int>("line", "result");
///     row("one output", "1x2", 0);
template <typename... Types, typename... Names>
void columns(Names... names)
{
    (QTest::addColumn<Types>(names), ...);
}

template <typename Value>
const Value &cell(const Value &value)
{
    return value;
}
inline QByteArray cell(const char *text)
{
    return text;
}

template <typename... Values>
void row(const char *name, const Values &...values)
{
    (QTest::newRow(name) << ... << cell(values));
}
