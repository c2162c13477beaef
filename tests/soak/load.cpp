#include "load.h"

#include "mxsite.h"

#include <algorithm>
#include <numeric>
#include <poll.h>

constexpr int SerialPorts = 2;
constexpr int FirstTcp = SerialPorts + 8;
constexpr int Clients = FirstTcp + 500;
constexpr int Scenes = 10; ///< the first half is saved amid the load, the rest while it rests

Load::Load(TestUnit &unit, int ports, unsigned seed)
    : routing(size_t(ports), 1)
    , m_unit(unit)
    , m_ports(ports)
    , m_random(seed)
    , m_clients(Clients)
    , m_freeOutputs(size_t(ports - HandOutputs))
    , m_scenes(Scenes + 1)
{
    std::iota(m_freeOutputs.begin(), m_freeOutputs.end(), HandOutputs + 1);
    for (int i = SerialPorts; i < Clients; ++i) {
        m_clients[size_t(i)].socket.reset(i < FirstTcp ? RawSocket::udp()
                                                       : RawSocket::tcp(MxSite::tcpPort()));
    }
}

void Load::step(quint64 commands)
{
    for (int tries = 0; m_sent < commands && tries < 20; ++tries) {
        Client &client = anyClient();
        const int kind = any(4000);
        if (kind <= 3) {
            sendSetting(client, kind);
        } else if (kind <= 6) {
            relayFrame();
        } else if (kind <= 100) {
            useTheRecord();
        } else {
            sendRoutes(client);
        }
    }
    while (receive()) {
    }
}

Load::Client &Load::anyClient()
{
    const int kind = any(100);
    const int index = kind <= 8 ? any(SerialPorts) : kind <= 24 ? SerialPorts + any(8) : FirstTcp + any(500);
    return m_clients[size_t(index - 1)];
}

void Load::send(Client &client, int answers, const QByteArray &block)
{
    client.awaited = answers;
    m_sent += quint64(answers);
    const int index = int(&client - m_clients.data());
    if (index < SerialPorts) {
        m_unit.hardware().send(index == 0 ? sim::Wire::Control0 : sim::Wire::Control1, block.toStdString());
    } else if (index < FirstTcp) {
        client.socket->sendTo(quint16(MxSite::udpPort() + index - SerialPorts), block);
    } else {
        client.socket->send(block);
    }
}

void Load::sendSetting(Client &client, int kind)
{
    if (client.awaited == 0) {
        send(client, 1,
             kind == 1   ? "beepon."
             : kind == 2 ? "beepoff."
                         : "save" + QByteArray::number(any(Scenes / 2)) + ".");
    }
}

void Load::sendRoutes(Client &client)
{
    if (client.awaited > 0 || m_freeOutputs.empty()) {
        return;
    }
    client.output = takeOutput();
    QByteArray block;
    for (int &input : client.inputs) {
        input = any(m_ports);
        const QByteArray in = QByteArray::number(input);
        block += in + "x" + QByteArray::number(client.output) + "." + in + "?.";
    }
    routing[size_t(client.output - 1)] = client.inputs[1];
    send(client, 4, block);
}

int Load::takeOutput()
{
    std::swap(m_freeOutputs[size_t(any(int(m_freeOutputs.size())) - 1)], m_freeOutputs.back());
    const int output = m_freeOutputs.back();
    m_freeOutputs.pop_back();
    return output;
}

/// As another process does.
void Load::useTheRecord()
{
    if (!m_freeOutputs.empty()) {
        const int output = m_freeOutputs[size_t(any(int(m_freeOutputs.size())) - 1)];
        const int input = any(m_ports);
        m_unit.shm().map[output - 1] = quint16(input - 1);
        routing[size_t(output - 1)] = input;
    }
}

void Load::relayFrame()
{
    const QByteArray frame("\xEB\x90\0\x6", 4);
    passedFrames.append(frame + char(any(256) - 1) + '\0');
    sendRequest(QByteArray("\x6\0\0\0", 4) + passedFrames.last());
}

/// \return whether anything has come
bool Load::receive()
{
    std::vector<pollfd> ready;
    for (int i = 0; i < Clients; ++i) {
        Client &client = m_clients[size_t(i)];
        if (i < SerialPorts) {
            take(client, QByteArray::fromStdString(m_unit.hardware().takeReceived(
                             i == 0 ? sim::Wire::Control0 : sim::Wire::Control1)));
        }
        ready.push_back({client.awaited > 0 && client.socket ? client.socket->descriptor() : -1, POLLIN, 0});
    }
    const int count = ::poll(ready.data(), ready.size(), 0);
    for (size_t i = 0; i < ready.size() && count > 0; ++i) {
        if (ready[i].revents != 0) {
            take(m_clients[i], m_clients[i].socket->receive());
        }
    }
    return count > 0;
}

void Load::take(Client &client, const QByteArray &bytes)
{
    client.answers += bytes;
    if (client.awaited > 0 && client.answers.count('.') >= client.awaited) {
        m_faults += isGood(client) ? 0 : 1;
        m_answered += quint64(client.awaited);
        finish(client);
    }
}

bool Load::isGood(const Client &client) const
{
    const QList<QByteArray> answers = client.answers.split('.');
    bool good = answers.size() == client.awaited + 1;
    for (int i = 0; i < client.awaited; ++i) {
        const QByteArray route = QByteArray::number(client.inputs[i / 2]) + "x";
        const QByteArray outputs = "&" + answers.at(i).mid(route.size()) + "&";
        good = good && (i % 2 == 1 ? answers.at(i).startsWith(route) &&
                                         outputs.contains("&" + QByteArray::number(client.output) + "&")
                                   : answers.at(i) == "OK");
    }
    return good;
}

/// The client is idle again, or another has come in its place.
void Load::finish(Client &client)
{
    if (client.output > 0) {
        m_freeOutputs.push_back(client.output);
    }
    client.output = 0;
    client.awaited = 0;
    client.answers.clear();
    if (&client >= &m_clients[FirstTcp] && any(20) == 1) {
        if (any(2) == 1) {
            client.socket->reset();
        }
        client.socket.reset(RawSocket::tcp(MxSite::tcpPort()));
    }
}

bool Load::rest()
{
    return m_unit.hardware().waitFor(
        [&] {
            receive();
            return std::none_of(m_clients.begin(), m_clients.end(),
                                [](const Client &client) { return client.awaited > 0; });
        },
        20000);
}

bool Load::greet()
{
    for (size_t i = FirstTcp; i < m_clients.size(); ++i) {
        m_clients[i].socket->send("0x999.");
        if (m_clients[i].socket->receive() != "OK.") {
            return false;
        }
    }
    return true;
}

void Load::changeScenes()
{
    const int scene = Scenes / 2 + any(Scenes / 2);
    std::vector<int> &kept = m_scenes[size_t(scene)];
    const bool save = kept.empty() || any(2) == 1;
    send(anyClient(), 1, (save ? "save" : "recall") + QByteArray::number(scene) + ".");
    rest();
    (save ? kept : routing) = save ? routing : kept;
}
