#include "tooling/DefineValidator.h"

#include <QDir>
#include <QDomDocument>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QXmlStreamReader>

#include "device/DataString.h"
#include "elements/MessageSink.h"
#include "elements/NumberFormat.h"
#include "elements/Reports.h"
#include "model/ExpressionCompiler.h"

namespace {

const QString kFinished = QStringLiteral("<font color=\"blue\">  <b>Finished validation:</b></font> File: %1<br>");

QString attr(const QXmlStreamAttributes &a, const char *name)
{
    return a.value(QLatin1String(name)).toString();
}

// A number of a spin box's texts: base 16 after "0x", else a double.
bool readNumber(const QString &text, double *value)
{
    const QString t = text.trimmed();
    bool ok = false;
    if (t.startsWith(QLatin1String("0x"), Qt::CaseInsensitive))
        *value = double(t.mid(2).toLongLong(&ok, 16));
    else
        *value = t.toDouble(&ok);
    return ok;
}

int decimals(const QString &number)
{
    const int dot = number.indexOf(QLatin1Char('.'));
    return dot < 0 ? 0 : number.trimmed().size() - dot - 1;
}

// The define with its bit selection removed.
QString withoutSelection(const QString &define)
{
    const int bracket = define.indexOf(QLatin1Char('['));
    return bracket < 0 ? define : define.left(bracket);
}

} // namespace

qint64 DefineValidator::defineMaximum(const QString &define, qint64 addend)
{
    static const QRegularExpression selection(QStringLiteral("(\\[\\d+(:\\d+)?\\])$"));
    const QRegularExpressionMatch m = selection.match(define);
    if (!m.hasMatch())
        return -1;
    QString inside = m.captured(1);
    inside = inside.mid(1, inside.size() - 2);
    const QStringList parts = inside.split(QLatin1Char(':'));
    bool okFirst = false, okLast = false;
    const qint64 first = parts.first().toLongLong(&okFirst);
    const qint64 last = parts.last().toLongLong(&okLast);
    const qint64 width = first - last + 1;
    if (!okFirst || !okLast || width < 1 || width > 62)
        return -2;
    bool ok = false;
    const qint64 ones = QString(int(width), QLatin1Char('1')).toLongLong(&ok, 2);
    return ok ? ones + addend : -2;
}

void DefineValidator::error(const QString &text)
{
    if (!m_errors.contains(text))
        m_errors.append(text);
}

bool DefineValidator::isDefined(const QString &name) const
{
    if (name == QLatin1String("$ADDRESS$") || name == QLatin1String("$VALUE$") || name == QLatin1String("$FUNC$")
        || name.endsWith(QLatin1String("DIR$")))
        return true;
    // Lock strings and setDef texts name bits of a define; the define
    // itself is what the elements declare.
    return m_defined.contains(name) || m_defined.contains(withoutSelection(name));
}

void DefineValidator::reportList(const QString &header, const QStringList &entries)
{
    if (entries.isEmpty())
        return;
    consolePrint(QStringLiteral("<font color=\"blue\"> <b>%1:</b></font><br>").arg(header));
    consolePrint(QStringLiteral("<font color=\"red\"> %1</font><br>").arg(entries.join(QStringLiteral(", "))));
}

void DefineValidator::reportMissing(const QString &kind, const QMap<QString, int> &names)
{
    QStringList missing;
    for (auto it = names.cbegin(); it != names.cend(); ++it) {
        if (!isDefined(it.key()))
            missing.append(it.key());
    }
    reportList(QStringLiteral("The following %1 defines could not be found in XML file %2").arg(kind, m_file), missing);
}

