#pragma once
#include <QList>
#include <QString>

#include "config/ParameterMap.h"

class DocumentTables;
class QObject;
struct CatalogRecord;

// Copies one catalog record into the form, parameter by parameter in map
// order: a define gets the value through setDef; a plot is cleared and
// re-scaled; a picture shows the file named by the value; a label shows the
// value (a "URL" field as a link).
class CatalogRecordApplier
{
public:
    enum Target { None, Define, Plot, Picture, Label };

    // `form` is searched for labels by name (null: the main window);
    // `folder` is where relative picture names are looked for.
    CatalogRecordApplier(DocumentTables *tables, QObject *form, const QString &folder);

    // What each parameter reached, in map order (for the caller's report).
    QList<Target> apply(const QList<Parameter> &parameters, const CatalogRecord &record);
    Target applyOne(const Parameter &parameter, const QString &value);

    // The value as it is handed on: "float" and "ul32" fields as their
    // number (the first word, normalised).
    static QString valueFor(const Parameter &parameter, const QString &value);
    // The text a label shows: for "URL" a link with the field's text.
    static QString labelText(const Parameter &parameter, const QString &value);

private:
    bool applyToPlot(QObject *plot, const QString &value);

    DocumentTables *m_tables;
    QObject *m_form;
    QString m_folder;
};
