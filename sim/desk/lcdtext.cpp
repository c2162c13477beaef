#include "lcdtext.h"

#include <array>
#include <utility>

namespace sim
{
namespace
{
constexpr qint64 SteadyMs = 100;
constexpr std::array<const char *, 4> Blocks = {" ", "▀", "▄", "█"};

std::string edge(const char *left, const char *right)
{
    std::string line = left;
    for (int x = 0; x < LcdModule::Width; ++x) {
        line += "─";
    }
    return line + right + "\n";
}

std::string picture(const LcdModule &lcd)
{
    std::string text = edge("┌", "┐");
    for (int y = 0; y < LcdModule::Height; y += 2) {
        text += "│";
        for (int x = 0; x < LcdModule::Width; ++x) {
            text += Blocks[(lcd.isLit(x, y) ? 1u : 0u) + (lcd.isLit(x, y + 1) ? 2u : 0u)];
        }
        text += "│\n";
    }
    text += edge("└", "┘");
    text.pop_back();
    return text;
}
} // namespace

std::string LcdText::look(const LcdModule &lcd, qint64 nowMs)
{
    std::string now = picture(lcd);
    if (now != m_seen) {
        m_seen = std::move(now);
        m_seenSinceMs = nowMs;
    }
    if (m_seen == m_returned || nowMs - m_seenSinceMs < SteadyMs) {
        return {};
    }
    return m_returned = m_seen;
}

std::string LcdText::blank()
{
    return picture(LcdModule());
}
} // namespace sim