void DefineValidator::validate(const QString &fileName)
{
    if (fileName.isEmpty())
        return;
    *this = DefineValidator();
    m_file = fileName;
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        Report::cannotOpenFile(fileName, file.errorString());
        consolePrint(kFinished.arg(QFileInfo(fileName).fileName()));
        return;
    }
    consolePrint(QStringLiteral("<font color=\"blue\">  <b>Starting validation:</b></font> File: %1<br>").arg(fileName));
    QDomDocument doc;
    if (!doc.setContent(&file)) {
        error(QStringLiteral("Unable to parse XML file %1").arg(fileName));
        for (const QString &e : qAsConst(m_errors))
            consolePrint(QStringLiteral("<font color=\"red\">  <b>XML Error: </b></font><b>Validation Error: </b>%1<br>").arg(e));
        consolePrint(kFinished.arg(fileName));
        return;
    }
    file.close();
    domPass(doc);
    const bool streamed = streamPass(fileName);
    for (const QString &e : qAsConst(m_errors))
        consolePrint(QStringLiteral("<font color=\"red\">  <b>XML Error: </b></font><b>Validation Error: </b>%1<br>").arg(e));
    if (!streamed) {
        consolePrint(kFinished.arg(fileName));
        return;
    }

    reportMissing(QStringLiteral("lockon"), m_lockonDefines);
    reportMissing(QStringLiteral("setdef"), m_setdefDefines);
    reportMissing(QStringLiteral("sendUSB data"), m_dataDefines);
    reportMissing(QStringLiteral("sendUSB recdata"), m_recdataDefines);
    reportMissing(QStringLiteral("led"), m_ledDefines);

    QStringList math;
    static const QRegularExpression suffix(QStringLiteral("\\.(label|item|value|index)$"));
    for (QString name : qAsConst(m_mathNames)) {
        name.remove(suffix);
        if (!isDefined(name) && !math.contains(name))
            math.append(name);
    }
    reportList(QStringLiteral("The following math defines could not be found in XML file %1").arg(m_file), math);

    for (const char *kind : {"checkbox", "radiobutton"})
        reportList(QStringLiteral("The following %1 elements do not have uielement=\"branch\" but spans other elements in XML file %2")
                       .arg(QLatin1String(kind), m_file),
                   m_spanning.value(QLatin1String(kind)));
    checkItems();
    reportList(QStringLiteral("The following spinbox elements with invalid default value in XML file %1").arg(m_file),
               m_spinboxDefaults);
    reportList(QStringLiteral("The following uielement defines which should not have svd=\"0\" contained in XML file %1").arg(m_file),
               m_uielementSvd0);
    reportList(QStringLiteral("The following branch elements are not within a treecontainer element in XML file %1").arg(m_file),
               m_branchOutsideTree);
    reportList(QStringLiteral("The following doublespinbox defines with step exceeding precision of default in XML file %1").arg(m_file),
               m_stepPrecision);
    reportList(QStringLiteral("The following spinbox elements with default or range value not within range of define in XML file %1")
                   .arg(m_file),
               m_outsideDefine);
    svdPass();
    consolePrint(kFinished.arg(fileName));
}

void DefineValidator::domPass(const QDomDocument &doc)
{
    // A check box or radio button that holds other elements is a branch of
    // a tree and must say so; its actions don't count as content.
    for (const char *kind : {"checkbox", "radiobutton"}) {
        const QDomNodeList nodes = doc.elementsByTagName(QLatin1String(kind));
        for (int i = 0; i < nodes.size(); ++i) {
            const QDomElement e = nodes.at(i).toElement();
            bool spans = false;
            for (QDomElement c = e.firstChildElement(); !c.isNull() && !spans; c = c.nextSiblingElement())
                spans = c.tagName() != QLatin1String("action");
            if (spans && e.attribute(QStringLiteral("uielement")) != QLatin1String("branch"))
                m_spanning[QLatin1String(kind)].append(QStringLiteral("%1[LINE: %2]")
                                                           .arg(e.attribute(QStringLiteral("define"), e.attribute(QStringLiteral("label"))))
                                                           .arg(e.lineNumber()));
        }
    }
    // Items of lists and buttons of radio groups, for the defaults.
    const struct { const char *tag; const char *itemTag; } lists[] = {{"combo", "item"}, {"radio", "radiobutton"}};
    for (const auto &list : lists) {
        const QDomNodeList nodes = doc.elementsByTagName(QLatin1String(list.tag));
        for (int i = 0; i < nodes.size(); ++i) {
            const QDomElement e = nodes.at(i).toElement();
            ItemElement item;
            item.tag = QLatin1String(list.tag);
            item.define = e.attribute(QStringLiteral("define"));
            item.defaultText = e.attribute(QStringLiteral("default"));
            item.line = e.lineNumber();
            const QDomNodeList items = e.elementsByTagName(QLatin1String(list.itemTag));
            for (int k = 0; k < items.size(); ++k) {
                const QDomElement it = items.at(k).toElement();
                const QString value = it.attribute(QStringLiteral("value"), QString::number(k));
                item.values.append(classifyNumber(value) <= NumberFormat::Binary ? normaliseNumber(value) : value);
                item.labels.append(it.attribute(QStringLiteral("label")));
                for (const char *a : {"override", "hide"}) {
                    if (it.hasAttribute(QLatin1String(a)))
                        item.overrides.append(it.attribute(QLatin1String(a)).trimmed());
                }
            }
            m_itemElements.append(item);
        }
    }
}

