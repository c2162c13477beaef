#pragma once

#include "rawsocket.h"
#include "testunit.h"

#include <memory>
#include <random>
#include <vector>

/// Commands from every wire of a unit, in blocks, and the routing that they sum up to. An output belongs to
/// the one block that switches it until that is answered, so that the sum does not depend on their order.
class Load
{
public:
    /// The first outputs, left to the hands in front of the unit.
    static constexpr int HandOutputs = 4;

    /// Connects its clients to the product, which shows input 1 everywhere.
    Load(TestUnit &unit, int ports, unsigned seed);

    /// Sends blocks, a few at a time, until so many commands are sent, and takes what has been answered.
    void step(quint64 commands);
    /// Waits until every command is answered. \return whether that came true
    bool rest();
    /// Every client asks once, so that the product has accepted them all and let go of those before them.
    bool greet();
    /// Saves a scene or recalls one, by any wire, while nothing is switched.
    void changeScenes();

    quint64 answered() const { return m_answered; }
    int faults() const { return m_faults; } ///< answers that are not those of the commands
    /// A number from 1 to `last`.
    int any(int last) { return std::uniform_int_distribution<>(1, last)(m_random); }

    std::vector<int> routing;    ///< 1-based inputs
    QByteArrayList passedFrames; ///< that another process had sent to the board since this was cleared

private:
    struct Client {
        std::unique_ptr<RawSocket> socket; ///< null: a serial port
        int output = 0;                    ///< of its block
        int inputs[2] = {};                ///< that the block puts there, one after the other
        int awaited = 0;                   ///< answers to its block; 0: it is idle
        QByteArray answers = {};
    };

    Client &anyClient();
    void send(Client &client, int answers, const QByteArray &block);
    void sendSetting(Client &client, int kind);
    void sendRoutes(Client &client);
    void relayFrame();
    void useTheRecord();
    bool receive();
    void take(Client &client, const QByteArray &bytes);
    bool isGood(const Client &client) const;
    void finish(Client &client);
    int takeOutput();

    TestUnit &m_unit;
    const int m_ports;
    std::mt19937 m_random;
    std::vector<Client> m_clients; ///< two serial ports, eight UDP ports, and TCP
    std::vector<int> m_freeOutputs;
    std::vector<std::vector<int>> m_scenes;
    quint64 m_sent = 0;
    quint64 m_answered = 0;
    int m_faults = 0;
};
