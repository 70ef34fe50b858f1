#include "elements/Led.h"

#include "elements/DefineLookup.h"
#include "elements/DocumentTables.h"
#include "elements/NumberFormat.h"
#include "elements/Reports.h"

#include <QDomDocument>
#include <QFile>
#include <QPainter>
#include <QRegularExpression>
#include <QSvgRenderer>

// The resources live in a static library, whose registration is linked
// only when something refers to it.
static void initResources()
{
    Q_INIT_RESOURCE(quillon);
}

namespace {

const QString kDefaultOn = QStringLiteral("green");
const QString kDefaultOff = QStringLiteral("grey");

// The picture as shipped; read once, coloured per lamp.
const QByteArray &stockPicture()
{
    static const QByteArray bytes = [] {
        initResources();
        QFile file(QStringLiteral(":/svg/LED.svg"));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }();
    return bytes;
}

void setStopColor(QDomDocument &doc, const QString &id, const QString &color)
{
    const QDomNodeList stops = doc.elementsByTagName(QStringLiteral("stop"));
    for (int i = 0; i < stops.size(); ++i) {
        QDomElement stop = stops.at(i).toElement();
        if (stop.attribute(QStringLiteral("id")) != id)
            continue;
        static const QRegularExpression stock(QStringLiteral("stop-color:#[0-9a-fA-F]*"));
        QString style = stop.attribute(QStringLiteral("style"));
        const QString wanted = QStringLiteral("stop-color:#") + color;
        if (style.contains(stock))
            style.replace(stock, wanted);
        else
            style = wanted + (style.isEmpty() ? QString() : QStringLiteral(";") + style);
        stop.setAttribute(QStringLiteral("style"), style);
    }
}

} // namespace

Led::Led(QWidget *parent)
    : QWidget(parent)
    , m_renderer(new QSvgRenderer)
{
}

Led::~Led() = default;

const QHash<QString, QString> &Led::outerStops()
{
    static const QHash<QString, QString> map = {
        {QStringLiteral("red"), QStringLiteral("cf0000")},
        {QStringLiteral("green"), QStringLiteral("0f6900")},
        {QStringLiteral("grey"), QStringLiteral("adadad")},
        {QStringLiteral("blue"), QStringLiteral("00039a")},
        {QStringLiteral("purple"), QStringLiteral("870083")},
        {QStringLiteral("yellow"), QStringLiteral("d2cd00")},
        {QStringLiteral("white"), QStringLiteral("f0f0f0")},
    };
    return map;
}

const QHash<QString, QString> &Led::innerStops()
{
    static const QHash<QString, QString> map = {
        {QStringLiteral("red"), QStringLiteral("ff8ba4")},
        {QStringLiteral("green"), QStringLiteral("a3ff87")},
        {QStringLiteral("grey"), QStringLiteral("f0f0f0")},
        {QStringLiteral("blue"), QStringLiteral("afa5ff")},
        {QStringLiteral("purple"), QStringLiteral("fe9aff")},
        {QStringLiteral("yellow"), QStringLiteral("fffe8f")},
        {QStringLiteral("white"), QStringLiteral("ffffff")},
    };
    return map;
}

QStringList Led::colorWords()
{
    return {QStringLiteral("red"), QStringLiteral("green"), QStringLiteral("grey"), QStringLiteral("blue"),
            QStringLiteral("purple"), QStringLiteral("yellow"), QStringLiteral("white")};
}

QString Led::outerStopColor(const QString &word, bool on)
{
    return outerStops().value(word, outerStops().value(on ? kDefaultOn : kDefaultOff));
}

QString Led::innerStopColor(const QString &word, bool on)
{
    return innerStops().value(word, innerStops().value(on ? kDefaultOn : kDefaultOff));
}

void Led::watch(const QString &data, const QString &bitmask)
{
    m_data = data;
    setProperty("data", data);
    setProperty("bitmask", bitmask);
    bool ok = false;
    const qint64 mask = NumberFormat::toInt64(bitmask, &ok);
    m_mask = ok ? quint64(mask) : ~quint64(0);
}

bool Led::feed(const QString &valueText)
{
    bool ok = false;
    const qint64 value = NumberFormat::toInt64(valueText, &ok);
    if (!ok) {
        Report::invalidLedb(valueText);
        return false;
    }
    setValue((quint64(value) & m_mask) != 0);
    return true;
}

bool Led::refresh(DocumentTables *tables)
{
    bool found = false;
    const QString text = DefineLookup::valueText(tables, m_data, &found);
    if (!found)
        return false;
    feed(text);
    return true;
}

void Led::setValue(bool on)
{
    if (on == m_state)
        return;
    m_state = on;
    update();
}

void Led::setOnColor(QString newColor)
{
    m_onColor = newColor;
    update();
}

void Led::setOffColor(QString newColor)
{
    m_offColor = newColor;
    update();
}

void Led::setShape(QString shape)
{
    m_shape = shape;
    setProperty("shape", shape);
}

QByteArray Led::coloredPicture() const
{
    QDomDocument doc;
    if (!doc.setContent(stockPicture()))
        return QByteArray();
    const QString &word = m_state ? m_onColor : m_offColor;
    setStopColor(doc, QStringLiteral("stopLED1"), outerStopColor(word, m_state));
    setStopColor(doc, QStringLiteral("stopLED2"), innerStopColor(word, m_state));
    return doc.toByteArray();
}

QSize Led::sizeHint() const
{
    return QSize(20, 20);
}

QSize Led::minimumSizeHint() const
{
    return QSize(8, 8);
}

void Led::paintEvent(QPaintEvent *)
{
    const QByteArray picture = coloredPicture();
    if (picture.isEmpty())
        return;
    if (picture != m_renderedPicture) {
        m_renderer->load(picture);
        m_renderedPicture = picture;
    }
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    m_renderer->render(&painter, QRectF(rect()));
}
