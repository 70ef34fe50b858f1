#pragma once
#include <QByteArray>
#include <QList>
#include <QString>

#include "device/HidInterface.h"

// A HID library without hardware: devices are present or not per row of the
// stick table, writes are recorded, and each read hands out the next
// scripted reply (or fails). State is shared through a plain struct so a
// test keeps it after the link took the interface.
class FakeHid : public HidInterface
{
public:
    struct State
    {
        bool tavPresent = false;
        bool ft260Present = false;
        // hid_open succeeds for present devices unless this is set.
        bool openFails = false;
        bool writeFails = false;
        bool readFails = false;
        QList<QByteArray> replies;   // consumed one per read; empty: 0 bytes read
        QList<QByteArray> written;   // every hid_write, report byte included
        QList<quint16> opened;       // product ids of successful opens
        int closes = 0;
        int inits = 0;
        int exits = 0;
    };

    explicit FakeHid(State *state) : m_state(state) {}

    int hid_init() override;
    int hid_exit() override;
    bool hid_enumerate(quint16 vendor, quint16 product, QString *serial) override;
    Handle hid_open(quint16 vendor, quint16 product, const QString &serial) override;
    int hid_write(Handle device, const QByteArray &data) override;
    int hid_read(Handle device, unsigned char *buffer, int length) override;
    void hid_close(Handle device) override;

private:
    bool present(quint16 product) const;
    State *m_state;
};
