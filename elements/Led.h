#pragma once
#include <QByteArray>
#include <QHash>
#include <QString>
#include <QWidget>
#include <memory>

class DocumentTables;
class QSvgRenderer;

// A lamp that shows whether the bits of a watched define are set. It is
// drawn from the picture ":/svg/LED.svg", whose two gradient stops take the
// colours of the current state's colour word.
class Led : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(QString OnColor READ onColor WRITE setOnColor)
    Q_PROPERTY(QString OffColor READ offColor WRITE setOffColor)

public:
    explicit Led(QWidget *parent = nullptr);
    ~Led() override;

    bool state() const { return m_state; }
    QString onColor() const { return m_onColor; }
    QString offColor() const { return m_offColor; }
    QString shape() const { return m_shape; }

    // The define the lamp follows and the bits of its value that light it.
    // The mask is any number text; an empty or unreadable one means all bits.
    void watch(const QString &data, const QString &bitmask);
    QString watchedDefine() const { return m_data; }
    quint64 mask() const { return m_mask; }

    // Takes a value as text: lit when (value & mask) is not 0. A text that is
    // no number reports "Invalid value in ledb" and leaves the state.
    bool feed(const QString &valueText);
    // Reads the watched define from the tables and feeds its value; false when
    // the define is neither a record nor an element.
    bool refresh(DocumentTables *tables);

    // The stop colours of a colour word (six hexadecimal digits); the
    // fallback word's when the word is unknown.
    static QString outerStopColor(const QString &word, bool on);
    static QString innerStopColor(const QString &word, bool on);
    static QStringList colorWords();

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

public slots:
    void setValue(bool on);
    void setOnColor(QString newColor);
    void setOffColor(QString newColor);
    void setShape(QString shape);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QByteArray coloredPicture() const;

    bool m_state = false;
    QString m_shape;
    QString m_onColor = QStringLiteral("green");
    QString m_offColor = QStringLiteral("grey");
    QString m_data;
    quint64 m_mask = ~quint64(0);

    // Colour word -> stop colour, for the outer and the inner stop.
    static const QHash<QString, QString> &outerStops();
    static const QHash<QString, QString> &innerStops();

    std::unique_ptr<QSvgRenderer> m_renderer;
    // The picture the renderer holds; rebuilt when state or colour changes.
    QByteArray m_renderedPicture;
};