bool DefineValidator::streamPass(const QString &fileName)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return false;
    static const QRegularExpression definePattern(QRegularExpression::anchoredPattern(
        QStringLiteral("\"(([a-zA-Z0-9_]+.[a-zA-Z0-9_]+(?>.[a-zA-Z0-9_]+))?(?>\\[\\d+(?>:\\d+)?\\])?)\"")));
    static const QRegularExpression lockSuffix(QStringLiteral("(\\.[a-z]+)?(=.+)$"));
    static const QRegularExpression setdefSuffix(QStringLiteral("(\\.[a-z]+)?(=.+)"));
    // A count in front of a receive target; a minus marks the low byte
    // first and is a count all the same.
    static const QRegularExpression recCount(QStringLiteral("^-?[0-9]+:"));

    QXmlStreamReader xml(&file);
    // Open elements: whether each is a tree container.
    int treeDepth = 0;
    QList<bool> stack;
    while (!xml.atEnd()) {
        const QXmlStreamReader::TokenType token = xml.readNext();
        if (token == QXmlStreamReader::EndElement) {
            if (!stack.isEmpty() && stack.takeLast())
                --treeDepth;
            continue;
        }
        if (token != QXmlStreamReader::StartElement)
            continue;
        const int line = int(xml.lineNumber());
        const QString tag = xml.name().toString();
        const QXmlStreamAttributes a = xml.attributes();
        const bool isTree = tag == QLatin1String("treecontainer");
        stack.append(isTree);
        if (isTree)
            ++treeDepth;

        const QString define = attr(a, "define");
        const bool svdZero = a.hasAttribute(QLatin1String("svd")) && attr(a, "svd") == QLatin1String("0");
        if (a.hasAttribute(QLatin1String("define"))) {
            const bool bound = !svdZero && tag != QLatin1String("image") && tag != QLatin1String("led");
            // The program's own names are no registers.
            if (bound && !define.isEmpty() && !(define.startsWith('$') && define.endsWith('$')))
                m_svdDefines.insert(define, line);
            const QRegularExpressionMatch m = definePattern.match(QStringLiteral("\"%1\"").arg(define));
            if (m.hasMatch() && !m.captured(2).isEmpty())
                m_defined.insert(m.captured(2), line);
            if (a.hasAttribute(QLatin1String("uielement")) && svdZero)
                m_uielementSvd0.append(QStringLiteral("%1[%2]").arg(define).arg(line));
        }
        if (tag == QLatin1String("svd"))
            m_svdFile = attr(a, "file");
        if (tag == QLatin1String("spinbox") || tag == QLatin1String("hexspinbox") || tag == QLatin1String("doublespinbox"))
            numbers(tag, define, attr(a, "default"), attr(a, "range"), attr(a, "step"), line);
        if (tag == QLatin1String("led")) {
            if (!a.hasAttribute(QLatin1String("data")))
                error(QStringLiteral("Found led element without data attribute define at line %1").arg(line));
            else
                m_ledDefines.insert(attr(a, "data"), line);
        }
        if (a.hasAttribute(QLatin1String("lockon"))) {
            const QStringList parts = attr(a, "lockon").split(QLatin1Char(';'));
            for (QString part : parts) {
                if (part.trimmed().isEmpty())
                    continue;
                if (!part.contains(QLatin1Char('='))) {
                    error(QStringLiteral("Found lockon without \"=\" at line %1").arg(line));
                    continue;
                }
                m_lockonDefines.insert(part.remove(lockSuffix).trimmed(), line);
            }
        }
        if (a.hasAttribute(QLatin1String("default"))) {
            QString text = attr(a, "default");
            text.remove(QLatin1Char(' '));
            const int eq = text.indexOf(QLatin1Char('='));
            if (eq >= 0 && text != QLatin1String("$PERIPHERALS$") && !text.startsWith(QLatin1String("register=$PERIPHERALS$"))) {
                const QString left = text.left(eq);
                if (left != QLatin1String("value") && left != QLatin1String("label") && left != QLatin1String("index"))
                    error(QStringLiteral("\"default\" with \"=\" must have \"value\", \"label\" or \"index\" on its left side, at line %1")
                              .arg(line));
            }
        }
        if (tag == QLatin1String("action")) {
            const QString cmd = attr(a, "cmd");
            if (cmd.compare(QLatin1String("setdef"), Qt::CaseInsensitive) == 0) {
                for (QString part : attr(a, "data").split(QLatin1Char(';'), Qt::SkipEmptyParts))
                    m_setdefDefines.insert(part.remove(setdefSuffix).trimmed(), line);
            } else if (cmd.compare(QLatin1String("sendUSB"), Qt::CaseInsensitive) == 0) {
                for (const QString &part : attr(a, "data").split(QLatin1Char(';'), Qt::SkipEmptyParts)) {
                    const QString value = DataString::parseToken(part.trimmed()).value.trimmed();
                    if (!value.isEmpty() && classifyNumber(value) > NumberFormat::Binary)
                        m_dataDefines.insert(value, line);
                }
                for (QString part : attr(a, "recdata").split(QLatin1Char(';'), Qt::SkipEmptyParts)) {
                    part = part.trimmed().remove(recCount);
                    if (!part.isEmpty() && part != QLatin1String("?"))
                        m_recdataDefines.insert(part, line);
                }
            }
        }
        if (tag == QLatin1String("math") && a.hasAttribute(QLatin1String("formula"))) {
            QStringList tokens, literals, names;
            bool hasString = false;
            ExpressionCompiler::tokenise(ExpressionCompiler::cleanFormula(attr(a, "formula")), tokens, literals, names,
                                         hasString);
            m_mathNames.append(names);
        }
        if (attr(a, "uielement") == QLatin1String("branch") && treeDepth == 0)
            m_branchOutsideTree.append(QStringLiteral("%1[LINE: %2]").arg(define.isEmpty() ? attr(a, "label") : define).arg(line));
    }
    if (xml.hasError()) {
        consolePrint(QStringLiteral("<font color=\"red\">  <b>XML Error: </b></font><b>Validation Error: </b>%1<br>")
                         .arg(QStringLiteral("An error occured while reading xml file: %1. %2").arg(fileName, xml.errorString())));
        return false;
    }
    return true;
}

