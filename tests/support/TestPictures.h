#pragma once
#include <QByteArray>
#include <QColor>
#include <QList>
#include <QString>

// Picture files for tests of the display elements, made on the spot so no
// binary test data is needed.
namespace TestPictures {

// An animated GIF of w x h pixels: one frame per colour, each shown for
// delayCs hundredths of a second, looping forever.
QByteArray animatedGif(const QList<QColor> &frames, int w = 4, int h = 4, int delayCs = 2);

// Writes a PNG of one colour; false when it can't be written.
bool writePng(const QString &path, int w, int h, const QColor &color);

// Writes bytes to a file; false when it can't be written.
bool writeBytes(const QString &path, const QByteArray &bytes);

} // namespace TestPictures
