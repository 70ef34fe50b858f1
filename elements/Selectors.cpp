#include "elements/Selectors.h"

namespace Selectors {

const QStringList &words()
{
    static const QStringList list = {
        QStringLiteral("value"), QStringLiteral("label"), QStringLiteral("index"),
        QStringLiteral("definevalue"), QStringLiteral("typeinfo"), QStringLiteral("interval"),
        QStringLiteral("run"), QStringLiteral("register"), QStringLiteral("module"),
        QStringLiteral("registername"), QStringLiteral("address"), QStringLiteral("column"),
        QStringLiteral("row"), QStringLiteral("insertmode"), QStringLiteral("singlestep"),
        QStringLiteral("func"), QStringLiteral("sendloop"), QStringLiteral("delete"),
        QStringLiteral("deleteall"), QStringLiteral("sendusb"), QStringLiteral("load"),
        QStringLiteral("loadat"), QStringLiteral("save"), QStringLiteral("export"),
        QStringLiteral("image"), QStringLiteral("color"), QStringLiteral("visible"),
        QStringLiteral("enabled"), QStringLiteral("x"), QStringLiteral("y"),
        QStringLiteral("min"), QStringLiteral("max"), QStringLiteral("textcolor"),
        QStringLiteral("update")
    };
    return list;
}

QString word(int kind)
{
    const QStringList &w = words();
    return kind >= 0 && kind < w.size() ? w.at(kind) : QString();
}

static int endingKind(const QString &text)
{
    const QStringList &w = words();
    for (int i = 0; i < w.size(); ++i) {
        const QString &word = w.at(i);
        if (text.size() > word.size() && text.endsWith(word)
            && text.at(text.size() - word.size() - 1) == QLatin1Char('.'))
            return i;
    }
    return -1;
}

int selectorKind(const QString &text)
{
    const int k = endingKind(text);
    return k < 0 ? 0 : k;
}

bool hasSelector(const QString &text)
{
    return endingKind(text) >= 0;
}

QString removeSelector(const QString &text, int kind)
{
    QString result = text;
    result.remove(QLatin1Char('.') + word(kind));
    return result;
}

QString stripSelector(const QString &text)
{
    const int k = endingKind(text);
    return k < 0 ? text : removeSelector(text, k);
}

int takePrefix(QString &text)
{
    const QStringList &w = words();
    for (int i = 0; i < w.size(); ++i) {
        const QString prefix = w.at(i) + QLatin1Char('=');
        if (text.startsWith(prefix)) {
            text.remove(0, prefix.size());
            return i;
        }
    }
    return -1;
}

} // namespace Selectors
