#include "eventtext.h"

#include "hex.h"

#include <cstddef>
#include <map>
#include <variant>

namespace sim
{
namespace
{
constexpr quint16 Dark = 0xFFFF;
constexpr int BuzzerLine = 4;
constexpr std::size_t ShownBytes = 16;

/// Ascending numbers, counted from 0, as text counted from 1: "1-3, 7".
std::string numberRuns(const std::vector<std::size_t> &numbers)
{
    std::string text;
    for (std::size_t first = 0; first < numbers.size();) {
        std::size_t last = first;
        while (last + 1 < numbers.size() && numbers[last + 1] == numbers[last] + 1) {
            ++last;
        }
        text += (text.empty() ? "" : ", ") + std::to_string(numbers[first] + 1);
        if (last > first) {
            text += "-" + std::to_string(numbers[last] + 1);
        }
        first = last + 1;
    }
    return text;
}

std::string group(quint16 input, const std::vector<std::size_t> &outputs)
{
    const std::string numbers = (outputs.size() > 1 ? "outputs " : "output ") + numberRuns(outputs);
    return input == Dark ? numbers + " dark" : "input " + std::to_string(input + 1) + " on " + numbers;
}

std::string hexBytes(const std::vector<quint8> &bytes)
{
    std::string text;
    for (std::size_t i = 0; i < bytes.size() && i < ShownBytes; ++i) {
        text += ' ' + hex(bytes[i]);
    }
    return bytes.size() > ShownBytes ? text + " ... (" + std::to_string(bytes.size()) + " bytes)" : text;
}
} // namespace

std::string EventText::line(const WireEvent &event)
{
    return std::visit([this](const auto &what) { return describe(what); }, event);
}

std::string EventText::describe(const SwitchFrame &frame)
{
    std::map<quint16, std::vector<std::size_t>> outputsOf;
    for (std::size_t output = 0; output < frame.inputs.size(); ++output) {
        if (output >= m_routing.size() || m_routing[output] != frame.inputs[output]) {
            outputsOf[frame.inputs[output]].push_back(output);
        }
    }
    m_routing = frame.inputs;

    std::string text;
    for (const auto &[input, outputs] : outputsOf) {
        text += (text.empty() ? "" : "; ") + group(input, outputs);
    }
    return "switch   " + (text.empty() ? "no change" : text);
}

std::string EventText::describe(const SpliceFrame &frame) const
{
    return "splice   " + std::to_string(frame.words.size()) + " words";
}

std::string EventText::describe(const PassedFrame &frame) const
{
    return "passed  " + hexBytes(frame.bytes);
}

std::string EventText::describe(const LineWrite &write)
{
    if (write.line != BuzzerLine) {
        return {};
    }
    const bool rises = write.level > m_buzzer;
    m_buzzer = write.level;
    return rises ? "buzzer" : "";
}

std::string EventText::describe(const WireFault &fault) const
{
    return "fault    " + fault.text;
}
} // namespace sim
