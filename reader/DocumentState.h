#pragma once
#include <QString>
#include <QtGlobal>
#include <memory>

class PinMappingDocument;
struct KeptElement;
class ParameterMap;

// What a description says at its root level, beside its form: the files it
// names, its version, its link settings. The reader fills a fresh copy and
// hands it over only when the read succeeds.
struct DocumentState
{
    QString svdName;
    QString parameterMapFile;
    QString pinMappingFile;
    QString elfFile;
    QString migrationFile;
    QString disclaimerName = QStringLiteral("disclaimer.txt");
    // The description named a disclaimer of its own (in its folder).
    bool disclaimerSet = false;
    QString documentsFolder = QStringLiteral("Documentation");
    // The root's `version` attribute: the program version the description
    // needs, recorded in configuration files as XmlVersion.
    QString rootVersion;
    QString versionText;
    QString versionLabel;
    QString forumUrl;
    QString forumTooltip;
    QString ioPort;
    QString ioSettings;
    QString terminalPort;
    QString terminalSettings;
    QString fwVersionMin;
    QString fwVersionMax;
    quint16 iocheckMode = 1;
    bool iocheckSet = false;
    bool loadSaveAllowed = true;
    // The description said `loadsaveallowed` itself (the form editor writes
    // it back only then).
    bool loadSaveAllowedSet = false;
    bool usesStick = false;
    bool usesPython = false;
    // The pin mapping file's content (shared with the mapper views) and
    // whether the form holds its one embedded mapper.
    std::shared_ptr<PinMappingDocument> pinMapping;
    bool pinMapperPlaced = false;
    // The parameter map for catalogs.
    std::shared_ptr<ParameterMap> parameterMap;
    // The document as read, flattened (includes and header groups folded
    // in): its root-level elements and the form, in document order. What
    // the form editor's writer gives back beside the live widgets.
    std::shared_ptr<KeptElement> kept;
};
