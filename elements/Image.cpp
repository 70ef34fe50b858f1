#include "elements/Image.h"

#include "elements/DefineLookup.h"
#include "elements/NumberFormat.h"
#include "elements/Reports.h"

#include <QGraphicsOpacityEffect>
#include <QMovie>
#include <QPainter>
#include <QPixmap>
#include <QSvgRenderer>

namespace {

bool isTextElement(const QDomElement &element)
{
    const QString tag = element.tagName();
    return tag == QLatin1String("text") || tag == QLatin1String("tspan") || tag == QLatin1String("textPath");
}

void collectDefined(const QDomElement &element, QList<QDomElement> &out)
{
    if (element.hasAttribute(QStringLiteral("define")))
        out.append(element);
    for (QDomElement child = element.firstChildElement(); !child.isNull(); child = child.nextSiblingElement())
        collectDefined(child, out);
}

} // namespace

Image::Image(QWidget *parent)
    : QLabel(parent)
{
}

Image::~Image() = default;

void Image::clearPicture()
{
    if (m_movie) {
        m_movie->stop();
        QLabel::setMovie(nullptr);
        m_movie.reset();
    }
    m_svg.reset();
    m_svgDocument = QDomDocument();
    m_svgDefines.clear();
    clear();
}

bool Image::setPictureFile(const QString &path)
{
    clearPicture();
    bool loaded = false;
    if (!path.isEmpty()) {
        if (path.endsWith(QLatin1String("gif"), Qt::CaseInsensitive)) {
            std::unique_ptr<QMovie> movie(new QMovie(path));
            // A valid header is not enough: the first frame must decode.
            if (movie->isValid() && movie->jumpToFrame(0) && !movie->currentImage().isNull()) {
                m_movie = std::move(movie);
                QLabel::setMovie(m_movie.get());
                m_movie->start();
                loaded = true;
            }
        } else {
            QPixmap picture;
            if (picture.load(path)) {
                setPixmap(picture);
                loaded = true;
            }
        }
    }
    if (!loaded)
        Report::pictureNotLoaded(QStringLiteral("image"));
    return loaded;
}

bool Image::setSvg(const QByteArray &svg)
{
    clearPicture();
    setProperty("File", QStringLiteral("$SVG$"));
    QDomDocument document;
    std::unique_ptr<QSvgRenderer> renderer(new QSvgRenderer);
    if (!document.setContent(svg) || !renderer->load(svg) || !renderer->isValid()) {
        Report::pictureNotLoaded(QStringLiteral("image"));
        return false;
    }
    m_svgDocument = document;
    m_svg = std::move(renderer);

    QList<QDomElement> defined;
    collectDefined(m_svgDocument.documentElement(), defined);
    for (const QDomElement &element : qAsConst(defined)) {
        const QString define = element.attribute(QStringLiteral("define"));
        if (!define.isEmpty() && !m_svgDefines.contains(define))
            m_svgDefines.append(define);
    }
    renderSvg();
    return true;
}

void Image::refreshSvg(DocumentTables *tables)
{
    if (!m_svg || m_passive)
        return;
    QList<QDomElement> defined;
    collectDefined(m_svgDocument.documentElement(), defined);
    for (QDomElement element : qAsConst(defined)) {
        bool found = false;
        const QString value = DefineLookup::valueText(tables, element.attribute(QStringLiteral("define")), &found);
        if (!found)
            continue;
        if (isTextElement(element)) {
            while (!element.firstChild().isNull())
                element.removeChild(element.firstChild());
            element.appendChild(m_svgDocument.createTextNode(value));
        } else {
            // A shape bound to a define is shown while the value is not 0.
            bool ok = false;
            const qint64 number = NumberFormat::toInt64(value, &ok);
            element.setAttribute(QStringLiteral("visibility"),
                                 ok && number == 0 ? QStringLiteral("hidden") : QStringLiteral("visible"));
        }
    }
    m_svg->load(m_svgDocument.toByteArray());
    renderSvg();
}

void Image::renderSvg()
{
    if (!m_svg || !m_svg->isValid())
        return;
    // A fixed size (the size attribute) is the size the picture is drawn at;
    // otherwise the SVG's own size.
    QSize target = m_svg->defaultSize();
    if (minimumSize() == maximumSize() && !minimumSize().isEmpty())
        target = minimumSize();
    if (target.isEmpty())
        return;
    QPixmap picture(target);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    m_svg->render(&painter, QRectF(QPointF(0, 0), QSizeF(target)));
    painter.end();
    setPixmap(picture);
}

void Image::setOpacity(double opacity)
{
    auto *effect = new QGraphicsOpacityEffect(this);
    effect->setOpacity(opacity);
    setGraphicsEffect(effect);
}

QPixmap Image::currentPixmap() const
{
    if (m_movie)
        return m_movie->currentPixmap();
#if QT_VERSION >= QT_VERSION_CHECK(5, 15, 0)
    return pixmap(Qt::ReturnByValue);
#else
    const QPixmap *p = pixmap();
    return p ? *p : QPixmap();
#endif
}

bool Image::savePicture(const QString &path) const
{
    const QPixmap picture = currentPixmap();
    return !picture.isNull() && !path.isEmpty() && picture.save(path);
}

void Image::redraw()
{
    if (m_svg)
        renderSvg();
    update();
}

void Image::resizeEvent(QResizeEvent *event)
{
    QLabel::resizeEvent(event);
    if (m_svg && minimumSize() == maximumSize())
        renderSvg();
}
