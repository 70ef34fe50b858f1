#pragma once
#include <QList>
#include <QMap>
#include <QPair>
#include <QString>

class HardwareModel;

// Writes each register that has a header name as a #define with its current
// composite value, one C header per header name. The lines come in a fixed
// order (peripherals by name, registers by address), so the same form
// always gives byte-identical files that can live in version control.
class HeaderExporter
{
public:
    struct Options
    {
        QString exportFolder;
        // The banner file; empty or missing gives an empty banner.
        QString disclaimerPath;
        // The description's version text, and per-header versions.
        QString versionText;
        QMap<QString, QString> headerVersions;
        // SETDEFINEPREFIX: header -> prefix written before "$" and the name.
        QMap<QString, QString> definePrefixes;
    };

    // Elements in a conflicting state: link target and name, for the
    // refusal line.
    using Conflict = QPair<QString, QString>;

    HeaderExporter(const HardwareModel &model, const Options &options);

    // Header name -> register lines, in the fixed order.
    QMap<QString, QString> buildTexts() const;

    // Writes the headers that need it (all with writeAll); flags is the
    // header -> "changed since the last export" map, cleared for each
    // written file. With conflicts nothing is written and the refusal line
    // goes to the console. Returns the number of files written.
    int exportHeaders(bool writeAll, QMap<QString, bool> &flags, const QList<Conflict> &conflicts);

    static QString guardName(const QString &header);
    static QString registerLine(const QString &name, const QString &reg, const QString &value, bool failed);
    // The "XML Version" block of a header, empty without a version.
    static QString versionBlock(const QString &header, const QString &versionText);
    static QString refusalLine(const QList<Conflict> &conflicts);

private:
    QString banner() const;
    bool writeHeader(const QString &header, const QString &text, const QString &bannerText) const;

    const HardwareModel &m_model;
    Options m_options;
};