void DefineValidator::numbers(const QString &tag, const QString &define, const QString &defaultText,
                              const QString &range, const QString &step, int line)
{
    const QString entry = QStringLiteral("%1[%2]").arg(define).arg(line);
    if (range.isEmpty() && defaultText.isEmpty())
        return;
    const QStringList bounds = range.split(QLatin1Char(';'));
    if (bounds.size() != 2) {
        error(QStringLiteral("Invalid range value of %1").arg(entry));
        return;
    }
    double low = 0, high = 0, value = 0;
    const bool ok = readNumber(bounds[0], &low) & readNumber(bounds[1], &high)
        & (defaultText.isEmpty() ? (value = low, true) : readNumber(defaultText, &value));
    if (!ok) {
        error(QStringLiteral("Unable to convert range or default value of %1 to a valid number").arg(entry));
        return;
    }
    if (value < low || value > high)
        m_spinboxDefaults.append(entry);
    if (tag == QLatin1String("doublespinbox")) {
        if (!step.isEmpty() && decimals(step) > decimals(defaultText))
            m_stepPrecision.append(define);
        return;
    }
    const qint64 maximum = defineMaximum(define, 0);
    if (maximum >= 0) {
        for (double v : {value, low, high}) {
            if (v > double(maximum) || v < 0) {
                m_outsideDefine.append(entry);
                break;
            }
        }
    }
}

