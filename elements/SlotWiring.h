#pragma once

class QObject;

// Connections by name to the main window's slots. Elements and records are
// wired to whatever slots the receiver offers; a slot that is not there
// (a window without that feature, a test without a window) is left out
// without a warning.
class SlotWiring
{
public:
    // signal and slot as made by SIGNAL() and SLOT(). Signals without
    // arguments or with one text go through a SignalRelay: the receiver
    // asks SignalRelay::origin() for the sender first.
    static bool connectIfPresent(QObject *sender, const char *signal, QObject *receiver, const char *slot);
    static bool hasSlot(const QObject *receiver, const char *slot);
    static bool hasSignal(const QObject *sender, const char *signal);
};
