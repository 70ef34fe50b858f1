#include "FakeHid.h"

#include <cstring>

int FakeHid::hid_init()
{
    ++m_state->inits;
    return 0;
}

int FakeHid::hid_exit()
{
    ++m_state->exits;
    return 0;
}

bool FakeHid::present(quint16 product) const
{
    return product == 0x0A10 ? m_state->tavPresent : product == 0x6030 ? m_state->ft260Present : false;
}

bool FakeHid::hid_enumerate(quint16, quint16 product, QString *serial)
{
    if (!present(product))
        return false;
    if (serial)
        *serial = QStringLiteral("SN%1").arg(product, 4, 16, QLatin1Char('0'));
    return true;
}

HidInterface::Handle FakeHid::hid_open(quint16, quint16 product, const QString &)
{
    if (m_state->openFails || !present(product))
        return nullptr;
    m_state->opened.append(product);
    return this;
}

int FakeHid::hid_write(Handle, const QByteArray &data)
{
    if (m_state->writeFails)
        return -1;
    m_state->written.append(data);
    return data.size();
}

int FakeHid::hid_read(Handle, unsigned char *buffer, int length)
{
    if (m_state->readFails)
        return -1;
    if (m_state->replies.isEmpty())
        return 0;
    const QByteArray reply = m_state->replies.takeFirst();
    const int n = qMin(length, reply.size());
    std::memcpy(buffer, reply.constData(), size_t(n));
    return n;
}

void FakeHid::hid_close(Handle)
{
    ++m_state->closes;
}