void DefineValidator::checkItems()
{
    QMap<QString, QStringList> tooMany, notAmong;
    QStringList malformed;
    for (const ItemElement &e : qAsConst(m_itemElements)) {
        const QString entry = QStringLiteral("%1 (%2)").arg(e.define).arg(e.line);
        const qint64 maximum = defineMaximum(e.define, 1);
        if (maximum >= 0 && e.values.size() > maximum)
            tooMany[e.tag].append(entry);
        QString text = e.defaultText;
        text.remove(QLatin1Char(' '));
        if (text.isEmpty())
            continue;
        QString kind = QStringLiteral("value");
        QString wanted = text;
        const int eq = text.indexOf(QLatin1Char('='));
        if (eq >= 0) {
            kind = text.left(eq);
            wanted = text.mid(eq + 1);
        }
        if (text == QLatin1String("$PERIPHERALS$") || text.startsWith(QLatin1String("register=")))
            continue;  // filled from the SVD file at load
        bool found = false;
        if (kind == QLatin1String("index")) {
            bool ok = false;
            const int index = wanted.toInt(&ok);
            if (!ok) {
                malformed.append(entry);
                continue;
            }
            found = index >= 0 && index < e.values.size();
        } else if (kind == QLatin1String("label")) {
            found = e.labels.contains(e.defaultText.mid(e.defaultText.indexOf(QLatin1Char('=')) + 1).trimmed())
                || e.labels.contains(wanted);
        } else if (kind == QLatin1String("value")) {
            if (wanted.isEmpty()) {
                malformed.append(entry);
                continue;
            }
            found = e.values.contains(normaliseNumber(wanted)) || e.values.contains(wanted);
        } else {
            malformed.append(entry);
            continue;
        }
        // A list that gets its items from the SVD file has none to hold
        // the default against here.
        if (!found && !e.values.isEmpty())
            notAmong[e.tag].append(entry);
    }
    for (const char *kind : {"combo", "radio"})
        reportList(QStringLiteral("The following %1 elements with number of items exceeding range of define in XML file %2")
                       .arg(QLatin1String(kind), m_file),
                   tooMany.value(QLatin1String(kind)));
    for (const char *kind : {"combo", "radio"})
        reportList(QStringLiteral("The following %1 elements contain invalid default values in XML file %2").arg(QLatin1String(kind), m_file),
                   notAmong.value(QLatin1String(kind)));
    reportList(QStringLiteral("The following combo/radio elements are set to invalid default value in XML file %1").arg(m_file),
               malformed);
}

