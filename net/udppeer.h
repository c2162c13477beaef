#pragma once

#include "clientsession.h"

#include <QHostAddress>

class QUdpSocket;

/// One sender of datagrams to one of the unit's ports. Main thread.
class UdpPeer : public ClientSession
{
public:
    /// Who keeps it while something waits.
    class Owner
    {
    public:
        /// Deletes a sender that has nothing waiting any more.
        virtual void forget(UdpPeer *peer) = 0;

    protected:
        ~Owner() = default;
    };

    UdpPeer(Owner &owner, ClientTurns &turns)
        : ClientSession(turns)
        , m_owner(owner)
    {
    }

    /// Sets who it is; only while it has nothing waiting. Replies leave through `socket`.
    void setAddress(QUdpSocket *socket, const QHostAddress &address, quint16 port);
    /// Stands for the sender as long as the object lives.
    quint64 key() const { return keyOf(m_socket, m_address, m_port); }
    static quint64 keyOf(const QUdpSocket *socket, const QHostAddress &address, quint16 port);

    /// Takes a datagram; one for which there is no room is dropped. \return whether something of it is left
    /// to do
    bool take(const char *datagram, int size);
    /// Waits for a turn from now on, and is forgotten by its owner when nothing is left.
    void stay();

protected:
    void sendReplies(const char *replies, int size) override;
    void sendBlock(const char *bytes, int size) override;
    void onSettled() override;

private:
    Owner &m_owner;
    QUdpSocket *m_socket = nullptr;
    QHostAddress m_address;
    quint16 m_port = 0;
};
