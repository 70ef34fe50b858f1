#pragma once
#include <QObject>
#include <QPointer>
#include <QString>
#include <memory>

class DocumentTables;
class SerialComThread;
class StickLink;
class QWidget;

// The board traffic of an open document: data strings become bytes on the
// stick link, receive strings spread the reply over elements and defines,
// `communication` tasks poll in the background, and SENDTASK downloads a
// task. Owns the link, made on first need and dropped with the document.
class DataTasks : public QObject
{
    Q_OBJECT
public:
    explicit DataTasks(DocumentTables &tables, QObject *parent = nullptr);
    ~DataTasks() override;

    // The logging every new link starts with (the stored preferences).
    void setDefaultLogging(quint16 mode, bool timestamps, const QString &fileName);

    // The link, made (and opened, with the default logging) when there is
    // none yet.
    StickLink *link();
    StickLink *existingLink() const { return m_link.get(); }

    // A new document: the former one's link and polling go, the time-outs
    // count from 0, and the document's port and check mode apply.
    void openDocument(const QString &port, const QString &settings, quint16 checkMode, bool usesStick);
    // Stops polling and drops the link.
    void closeDocument();

    // At load: asks for the port when the description says "?", and warns
    // when the document uses the stick, the check mode asks for it (bit 1),
    // and none answers.
    void choosePort(QWidget *parent);
    void checkStick(QWidget *parent);

    // The polling thread over the document's `communication` tasks, when
    // there are any.
    void startPolling();
    void stopPolling();
    bool isPolling() const;

    void sendUSB(const QString &s);
    // sender names the element (or thread) in the time-out message.
    void recData(const QString &s, const QString &sender);
    // The task download; 1 on success, 0xFF when nothing was sent, 0 when
    // the stick refused or stopped answering part way.
    quint8 sendTask(const QString &fileName, quint8 task, quint16 arg2, quint8 arg3, quint16 arg4);
    // The wait of a table's transfer for its row's answer: 100 ms, 10 ms
    // more after each growth of the reply, with the event loop running in
    // 10 ms bursts meanwhile. True once needed bytes are held; false at
    // the deadline or without a link.
    bool waitForTableReply(int needed);

    // SETTAVLOGGING: the link's logging, made if needed.
    void setLogging(quint16 mode, bool timestamps, const QString &fileName);

    quint16 ioTimeoutCount = 0;
    // Bit 0: time-out messages on the console; bit 1: the warning at load.
    quint16 ioCheckMode = 1;
    bool usesStick = false;

    // The spin waits for a reply: the first and the one after each growth.
    static const int kFirstWaitMs = 20;
    static const int kGrowthWaitMs = 10;
    static const int kTableFirstWaitMs = 100;
    static const int kTableGrowthWaitMs = 10;

    // The frames of a task download of payload (before the HID report
    // byte): the first, then each complete following frame.
    static QList<QByteArray> taskFrames(const QByteArray &payload, quint16 total, quint8 task, quint16 arg2,
                                        quint8 arg3, quint16 arg4);
    // The data bytes of the type-00 records of an Intel HEX text, read the
    // lenient way the stick's download always has; total is their count in
    // 16 bits.
    static QByteArray hexPayload(const QByteArray &text, quint16 *total);

private slots:
    void pollReply(const QString &recdata);

private:
    bool lookupName(const QString &name, quint32 *value) const;
    // transfer, and on failure one reopen and one more transfer.
    bool transferWithRetry(const QByteArray &bytes);
    // A reply of at least 2 bytes must have 0x55 at offset 1.
    bool replyAccepted();

    DocumentTables &m_tables;
    std::unique_ptr<StickLink> m_link;
    QPointer<SerialComThread> m_thread;
    quint16 m_logMode = 0;
    bool m_logTimestamps = false;
    QString m_logFileName;
};
