#include "views/CellFormat.h"

#include "elements/NumberFormat.h"

#include <QByteArray>

QString CellFormat::apply(const QString &format, quint64 value)
{
    if (format.isEmpty())
        return QString::number(value);
    // The 8-bit form of the format, as the columns have always used it.
    const QByteArray f = format.toLatin1();
    QByteArray out;
    int i = 0;
    bool done = false;
    while (i < f.size()) {
        const char c = f.at(i);
        if (c != '%' || done) {
            out += c;
            ++i;
            continue;
        }
        if (i + 1 < f.size() && f.at(i + 1) == '%') {
            out += '%';
            i += 2;
            continue;
        }
        int j = i + 1;
        QByteArray flags;
        while (j < f.size() && QByteArray("-+ #0").contains(f.at(j)))
            flags += f.at(j++);
        QByteArray width;
        while (j < f.size() && width.size() < 3 && f.at(j) >= '0' && f.at(j) <= '9')
            width += f.at(j++);
        QByteArray precision;
        if (j < f.size() && f.at(j) == '.') {
            ++j;
            while (j < f.size() && precision.size() < 3 && f.at(j) >= '0' && f.at(j) <= '9')
                precision += f.at(j++);
            precision.prepend('.');
        }
        while (j < f.size() && QByteArray("hlLqjzt").contains(f.at(j)))
            ++j;
        if (j >= f.size()) {
            out += f.mid(i);
            break;
        }
        const char conversion = f.at(j);
        const QByteArray directive = "%" + flags + width + precision + "ll";
        QString number;
        switch (conversion) {
        case 'd':
        case 'i':
            number = QString::asprintf((directive + 'd').constData(), qlonglong(value));
            break;
        case 'u':
        case 'x':
        case 'X':
        case 'o':
            number = QString::asprintf((directive + conversion).constData(), qulonglong(value));
            break;
        default:
            // Not an integer conversion: shown as written.
            out += f.mid(i, j - i + 1);
            i = j + 1;
            continue;
        }
        out += number.toLatin1();
        done = true;
        i = j + 1;
    }
    return QString::fromLatin1(out);
}

bool CellFormat::toUnsigned(const QString &text, quint64 *value)
{
    const QString t = text.trimmed();
    if (t.isEmpty())
        return false;
    bool ok = false;
    if (t.startsWith(QLatin1String("0x"), Qt::CaseInsensitive)) {
        *value = t.mid(2).toULongLong(&ok, 16);
        return ok;
    }
    *value = t.toULongLong(&ok, 10);
    if (ok)
        return true;
    const qint64 v = NumberFormat::toInt64(t, &ok);
    if (ok)
        *value = quint64(v);
    return ok;
}
