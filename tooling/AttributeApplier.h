#pragma once
#include <QString>

class Document;
class QObject;
class QWidget;

// The form editor's apply step: one attribute, by its row key, onto the
// live widget, so that the form behind the editor is the preview. The
// dynamic properties the description writer reads back are kept in step
// with every change, so that a saved file carries the edit.
//
// A value that does not fit (a range without two numbers, a colour that is
// not three decimals, a negative size, a class the key does not apply to)
// changes nothing at all.
class AttributeApplier
{
public:
    explicit AttributeApplier(Document &document);

    // Applies; true when the widget took the value. `shown` receives the
    // text the row should show now (the normalised value, or on refusal
    // the value as it stood).
    bool apply(QObject *target, const QString &key, const QString &value, QString *shown = nullptr);

    // Renames an object and every entry the document's tables hold for it;
    // false when the name is empty or already taken.
    bool rename(QObject *target, const QString &newName);

    // The field description behind an SVD path "module.register.field",
    // empty when the model has none.
    QString svdDescription(const QString &path) const;

    // Three decimals 0..255 joined by ";".
    static bool parseRgb(const QString &text, int rgb[3]);
    // "a..b" with two numbers.
    static bool parseRange(const QString &text, double *low, double *high);
    // "true"/"1" and "false"/"0".
    static bool parseFlag(const QString &text, bool *flag);
    // Applies a background colour the way the form shows one: the button
    // role of a push button, else the window role with auto fill.
    static void fillBackground(QWidget *widget, int r, int g, int b);

private:
    bool applyGeometry(QWidget *widget, const QString &key, const QString &value, QString *shown);
    bool applyPlot(QObject *target, const QString &key, const QString &value);
    bool applyClassSpecific(QObject *target, const QString &key, const QString &value, QString *shown);
    bool applyLabel(QObject *target, const QString &value);
    bool applyFile(QObject *target, const QString &key, const QString &value);
    void moveDependent(QObject *display, const QString &oldData, const QString &newData);

    Document &m_document;
};
