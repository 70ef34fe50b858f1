#pragma once
#include <QMap>
#include <QSet>
#include <QString>
#include <QStringList>

class QDomDocument;

// Reads a description as plain XML, without building a form, and reports on
// the console the mistakes description authors make: defines that nothing
// declares, defaults outside their range or list, lock strings without "=",
// branches outside trees, and defines or enumerated values its SVD file does
// not hold. The open document is never touched; a run with findings ends
// normally.
class DefineValidator
{
public:
    // Runs the whole check on one file; an empty name returns at once.
    void validate(const QString &fileName);

    // The largest value the bit selection at the end of a define can hold,
    // plus addend: -1 without a selection, -2 when it can't be read.
    static qint64 defineMaximum(const QString &define, qint64 addend);

private:
    struct ListEntry
    {
        QString define;
        int line;
    };
    struct ItemElement
    {
        QString tag;  // combo or radio
        QString define;
        QString defaultText;
        int line = 0;
        QStringList values;  // normalised values, in item order
        QStringList labels;
        QStringList overrides;  // override and hide values of its items
    };

    void domPass(const QDomDocument &doc);
    bool streamPass(const QString &fileName);
    void numbers(const QString &tag, const QString &define, const QString &defaultText, const QString &range,
                 const QString &step, int line);
    void checkItems();
    void svdPass();
    void reportMissing(const QString &kind, const QMap<QString, int> &names);
    void reportList(const QString &header, const QStringList &entries);
    void error(const QString &text);
    bool isDefined(const QString &name) const;

    QString m_file;
    QString m_svdFile;
    QStringList m_errors;

    QMap<QString, int> m_defined;
    QMap<QString, int> m_svdDefines;
    QMap<QString, int> m_lockonDefines;
    QMap<QString, int> m_setdefDefines;
    QMap<QString, int> m_dataDefines;
    QMap<QString, int> m_recdataDefines;
    QMap<QString, int> m_ledDefines;
    QStringList m_mathNames;

    QMap<QString, QStringList> m_spanning;  // per kind: checkbox / radiobutton
    QList<ItemElement> m_itemElements;
    QStringList m_spinboxDefaults;
    QStringList m_uielementSvd0;
    QStringList m_branchOutsideTree;
    QStringList m_stepPrecision;
    QStringList m_outsideDefine;
};
