#include "reader/CommonAttributes.h"

#include "elements/GroupBox.h"
#include "elements/HorizontalWidget.h"
#include "elements/VerticalWidget.h"
#include "reader/DescriptionReader.h"

#include <QAbstractSpinBox>
#include <QBoxLayout>
#include <QCheckBox>
#include <QComboBox>
#include <QFileInfo>
#include <QLineEdit>
#include <QPushButton>
#include <QTextEdit>
#include <QXmlStreamAttributes>

namespace {

QBoxLayout *parentBox(QWidget *widget)
{
    QWidget *parent = widget->parentWidget();
    if (auto *v = qobject_cast<VerticalWidget *>(parent))
        return v->boxLayout();
    if (auto *h = qobject_cast<HorizontalWidget *>(parent))
        return h->boxLayout();
    return nullptr;
}

} // namespace

bool CommonAttributes::parsePair(const QString &text, int *first, int *second)
{
    const QStringList parts = text.split(QLatin1Char(';'));
    if (parts.size() != 2)
        return false;
    bool ok1 = false;
    bool ok2 = false;
    *first = parts.at(0).trimmed().toInt(&ok1);
    *second = parts.at(1).trimmed().toInt(&ok2);
    return ok1 && ok2;
}

bool CommonAttributes::parseColor(const QString &text, int rgba[4], int *count)
{
    const QStringList parts = text.split(QLatin1Char(';'));
    if (parts.size() != 3 && parts.size() != 4)
        return false;
    rgba[3] = 255;
    for (int i = 0; i < parts.size(); ++i) {
        bool ok = false;
        const int v = parts.at(i).trimmed().toInt(&ok);
        if (!ok || v < 0 || v > 255)
            return false;
        rgba[i] = v;
    }
    if (count)
        *count = parts.size();
    return true;
}

void CommonAttributes::setBackgroundColor(QWidget *widget, const QString &text)
{
    int rgba[4];
    int count = 0;
    if (!parseColor(text, rgba, &count))
        return;
    QString rgb = text;
    rgb.replace(QLatin1Char(';'), QLatin1Char(','));
    if (qobject_cast<QPushButton *>(widget)) {
        widget->setStyleSheet(QStringLiteral("QPushButton{background-color: rgb(%1);}QPushButton:checked{background-color: rgb(%1);}").arg(rgb));
        return;
    }
    if (qobject_cast<QLineEdit *>(widget) || qobject_cast<QComboBox *>(widget)) {
        widget->setStyleSheet(QStringLiteral("background-color: rgb(%1);").arg(rgb));
        return;
    }
    QPalette palette = widget->palette();
    palette.setBrush(widget->backgroundRole(), QColor(rgba[0], rgba[1], rgba[2], rgba[3]));
    widget->setPalette(palette);
    widget->setAutoFillBackground(true);
}

bool CommonAttributes::sizePolicyByName(const QString &name, QSizePolicy::Policy *policy)
{
    static const QHash<QString, QSizePolicy::Policy> policies = {
        {QStringLiteral("fixed"), QSizePolicy::Fixed},
        {QStringLiteral("minimum"), QSizePolicy::Minimum},
        {QStringLiteral("maximum"), QSizePolicy::Maximum},
        {QStringLiteral("preferred"), QSizePolicy::Preferred},
        {QStringLiteral("expanding"), QSizePolicy::Expanding},
        {QStringLiteral("minimumexpanding"), QSizePolicy::MinimumExpanding},
        {QStringLiteral("ignored"), QSizePolicy::Ignored},
    };
    auto it = policies.find(name.trimmed());
    if (it == policies.end())
        return false;
    *policy = it.value();
    return true;
}

