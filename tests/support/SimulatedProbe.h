#pragma once
#include <QByteArray>
#include <QLibrary>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

// The simulated J-Link library of the build (tests/fakes/jlink_sim.c), seen
// from the test's side: the program's loader finds it through the
// InstallPath entry of a user store that this class points at a folder of
// its own; the test reaches the same loaded copy for the target's memory,
// the failing steps and the call log.
class SimulatedProbe
{
public:
    enum Variant { Full, WithoutGo, Missing };

    // Redirects the user store to a temporary folder (once per process).
    SimulatedProbe();
    ~SimulatedProbe();

    // Points InstallPath at the variant's folder and makes the loader
    // search again on its next call; resets the simulation.
    bool use(Variant variant);
    static QString folder(Variant variant);

    void reset();
    void setFailures(const QString &steps);
    void setLogging(bool on);
    // The calls since the last clear, one per line.
    QStringList log() const;
    void clearLog();
    void poke(quint32 address, const QByteArray &bytes);
    void pokeWord(quint32 address, quint32 value);
    QByteArray peek(quint32 address, int count) const;
    quint32 peekWord(quint32 address) const;
    long reads() const;
    long writes() const;
    bool isOpen() const;

private:
    template <class F>
    F fn(const char *name) const
    {
        return reinterpret_cast<F>(m_library.resolve(name));
    }
    mutable QLibrary m_library;
    QTemporaryDir m_store;
    QTemporaryDir m_empty;
};
