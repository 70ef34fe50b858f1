#pragma once
#include <QByteArray>
#include <QMap>
#include <QMutex>
#include <QString>
#include <QThread>
#include <atomic>

// A board on the far end of a pseudo-terminal pair. The program opens the
// slave side (portName()) as its serial port; this thread reads frames on
// the master side and answers by the frame's first byte:
//   0x01 -> the reply set with setReply(0x01, ...) at once
//   0x02 -> that reply after lateMs
//   0x04 -> no reply
//   0x05 -> closes the master: the port disappears
// Any other first byte gets the reply set for it, if one is.
class SimulatedStick : public QThread
{
    Q_OBJECT
public:
    SimulatedStick();
    ~SimulatedStick() override;

    // False when no pseudo-terminal could be made.
    bool isValid() const { return m_master >= 0; }
    QString portName() const { return m_slaveName; }

    void setReply(quint8 command, const QByteArray &reply);
    void setLateMs(int ms) { m_lateMs = ms; }

    // Frames received and replies written so far.
    int framesSeen() const { return m_frames.load(); }
    int repliesSent() const { return m_replies.load(); }
    QByteArray lastFrame() const;

    // Writes bytes unasked, as a board printing to its console.
    bool writeRaw(const QByteArray &bytes);

    void stop();

protected:
    void run() override;

private:
    void answer(const QByteArray &frame);
    void closeMaster();

    int m_master = -1;
    QString m_slaveName;
    mutable QMutex m_lock;
    QMap<quint8, QByteArray> m_replies_by_command;
    QByteArray m_lastFrame;
    int m_lateMs = 60;
    std::atomic<bool> m_running{true};
    std::atomic<int> m_frames{0};
    std::atomic<int> m_replies{0};
};
