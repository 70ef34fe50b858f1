#pragma once
#include <QByteArray>
#include <QSet>
#include <QString>
#include <QStringList>
#include <memory>

class DocumentTables;
class QIODevice;
class QXmlStreamReader;

// What reading a configuration needs from the program: the description it
// names must be opened, and the form reset before the values arrive.
class ConfigurationHost
{
public:
    virtual ~ConfigurationHost() = default;
    // Opens the description as the current document for the configuration
    // file being loaded (absolute path); false when it failed.
    virtual bool openDescription(const QString &path, const QString &configuration) = 0;
    // The absolute path of the description now loaded (to skip reopening).
    virtual QString currentDescription() const = 0;
    // The folder of the home page, the fallback place of descriptions.
    virtual QString homeFolder() const = 0;
    // The `version` attribute of the loaded description.
    virtual QString descriptionVersion() const = 0;
    // Every element back to its default.
    virtual void resetToDefaults() = 0;
    virtual DocumentTables &tables() = 0;
    // The description's migration file, absolute; empty without one.
    virtual QString migrationPath() const { return QString(); }
};

// Reads a .qlnp document: opens the description it names, resets the form,
// then loads each record into its element. Records of elements that are
// gone and elements the file does not mention are collected for the user.
class ConfigurationReader
{
public:
    explicit ConfigurationReader(ConfigurationHost &host);
    ~ConfigurationReader();

    // True when the stream had no error. With compareOnly the form stays as
    // it is and differences are collected instead.
    bool read(QIODevice *device, const QString &fileName, bool compareOnly);
    QString errorString() const;

    // "#define <define> <value>" for records whose element is gone.
    QStringList unresolved;
    // Defines of the form that the file did not mention.
    QStringList unseen;
    // "<define>#:#<current>!=<file value>" (compareOnly).
    QStringList differences;

    // Whether the first line makes this an XML configuration (else the old
    // #define text).
    static bool isXmlConfiguration(const QByteArray &firstLine);

private:
    bool readXmlFile(bool compareOnly);
    bool openDescription(const QString &name);
    void readRecords(bool compareOnly);
    void applyRecord(const QString &define, const QString &value, bool compareOnly);

    ConfigurationHost &m_host;
    QXmlStreamReader *m_xml = nullptr;
    QString m_fileName;
    QString m_folder;
    QString m_error;
    QByteArray m_content;
    // Defines whose record was loaded.
    QSet<QString> m_loaded;
};