void CommonAttributes::apply(DescriptionReader &reader, QWidget *widget, const QXmlStreamAttributes &a)
{
    const QString define = widget->objectName();
    auto has = [&a](const char *name) { return a.hasAttribute(QLatin1String(name)); };
    auto text = [&a](const char *name) { return a.value(QLatin1String(name)).toString(); };
    reader.noteElement(widget);

    if (has("stretch")) {
        const int factor = text("stretch").toInt();
        if (QBoxLayout *box = parentBox(widget)) {
            if (factor != 0) {
                const int at = box->indexOf(widget);
                box->insertStretch(at < 0 ? -1 : at + 1, factor);
            }
        }
    }
    if (has("readonly")) {
        const QString value = text("readonly");
        widget->setProperty("my_readonly", value);
        if (value.toInt() != 0) {
            if (qobject_cast<QComboBox *>(widget) || qobject_cast<QCheckBox *>(widget)
                || qobject_cast<QAbstractSpinBox *>(widget)) {
                widget->setAttribute(Qt::WA_TransparentForMouseEvents);
                widget->setFocusPolicy(Qt::NoFocus);
            } else if (auto *line = qobject_cast<QLineEdit *>(widget)) {
                line->setReadOnly(true);
            } else if (auto *edit = qobject_cast<QTextEdit *>(widget)) {
                edit->setReadOnly(true);
            }
        }
    }
    if (has("color")) {
        const QString value = text("color");
        widget->setProperty("Color", value);
        int rgba[4];
        if (!parseColor(value, rgba, nullptr))
            reader.xmlMessage(QStringLiteral("\"color\" attribute invalid."), define, true);
        else
            setBackgroundColor(widget, value);
    }
    if (has("image")) {
        const QString value = text("image");
        widget->setProperty("image", value);
        const QString path = reader.findFile(value);
        if (path.isEmpty()) {
            reader.xmlMessage(QStringLiteral("Image file not found in UI element"), define, true);
        } else {
            if (widget->objectName().isEmpty())
                widget->setObjectName(QStringLiteral("image_%1").arg(quintptr(widget), 0, 16));
            // Scoped to the widget itself: an unscoped rule would reach
            // every child as well.
            widget->setStyleSheet(widget->styleSheet()
                                  + QStringLiteral("#%1{border-image: url(%2);}").arg(widget->objectName(), path));
        }
    }
    if (has("sizepolicy")) {
        const QString value = text("sizepolicy");
        widget->setProperty("Sizepolicy", value);
        const QStringList parts = value.split(QLatin1Char(';'));
        QSizePolicy::Policy h;
        QSizePolicy::Policy v;
        if (parts.size() == 2 && sizePolicyByName(parts.at(0), &h) && sizePolicyByName(parts.at(1), &v))
            widget->setSizePolicy(h, v);
        else
            reader.xmlMessage(QStringLiteral("\"sizepolicy\" attribute invalid."), define, true);
    }
    if (has("pos")) {
        const QString value = text("pos");
        widget->setProperty("Pos", value);
        int x = 0;
        int y = 0;
        if (parsePair(value, &x, &y))
            widget->move(x, y);
        else
            reader.xmlMessage(QStringLiteral("\"pos\" attribute invalid."), define, true);
    }
    if (has("size")) {
        const QString value = text("size");
        widget->setProperty("Size", value);
        int w = 0;
        int h = 0;
        if (!parsePair(value, &w, &h) || w < -1 || h < -1 || w > QWIDGETSIZE_MAX || h > QWIDGETSIZE_MAX) {
            reader.xmlMessage(QStringLiteral("\"size\" attribute invalid."), define, true);
        } else if (w != -1 && h != -1) {
            widget->setFixedSize(w, h);
        } else if (w != -1) {
            widget->setFixedWidth(w);
        } else if (h != -1) {
            widget->setFixedHeight(h);
        }
    }
    if (has("font")) {
        const QString value = text("font");
        widget->setProperty("my_font", value);
        QFont font = widget->font();
        if (font.fromString(value))
            widget->setFont(font);
    }
    if (has("expand"))
        widget->setProperty("expand", text("expand").toInt());
    if (has("visible")) {
        if (text("visible") == QLatin1String("false"))
            widget->setVisible(false);
        else if (widget->parentWidget())
            widget->setVisible(true);
    }
    if (has("enabled"))
        widget->setEnabled(text("enabled").toInt() != 0);
    if (has("tooltip"))
        widget->setProperty("tooltip", text("tooltip"));
    if (has("unit"))
        widget->setProperty("unit", text("unit"));
}
