#include "TestPictures.h"

#include <QFile>
#include <QImage>

namespace {

void putWord(QByteArray &out, int value)
{
    out.append(char(value & 0xff));
    out.append(char((value >> 8) & 0xff));
}

// LZW data in which a clear code precedes every pixel, so the code table
// never grows and every code is three bits wide: valid for any decoder,
// without an encoder.
QByteArray imageData(int pixelCount, int colorIndex)
{
    const int clear = 4;
    const int end = 5;
    QList<int> codes;
    for (int i = 0; i < pixelCount; ++i) {
        codes.append(clear);
        codes.append(colorIndex);
    }
    codes.append(end);

    QByteArray packed;
    quint32 buffer = 0;
    int bits = 0;
    for (int code : codes) {
        buffer |= quint32(code) << bits;
        bits += 3;
        while (bits >= 8) {
            packed.append(char(buffer & 0xff));
            buffer >>= 8;
            bits -= 8;
        }
    }
    if (bits > 0)
        packed.append(char(buffer & 0xff));

    QByteArray out;
    out.append(char(2)); // minimum code size
    for (int pos = 0; pos < packed.size(); pos += 255) {
        const QByteArray block = packed.mid(pos, 255);
        out.append(char(block.size()));
        out.append(block);
    }
    out.append(char(0));
    return out;
}

} // namespace

namespace TestPictures {

QByteArray animatedGif(const QList<QColor> &frames, int w, int h, int delayCs)
{
    QByteArray out("GIF89a");
    putWord(out, w);
    putWord(out, h);
    out.append(char(0x91)); // global table of 4 colours
    out.append(char(0));
    out.append(char(0));
    for (int i = 0; i < 4; ++i) {
        const QColor c = i < frames.size() ? frames.at(i) : QColor(Qt::black);
        out.append(char(c.red()));
        out.append(char(c.green()));
        out.append(char(c.blue()));
    }
    out.append("\x21\xff\x0bNETSCAPE2.0\x03\x01\x00\x00\x00", 19);
    for (int f = 0; f < frames.size() && f < 4; ++f) {
        out.append("\x21\xf9\x04\x00", 4);
        putWord(out, delayCs);
        out.append(char(0));
        out.append(char(0));
        out.append(char(0x2c));
        putWord(out, 0);
        putWord(out, 0);
        putWord(out, w);
        putWord(out, h);
        out.append(char(0));
        out.append(imageData(w * h, f));
    }
    out.append(char(0x3b));
    return out;
}

bool writePng(const QString &path, int w, int h, const QColor &color)
{
    QImage image(w, h, QImage::Format_ARGB32);
    image.fill(color);
    return image.save(path, "PNG");
}

bool writeBytes(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    return file.write(bytes) == bytes.size();
}

} // namespace TestPictures
