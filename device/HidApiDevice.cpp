#include "device/HidApiDevice.h"

#include <hidapi.h>

#include <vector>

int HidApiDevice::hid_init()
{
    return ::hid_init();
}

int HidApiDevice::hid_exit()
{
    return ::hid_exit();
}

bool HidApiDevice::hid_enumerate(quint16 vendor, quint16 product, QString *serial)
{
    hid_device_info *list = ::hid_enumerate(vendor, product);
    if (!list)
        return false;
    if (serial)
        *serial = list->serial_number ? QString::fromWCharArray(list->serial_number) : QString();
    ::hid_free_enumeration(list);
    return true;
}

HidInterface::Handle HidApiDevice::hid_open(quint16 vendor, quint16 product, const QString &serial)
{
    if (serial.isEmpty())
        return ::hid_open(vendor, product, nullptr);
    std::vector<wchar_t> wide(size_t(serial.size()) + 1, 0);
    serial.toWCharArray(wide.data());
    return ::hid_open(vendor, product, wide.data());
}

int HidApiDevice::hid_write(Handle device, const QByteArray &data)
{
    return ::hid_write(static_cast<hid_device *>(device), reinterpret_cast<const unsigned char *>(data.constData()),
                       size_t(data.size()));
}

int HidApiDevice::hid_read(Handle device, unsigned char *buffer, int length)
{
    return ::hid_read_timeout(static_cast<hid_device *>(device), buffer, size_t(length), kReadTimeoutMs);
}

void HidApiDevice::hid_close(Handle device)
{
    if (device)
        ::hid_close(static_cast<hid_device *>(device));
}
