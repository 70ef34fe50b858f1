#include "reader/DisplayElementReaders.h"

#include "elements/Container.h"
#include "elements/DocumentTables.h"
#include "elements/Image.h"
#include "elements/Led.h"
#include "elements/LogLabel.h"
#include "elements/MathLabel.h"
#include "elements/PushButton.h"
#include "elements/Reports.h"
#include "elements/Selectors.h"
#include "elements/Text.h"
#include "elements/TimerLabel.h"
#include "model/DefineText.h"
#include "model/HardwareModel.h"
#include "model/ResultFormat.h"
#include "reader/ActionReader.h"
#include "reader/CommonAttributes.h"
#include "reader/DefaultReader.h"
#include "reader/DescriptionReader.h"

#include <QDir>
#include <QFileInfo>
#include <QVariantMap>
#include <QXmlStreamWriter>

#include <memory>

namespace {

// The running numbers of the names of elements without a define, counted
// per class over the whole document (includes too).
struct Counters
{
    int text = 0;
    int image = 0;
    int led = 0;
    int math = 0;
    int timer = 0;
};

// Every display is also a dependent of the reserved record dummy_define,
// whose change refreshes them all at once after a load.
const QString kRefreshAll = QStringLiteral("dummy_define");

QString attribute(const QXmlStreamAttributes &a, const char *name)
{
    return a.value(QLatin1String(name)).toString();
}

bool has(const QXmlStreamAttributes &a, const char *name)
{
    return a.hasAttribute(QLatin1String(name));
}

void addDependent(QHash<QString, QList<QObject *>> &table, const QString &define, QObject *dependent)
{
    if (define.isEmpty())
        return;
    QList<QObject *> &list = table[define];
    if (!list.contains(dependent))
        list.append(dependent);
}

// The define a display follows, as the changed element names itself: a
// selector (".label") is read from the element, not part of its name.
QString senderName(const QString &define)
{
    return Selectors::hasSelector(define) ? Selectors::stripSelector(define) : define;
}

// A file named by the description: in the document's folder unless absolute.
QString documentPath(DescriptionReader &reader, const QString &name)
{
    if (name.isEmpty())
        return QString();
    const QString found = reader.findFile(name);
    if (!found.isEmpty())
        return found;
    return QFileInfo(name).isAbsolute() ? name : QDir(reader.folder()).filePath(name);
}

// The content of the current element, written out again as XML text; the
// stream stands at its end tag afterwards. Re-serialising (rather than
// cutting bytes from the file) keeps working inside includes, whose text
// is not the document's.
QByteArray captureContent(QXmlStreamReader &xml)
{
    QByteArray out;
    QXmlStreamWriter writer(&out);
    int depth = 0;
    while (!xml.atEnd()) {
        const QXmlStreamReader::TokenType token = xml.readNext();
        if (token == QXmlStreamReader::Invalid)
            break;
        if (token == QXmlStreamReader::EndElement) {
            if (depth == 0)
                break;
            --depth;
            writer.writeEndElement();
        } else if (token == QXmlStreamReader::StartElement) {
            ++depth;
            writer.writeStartElement(xml.qualifiedName().toString());
            for (const QXmlStreamNamespaceDeclaration &ns : xml.namespaceDeclarations()) {
                const QString name = ns.prefix().isEmpty() ? QStringLiteral("xmlns")
                                                           : QStringLiteral("xmlns:") + ns.prefix().toString();
                writer.writeAttribute(name, ns.namespaceUri().toString());
            }
            for (const QXmlStreamAttribute &a : xml.attributes())
                writer.writeAttribute(a.qualifiedName().toString(), a.value().toString());
        } else if (token == QXmlStreamReader::Characters) {
            if (xml.isCDATA())
                writer.writeCDATA(xml.text().toString());
            else
                writer.writeCharacters(xml.text().toString());
        }
    }
    return QString::fromUtf8(out).simplified().toUtf8();
}

void readText(DescriptionReader &reader, Container *container, Counters &counters)
{
    const QXmlStreamAttributes a = reader.xml().attributes();
    const QString define = attribute(a, "define");
    const QString label = attribute(a, "label");
    const QString name = define.isEmpty() ? QStringLiteral("TEXT_%1").arg(counters.text) : define;
    ++counters.text;
    Text *text = container->addText(label, -1, name);
    text->setWordWrap(attribute(a, "wordwrap").toUInt() != 0);
    if (has(a, "tooltip"))
        text->setToolTip(attribute(a, "tooltip"));
    CommonAttributes::apply(reader, text, a);
    // The element's own text is not shown: the label is.
    reader.xml().skipCurrentElement();
}

Image *makeImage(DescriptionReader &reader, Container *container, Counters &counters, const QXmlStreamAttributes &a)
{
    const QString define = attribute(a, "define");
    reader.checkDuplicateDefine(define, DescriptionReader::ImageDefine);
    const QString name = define.isEmpty() ? QStringLiteral("IMAGE_%1").arg(counters.image) : define;
    ++counters.image;
    Image *image = container->addImage(attribute(a, "label"), -1, name);
    if (has(a, "label")) {
        image->setProperty("my_label", attribute(a, "label"));
        image->setAccessibleName(attribute(a, "label"));
    }
    reader.tables().images.insert(name, image);
    return image;
}

void readImage(DescriptionReader &reader, Container *container, Counters &counters)
{
    const QXmlStreamAttributes a = reader.xml().attributes();
    Image *image = makeImage(reader, container, counters, a);
    const QString file = attribute(a, "file");
    image->setProperty("File", file);
    image->setPictureFile(reader.findFile(file));
    CommonAttributes::apply(reader, image, a);
    reader.xml().skipCurrentElement();
}

void readSvgEmbed(DescriptionReader &reader, Container *container, Counters &counters)
{
    const QXmlStreamAttributes a = reader.xml().attributes();
    Image *image = makeImage(reader, container, counters, a);
    image->setPassive(attribute(a, "passive").toInt() != 0);
    if (has(a, "opacity")) {
        bool ok = false;
        const double opacity = attribute(a, "opacity").toDouble(&ok);
        if (ok)
            image->setOpacity(qBound(0.0, opacity, 1.0));
    }
    // The size applies before the picture is drawn, so it is drawn at it.
    CommonAttributes::apply(reader, image, a);
    const QByteArray svg = captureContent(reader.xml());
    if (!image->setSvg(svg))
        return;
    if (image->isPassive())
        return;
    for (const QString &define : image->svgDefines())
        addDependent(reader.tables().svgImageDependents, senderName(define), image);
    addDependent(reader.tables().svgImageDependents, kRefreshAll, image);
}

void readLed(DescriptionReader &reader, Container *container, Counters &counters)
{
    const QXmlStreamAttributes a = reader.xml().attributes();
    const QString define = attribute(a, "define");
    const QString data = attribute(a, "data");
    const QString bitmask = attribute(a, "bitmask");
    QString name;
    if (!data.isEmpty())
        name = QStringLiteral("%1_%2_%3").arg(QString(data).replace(QLatin1Char('.'), QLatin1Char('_')), bitmask)
                   .arg(counters.led);
    else if (!define.isEmpty())
        name = define;
    else
        name = QStringLiteral("LED_%1").arg(counters.led);
    ++counters.led;

    Led *led = container->addLed(attribute(a, "label"), -1, name);
    if (data.isEmpty())
        reader.xmlMessage(QStringLiteral("LED without data doesn't make sense: "), define, true);
    led->watch(data, bitmask);
    if (has(a, "oncolor"))
        led->setOnColor(attribute(a, "oncolor"));
    if (has(a, "offcolor"))
        led->setOffColor(attribute(a, "offcolor"));
    if (has(a, "shape"))
        led->setShape(attribute(a, "shape"));

    reader.tables().leds.insert(define.isEmpty() ? name : define, led);
    if (!data.isEmpty()) {
        addDependent(reader.tables().ledDependents, senderName(data), led);
        addDependent(reader.tables().ledDependents, kRefreshAll, led);
    }
    CommonAttributes::apply(reader, led, a);
    reader.xml().skipCurrentElement();
}

// A label is bound to register bits when it has a define and either the
// description names an SVD file (and the label does not opt out) or the
// define selects bits itself.
bool isRegisterBound(DescriptionReader &reader, const QString &define, const QXmlStreamAttributes &a)
{
    if (define.isEmpty())
        return false;
    if (!reader.svdName().isEmpty() && attribute(a, "svd") != QLatin1String("0"))
        return true;
    return define.contains(QLatin1Char('.')) && define.contains(QLatin1Char('['))
        && define.contains(QLatin1Char(']'));
}

void readMath(DescriptionReader &reader, Container *container, Counters &counters)
{
    const QXmlStreamAttributes a = reader.xml().attributes();
    const QString define = attribute(a, "define");
    reader.checkDuplicateDefine(define, DescriptionReader::ElementDefine);
    const QString name = define.isEmpty() ? QStringLiteral("MATH_%1").arg(counters.math) : define;
    ++counters.math;

    MathLabel *math = container->addMathLabel(attribute(a, "label"), -1, name);
    const QString formula = attribute(a, "formula");
    if (formula.trimmed().isEmpty())
        reader.xmlMessage(QStringLiteral("Math without formula: "), define, false);
    math->setFormula(formula);
    DocumentTables &tables = reader.tables();
    for (const QString &operand : qAsConst(math->names))
        addDependent(tables.mathDependents, operand, math);
    addDependent(tables.mathDependents, kRefreshAll, math);
    static_cast<QObject *>(math)->setProperty("suffix", attribute(a, "unit"));

    // Only a label with a define of its own claims bits and is an element;
    // a running name is no define.
    if (!define.isEmpty()) {
        DefaultReader::read(reader, math, math, a);
    } else {
        math->setBits(-1, -1);
        DefaultReader::read(reader, math, nullptr, a);
    }
    CommonAttributes::apply(reader, math, a);

    const bool bound = isRegisterBound(reader, define, a);
    const QString format = has(a, "format") ? attribute(a, "format") : ResultFormat::defaultFormat(bound);
    if (!math->setFormat(format))
        ResultFormat::reportUnknownFormat(name);
    if (bound && format.contains(QLatin1Char('g')))
        reader.xmlMessage(QStringLiteral("Register combined with \"%g\" format: "), define, true);

    ActionReader::readActions(reader, math, ActionReader::mathEvents());

    if (attribute(a, "passive").toInt() == 0) {
        reader.connectToHost(math, SIGNAL(updateMathLabels()), SLOT(on_updateMathLabel()));
        reader.connectToHost(math, SIGNAL(updateMathLabels()), SLOT(on_updateCurve()));
        reader.connectToHost(math, SIGNAL(updateMathLabels()), SLOT(on_updateDial()));
        reader.connectToHost(math, SIGNAL(updateMathLabels()), SLOT(on_updateLED()));
        reader.connectToHost(math, SIGNAL(updateMathLabels()), SLOT(on_updateLog()));
        reader.connectToHost(math, SIGNAL(updateMathLabels()), SLOT(on_updateSvgImage()));
        reader.connectToHost(math, SIGNAL(updateMathLabels()), SLOT(on_updateThermo()));
    }
    static_cast<ActiveElement *>(math)->setProperty("isRaised", true);
    math->raised = 1;
}

void readLog(DescriptionReader &reader, Container *container)
{
    const QXmlStreamAttributes a = reader.xml().attributes();
    const QString define = attribute(a, "define");
    if (define.isEmpty())
        reader.xmlMessage(QStringLiteral("Log without define is not allowed: "), define, true);
    else
        reader.checkDuplicateDefine(define, DescriptionReader::ElementDefine);

    LogLabel *log = container->addLog(attribute(a, "label"), -1, define);
    log->setFileName(documentPath(reader, attribute(a, "filename")));
    static_cast<QObject *>(log)->setProperty("filename", attribute(a, "filename"));
    log->setAppend(attribute(a, "append").toInt() != 0);
    log->setConsoleEcho(attribute(a, "console").toInt() != 0);
    if (has(a, "delimiter")) {
        bool ok = false;
        const int code = attribute(a, "delimiter").toInt(&ok);
        if (ok && code > 0 && code < 0x10000)
            log->setDelimiter(QChar(code));
    }
    log->setTimestamp(attribute(a, "timestamp").toInt());
    log->setType(attribute(a, "type"));
    DocumentTables &tables = reader.tables();
    if (!define.isEmpty() && !tables.element(define))
        tables.addElement(define, log);
    CommonAttributes::apply(reader, log, a);

    QXmlStreamReader &xml = reader.xml();
    while (!xml.hasError() && xml.readNextStartElement()) {
        if (xml.name() == QLatin1String("logitem")) {
            const QXmlStreamAttributes item = xml.attributes();
            const QString data = attribute(item, "data");
            log->addColumn(data, attribute(item, "label"));
            if (!data.isEmpty())
                addDependent(tables.logDependents, senderName(data), log);
        }
        xml.skipCurrentElement();
    }
    reader.connectToHost(log, SIGNAL(updateMathLabels()), SLOT(on_updateMathLabel()));
    static_cast<ActiveElement *>(log)->setProperty("isRaised", true);
    log->raised = 1;
}

void readTimer(DescriptionReader &reader, Container *container, Counters &counters)
{
    const QXmlStreamAttributes a = reader.xml().attributes();
    const QString define = attribute(a, "define");
    reader.checkDuplicateDefine(define, DescriptionReader::ElementDefine);
    const QString name = define.isEmpty() ? QStringLiteral("TIMER_%1").arg(counters.timer) : define;
    ++counters.timer;

    TimerLabel *timer = container->addTimer(attribute(a, "label"), -1, name);
    timer->setRun(attribute(a, "run").toInt());
    timer->setSingleShot(attribute(a, "singleShot").toInt());
    if (has(a, "interval"))
        timer->setInterval(attribute(a, "interval").toInt());
    DocumentTables &tables = reader.tables();
    tables.timers.insert(name, timer);
    // As an element it is started by the start-up step and reached by
    // `.interval` and `.run`.
    if (!tables.element(name))
        tables.addElement(name, timer);
    CommonAttributes::apply(reader, timer, a);
    ActionReader::readActions(reader, timer, ActionReader::timerEvents());
    reader.connectToHost(timer, SIGNAL(updateMathLabels()), SLOT(on_updateMathLabel()));
    reader.connectToHost(timer, SIGNAL(changedByUser()), SLOT(changed()));
    static_cast<ActiveElement *>(timer)->setProperty("isRaised", true);
    timer->raised = 1;
}

void readButton(DescriptionReader &reader, Container *container)
{
    const QXmlStreamAttributes a = reader.xml().attributes();
    const QString define = attribute(a, "define");
    reader.checkDuplicateDefine(define, DescriptionReader::PushButtonDefine);
    PushButton *button = container->addPushButton(attribute(a, "label"), -1, define);

    if (has(a, "icon")) {
        const QString icon = attribute(a, "icon");
        button->setProperty("Icon", icon);
        const unsigned noGrayOut = attribute(a, "nograyout").toUInt();
        button->setProperty("nograyout", noGrayOut);
        int w = -1;
        int h = -1;
        if (has(a, "size"))
            CommonAttributes::parsePair(attribute(a, "size"), &w, &h);
        if (!button->setIconFile(reader.findFile(icon), QSize(w, h), noGrayOut != 0))
            reader.xmlMessage(QStringLiteral("Icon file not found in UI element"), define, true);
    } else {
        button->setStyleSheet(PushButton::plainStyle());
    }
    if (has(a, "tooltip"))
        button->setToolTip(attribute(a, "tooltip"));

    // The set-defs of `setDef` and the confirmation text.
    DefaultReader::read(reader, button, nullptr, a);
    if (!define.isEmpty())
        reader.tables().pushButtons.insert(define, button);

    CommonAttributes::apply(reader, button, a);
    // A button's `enabled` is a word: only "false" disables it.
    if (has(a, "enabled"))
        button->setEnabled(attribute(a, "enabled") != QLatin1String("false"));

    ActionReader::readActions(reader, button, ActionReader::pushButtonEvents());
}

} // namespace

void DisplayElementReaders::install(DescriptionReader &reader)
{
    auto counters = std::make_shared<Counters>();
    reader.registerHandler(QStringLiteral("text"), [counters](DescriptionReader &r, Container *c) {
        readText(r, c, *counters);
    });
    reader.registerHandler(QStringLiteral("image"), [counters](DescriptionReader &r, Container *c) {
        readImage(r, c, *counters);
    });
    reader.registerHandler(QStringLiteral("svgembed"), [counters](DescriptionReader &r, Container *c) {
        readSvgEmbed(r, c, *counters);
    });
    reader.registerHandler(QStringLiteral("led"), [counters](DescriptionReader &r, Container *c) {
        readLed(r, c, *counters);
    });
    reader.registerHandler(QStringLiteral("math"), [counters](DescriptionReader &r, Container *c) {
        readMath(r, c, *counters);
    });
    reader.registerHandler(QStringLiteral("timer"), [counters](DescriptionReader &r, Container *c) {
        readTimer(r, c, *counters);
    });
    reader.registerHandler(QStringLiteral("log"), [](DescriptionReader &r, Container *c) { readLog(r, c); });
    reader.registerHandler(QStringLiteral("button"), [](DescriptionReader &r, Container *c) { readButton(r, c); });
}
