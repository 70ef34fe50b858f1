#pragma once
#include <QByteArray>
#include <QString>
#include <QtGlobal>

// The few calls of a HID library that the stick link needs, with the names
// of hidapi. The link talks to this interface only, so its framing (report
// byte, 64-byte replies, device order) runs against a stand-in in tests.
// A handle is opaque to the caller; null means none.
class HidInterface
{
public:
    using Handle = void *;

    virtual ~HidInterface() = default;

    virtual int hid_init() = 0;
    virtual int hid_exit() = 0;
    // Whether at least one device with these ids is present; the serial
    // number of the first one found goes to serial.
    virtual bool hid_enumerate(quint16 vendor, quint16 product, QString *serial) = 0;
    virtual Handle hid_open(quint16 vendor, quint16 product, const QString &serial) = 0;
    // Bytes written, or -1.
    virtual int hid_write(Handle device, const QByteArray &data) = 0;
    // Bytes read into buffer (at most length), or -1.
    virtual int hid_read(Handle device, unsigned char *buffer, int length) = 0;
    virtual void hid_close(Handle device) = 0;
};