void DefineValidator::svdPass()
{
    if (m_svdFile.isEmpty())
        return;
    QString path = m_svdFile;
    if (QFileInfo(path).isRelative())
        path = QFileInfo(m_file).absoluteDir().filePath(m_svdFile);
    QFile file(path);
    QDomDocument svd;
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text) || !svd.setContent(&file)) {
        consolePrint(QStringLiteral("<font color=\"red\">  <b>XML Error: </b></font><b>Validation Error: </b>%1<br>")
                         .arg(QStringLiteral("Failed to open or unable to parse SVD file %1").arg(path)));
        return;
    }
    struct FieldInfo
    {
        int width = 0;
        QSet<qint64> values;
    };
    QSet<QString> registers;
    QHash<QString, FieldInfo> fields;
    auto childText = [](const QDomElement &e, const char *tag) {
        return e.firstChildElement(QLatin1String(tag)).text().trimmed();
    };
    const QDomElement peripherals = svd.documentElement().firstChildElement(QStringLiteral("peripherals"));
    for (QDomElement p = peripherals.firstChildElement(QStringLiteral("peripheral")); !p.isNull();
         p = p.nextSiblingElement(QStringLiteral("peripheral"))) {
        const QString pName = childText(p, "name");
        const QDomElement regs = p.firstChildElement(QStringLiteral("registers"));
        for (QDomElement r = regs.firstChildElement(QStringLiteral("register")); !r.isNull();
             r = r.nextSiblingElement(QStringLiteral("register"))) {
            const QString rName = pName + QLatin1Char('.') + childText(r, "name");
            registers.insert(rName);
            const QDomElement fs = r.firstChildElement(QStringLiteral("fields"));
            for (QDomElement f = fs.firstChildElement(QStringLiteral("field")); !f.isNull();
                 f = f.nextSiblingElement(QStringLiteral("field"))) {
                FieldInfo info;
                info.width = childText(f, "msb").toInt() - childText(f, "lsb").toInt() + 1;
                for (QDomElement ev = f.firstChildElement(QStringLiteral("enumeratedValues")); !ev.isNull();
                     ev = ev.nextSiblingElement(QStringLiteral("enumeratedValues"))) {
                    for (QDomElement v = ev.firstChildElement(QStringLiteral("enumeratedValue")); !v.isNull();
                         v = v.nextSiblingElement(QStringLiteral("enumeratedValue"))) {
                        QString value = childText(v, "value");
                        value.replace(QLatin1Char('#'), QStringLiteral("0b"));
                        info.values.insert(normaliseNumber(value).toLongLong());
                    }
                }
                fields.insert(rName + QLatin1Char('.') + childText(f, "name"), info);
            }
        }
    }

    QMap<QString, QStringList> tooMany;
    QStringList overrideLines;
    for (const ItemElement &e : qAsConst(m_itemElements)) {
        const QString name = withoutSelection(e.define);
        const auto field = fields.constFind(name);
        if (field == fields.cend())
            continue;
        if (e.define == name && field->width > 0 && field->width < 62 && e.values.size() > (qint64(1) << field->width))
            tooMany[e.tag].append(QStringLiteral("%1 (%2)").arg(e.define).arg(e.line));
        QStringList unknown;
        for (const QString &o : e.overrides) {
            if (!field->values.contains(normaliseNumber(o).toLongLong()))
                unknown.append(o);
        }
        if (!unknown.isEmpty())
            overrideLines.append(e.define + QLatin1Char('\t') + unknown.join(QStringLiteral(", ")));
    }
    reportList(QStringLiteral("The following combo elements with number of items exceeding size of field in SVD file %1").arg(path),
               tooMany.value(QStringLiteral("combo")));
    reportList(QStringLiteral("The following radio elements with number of items exceeding size of field in SVD file %1").arg(path),
               tooMany.value(QStringLiteral("radio")));
    for (const QString &o : qAsConst(overrideLines)) {
        const QString define = o.section(QLatin1Char('\t'), 0, 0);
        reportList(QStringLiteral("The following override/hide values for %1 define could not be found in SVD file %2").arg(define, path),
                   {o.section(QLatin1Char('\t'), 1)});
    }
    QStringList missing;
    for (auto it = m_svdDefines.cbegin(); it != m_svdDefines.cend(); ++it) {
        const QString name = withoutSelection(it.key());
        if (!registers.contains(name) && !fields.contains(name))
            missing.append(it.key());
    }
    reportList(QStringLiteral("The following defines could not be found in SVD file %1").arg(path), missing);
}
