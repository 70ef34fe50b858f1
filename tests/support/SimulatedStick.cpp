#include "SimulatedStick.h"

#include <QMutexLocker>

#include <cerrno>
#include <fcntl.h>
#include <poll.h>
#include <stdlib.h>
#include <termios.h>
#include <unistd.h>

SimulatedStick::SimulatedStick()
{
    m_master = posix_openpt(O_RDWR | O_NOCTTY);
    if (m_master < 0)
        return;
    if (grantpt(m_master) != 0 || unlockpt(m_master) != 0) {
        ::close(m_master);
        m_master = -1;
        return;
    }
    m_slaveName = QString::fromLocal8Bit(ptsname(m_master));
    // Raw bytes both ways: no echo, no line discipline.
    termios tio;
    if (tcgetattr(m_master, &tio) == 0) {
        cfmakeraw(&tio);
        tcsetattr(m_master, TCSANOW, &tio);
    }
}

SimulatedStick::~SimulatedStick()
{
    stop();
    closeMaster();
}

void SimulatedStick::closeMaster()
{
    QMutexLocker lock(&m_lock);
    if (m_master >= 0) {
        ::close(m_master);
        m_master = -1;
    }
}

void SimulatedStick::stop()
{
    m_running = false;
    wait();
}

bool SimulatedStick::writeRaw(const QByteArray &bytes)
{
    QMutexLocker lock(&m_lock);
    return m_master >= 0 && ::write(m_master, bytes.constData(), size_t(bytes.size())) == bytes.size();
}

void SimulatedStick::setReply(quint8 command, const QByteArray &reply)
{
    QMutexLocker lock(&m_lock);
    m_replies_by_command.insert(command, reply);
}

QByteArray SimulatedStick::lastFrame() const
{
    QMutexLocker lock(&m_lock);
    return m_lastFrame;
}

void SimulatedStick::answer(const QByteArray &frame)
{
    ++m_frames;
    const quint8 command = quint8(frame.at(0));
    QByteArray reply;
    {
        QMutexLocker lock(&m_lock);
        m_lastFrame = frame;
        reply = m_replies_by_command.value(command);
    }
    if (command == 0x04)
        return;
    if (command == 0x05) {
        closeMaster();
        return;
    }
    if (command == 0x02)
        msleep(quint32(m_lateMs));
    if (reply.isEmpty())
        return;
    QMutexLocker lock(&m_lock);
    if (m_master >= 0 && ::write(m_master, reply.constData(), size_t(reply.size())) == reply.size())
        ++m_replies;
}

void SimulatedStick::run()
{
    while (m_running) {
        int fd;
        {
            QMutexLocker lock(&m_lock);
            fd = m_master;
        }
        if (fd < 0)
            return;
        pollfd p{fd, POLLIN, 0};
        const int ready = ::poll(&p, 1, 20);
        if (ready <= 0 || !(p.revents & POLLIN)) {
            // Nobody holds the slave side open yet, or nothing came.
            if (p.revents & (POLLHUP | POLLERR))
                msleep(5);
            continue;
        }
        char buffer[256];
        const ssize_t n = ::read(fd, buffer, sizeof buffer);
        if (n <= 0) {
            msleep(5);
            continue;
        }
        // One write of the program is one frame: the link writes a frame
        // at once, and the test waits for each answer.
        answer(QByteArray(buffer, int(n)));
    }
}
