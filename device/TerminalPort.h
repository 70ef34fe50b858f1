#pragma once
#include <QObject>
#include <QSerialPort>
#include <QString>

// The serial port of the console's "Terminal" tab: a port of its own,
// separate from the stick link's, whose text is shown line by line.
class TerminalPort : public QObject
{
    Q_OBJECT
public:
    explicit TerminalPort(QObject *parent = nullptr);

    // Opens port with the framing of settings; "segger" (any case) takes
    // the first port whose manufacturer is SEGGER. False when it could not
    // be opened; errorString() says why.
    bool open(const QString &port, const QString &settings);
    void close();
    bool isOpen() const { return m_port.isOpen(); }
    QString portName() const { return m_port.portName(); }
    QString errorString() const { return m_port.errorString(); }

public slots:
    // Collects what arrived; a text that ends a line (newline or "<br>")
    // is handed on, an unfinished line waits for the rest.
    void readConsole();

signals:
    void textReady(const QString &html);

private:
    QSerialPort m_port;
    QString m_pending;
};
