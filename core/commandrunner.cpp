#include "commandrunner.h"

#include "commandinterpreter.h"
#include "mxresult.h"
#include "qmxcomm.h"
#include "scenestore.h"

namespace
{
int setBeep(QMxComm &device, int beep)
{
    g_mxConfig->beep = beep;
    device.SaveConfig();
    return MxOk;
}
} // namespace

int runCommand(const CommandInterpreter &command, QMxComm &device)
{
    // Nearly every command: spared the indirect jump of the switch, a block of routings takes a tenth less
    // time.
    if (command.command() == CommandInterpreter::RouteToSome) {
        device.MxCmdOneToSome(command.input(), command.outputs(), command.outputCount());
        return MxOk;
    }
    const int number = command.number();
    switch (command.command()) {
    case CommandInterpreter::SyntaxError:
        return MxError;
    case CommandInterpreter::RouteToSome:
        break; // above
    case CommandInterpreter::RouteToAll:
        device.MxCmdOneToAll(command.input());
        return MxOk;
    case CommandInterpreter::RouteOneToOne:
        device.MxCmdAllToAll();
        return MxOk;
    case CommandInterpreter::SaveScene:
        if (!SceneStore::offered(*g_mxConfig, number)) {
            return MxError;
        }
        device.SaveScene(number);
        return MxOk;
    case CommandInterpreter::RecallScene:
        if (!SceneStore::offered(*g_mxConfig, number)) {
            return MxError;
        }
        device.LoadScene(number);
        return MxOk;
    case CommandInterpreter::Query:
        return number <= portCount(*g_mxConfig) ? number : MxError;
    case CommandInterpreter::Temperature:
        return MxTemperature;
    case CommandInterpreter::BeepOn:
        return setBeep(device, 1);
    case CommandInterpreter::BeepOff:
        return setBeep(device, 0);
    }
    return MxError;
}

/// Here, and not with the rest of the control object, which need not know what there is to be carried out.
int QMxComm::MxOnUartCommand(char *line, unsigned short len)
{
    return runCommand(CommandInterpreter(line, line + len), *this);
}
