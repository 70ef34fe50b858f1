#pragma once
#include "device/HidInterface.h"

// The HID calls served by the system's hidapi library.
class HidApiDevice : public HidInterface
{
public:
    int hid_init() override;
    int hid_exit() override;
    bool hid_enumerate(quint16 vendor, quint16 product, QString *serial) override;
    Handle hid_open(quint16 vendor, quint16 product, const QString &serial) override;
    int hid_write(Handle device, const QByteArray &data) override;
    int hid_read(Handle device, unsigned char *buffer, int length) override;
    void hid_close(Handle device) override;

    // A stick that never answers must not freeze the program: a read gives
    // up after this long and counts as an empty report.
    static const int kReadTimeoutMs = 1000;
};
