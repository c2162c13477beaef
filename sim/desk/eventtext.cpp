#include "eventtext.h"

#include "hex.h"

#include <cstddef>
#include <map>
#include <variant>

namespace sim
{
namespace
{
constexpr uint16_t dark = 0xFFFF;
constexpr int buzzerLine = 4;
constexpr size_t shownBytes = 16;

/// Ascending numbers, counted from 0, as text counted from 1: "1-3, 7".
std::string numberRuns(const std::vector<size_t> &numbers)
{
    std::string text;
    for (size_t first = 0; first < numbers.size();) {
        size_t last = first;
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

std::string group(uint16_t input, const std::vector<size_t> &outputs)
{
    const std::string numbers = (outputs.size() > 1 ? "outputs " : "output ") + numberRuns(outputs);
    return input == dark ? numbers + " dark" : "input " + std::to_string(input + 1) + " on " + numbers;
}

std::string hexBytes(const std::vector<uint8_t> &bytes)
{
    std::string text;
    for (size_t i = 0; i < bytes.size() && i < shownBytes; ++i) {
        text += ' ' + hex(bytes[i]);
    }
    return bytes.size() > shownBytes ? text + " ... (" + std::to_string(bytes.size()) + " bytes)" : text;
}
} // namespace

std::string EventText::line(const WireEvent &event)
{
    return std::visit([this](const auto &what) { return describe(what); }, event);
}

std::string EventText::describe(const SwitchFrame &frame)
{
    std::map<uint16_t, std::vector<size_t>> outputsOf;
    for (size_t output = 0; output < frame.inputs.size(); ++output) {
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
    if (write.line != buzzerLine) {
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
