#pragma once
#include <QByteArray>
#include <QDomDocument>
#include <QLabel>
#include <QStringList>
#include <memory>

class DocumentTables;
class QMovie;
class QSvgRenderer;

// A picture of the form: a file (a GIF plays as an animation, anything else
// is a still), or an SVG written into the description itself. Parts of an
// embedded SVG may name a define; their text then shows that define's value
// and follows it.
class Image : public QLabel
{
    Q_OBJECT
public:
    explicit Image(QWidget *parent = nullptr);
    ~Image() override;

    // Shows the picture in the file. A name ending in "gif" plays as an
    // animation. When the file can't be read the element is left empty and
    // "Picture of <image> element couldn't be loaded." is reported.
    bool setPictureFile(const QString &path);
    // The `image` selector of setDef: the same, by name.
    Q_INVOKABLE bool setPicture(const QString &path) { return setPictureFile(path); }

    // An SVG document; false (and an empty element) when it can't be read.
    // The property File becomes "$SVG$".
    bool setSvg(const QByteArray &svg);
    bool isSvg() const { return m_svg != nullptr; }
    // A passive SVG does not follow its defines.
    void setPassive(bool passive) { m_passive = passive; }
    bool isPassive() const { return m_passive; }
    // The defines named inside the embedded SVG, each once.
    QStringList svgDefines() const { return m_svgDefines; }
    // Takes the current values of the SVG's defines and renders again.
    void refreshSvg(DocumentTables *tables);
    // The SVG as last rendered, with the values of its defines.
    QByteArray svgSource() const { return m_svg ? m_svgDocument.toByteArray() : QByteArray(); }

    void setOpacity(double opacity);

    QMovie *movie() const { return m_movie.get(); }

    // Writes the current picture (the current frame of an animation); the
    // `save` selector of setDef.
    Q_INVOKABLE bool savePicture(const QString &path) const;

    // Redraws, for the "update" selector and after a size change.
    void redraw();

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    void clearPicture();
    QPixmap currentPixmap() const;
    void renderSvg();

    std::unique_ptr<QMovie> m_movie;
    std::unique_ptr<QSvgRenderer> m_svg;
    QDomDocument m_svgDocument;
    QStringList m_svgDefines;
    bool m_passive = false;
};
