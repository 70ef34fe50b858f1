#pragma once
#include <QString>
#include <QVariant>
#include <memory>

class QSettings;

// The Keil µVision 5 tools menu as a small table store. On Windows Keil keeps
// it in the registry; here it is an INI file whose group "ToolM" holds the
// values Mtx<n>, Mfg<n>, Mex<n>, Mag<n> and Mid<n> of the 20 slots.
//
// The folder of the file stands for Keil's own key: when it does not exist,
// Keil is not installed for this user and the store counts as absent, so
// nothing is written on machines without Keil.
class KeilToolStore
{
public:
    static constexpr int kSlots = 20;

    explicit KeilToolStore(const QString &fileName = defaultFileName());
    ~KeilToolStore();

    // <user configuration folder>/Keil/uVision5/ToolM.ini
    static QString defaultFileName();

    QString fileName() const { return m_fileName; }
    // The folder of the store exists (Keil is installed for this user).
    bool exists() const;

    // One value by name and slot, e.g. value("Mtx", 3).
    QVariant value(const char *name, int index) const;
    QString text(const char *name, int index) const;
    // Mfg<n> as a number; a value that is not a number counts as not 0
    // (isNumber false), so an odd entry does not cut the list short.
    int flags(int index, bool *isNumber = nullptr) const;
    void setValue(const char *name, int index, const QVariant &value);
    // Removes every value of the store.
    void clear();
    // Writes pending changes; false when the file could not be written.
    bool sync();

private:
    QString key(const char *name, int index) const;

    QString m_fileName;
    std::unique_ptr<QSettings> m_settings;
};
