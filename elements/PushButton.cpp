#include "elements/PushButton.h"

#include "elements/RecordingHook.h"

#include "elements/ActionRunner.h"
#include "elements/Reports.h"

#include <QIcon>
#include <QMetaMethod>
#include <QPixmap>

PushButton::PushButton(QWidget *parent)
    : QPushButton(parent)
{
    connect(this, SIGNAL(clicked()), this, SLOT(sendDataWhenClicked()));
    connect(this, SIGNAL(pressed()), this, SLOT(sendDataWhenClicked()));
    connect(this, SIGNAL(released()), this, SLOT(sendDataWhenClicked()));
}

QString PushButton::plainStyle()
{
    return QStringLiteral("QPushButton{ border: 1px solid gray; height: 22px; background: #e9e6e7;}");
}

bool PushButton::setIconFile(const QString &path, const QSize &size, bool noGrayOut)
{
    QPixmap picture;
    if (path.isEmpty() || !picture.load(path))
        return false;
    if (size.isValid() && !size.isEmpty())
        picture = picture.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    QIcon icon(picture);
    if (noGrayOut)
        icon.addPixmap(picture, QIcon::Disabled);
    setIcon(icon);
    setIconSize(picture.size());
    setFlat(true);
    if (!size.isValid() || size.isEmpty())
        setFixedSize(picture.size());
    return true;
}

bool PushButton::setPicture(const QString &path)
{
    int w = -1;
    int h = -1;
    const QStringList size = property("Size").toString().split(QLatin1Char(';'));
    if (size.size() == 2) {
        w = size.at(0).trimmed().toInt();
        h = size.at(1).trimmed().toInt();
    }
    if (setIconFile(path, QSize(w, h), property("nograyout").toUInt() != 0))
        return true;
    Report::pictureNotLoaded(QStringLiteral("button"));
    return false;
}

QString PushButton::eventOfSender() const
{
    const QMetaMethod signal = senderSignalIndex() >= 0 && sender()
        ? sender()->metaObject()->method(senderSignalIndex())
        : QMetaMethod();
    const QByteArray name = signal.name();
    if (name == "pressed")
        return QStringLiteral("pressed");
    if (name == "released")
        return QStringLiteral("released");
    return QStringLiteral("clicked");
}

void PushButton::sendDataWhenClicked()
{
    const QString event = eventOfSender();
    // A recorded click plays back through CLICKED; press and release
    // belong to the same click and write nothing of their own.
    if (event == QLatin1String("clicked"))
        RecordingHook::clicked(this);
    ActionRunner::run(this, QStringLiteral("0"), event);
    // The set-defs of the `setDef` attribute follow the action entries.
    if (event == QLatin1String("clicked"))
        ActionRunner::emitEach(this, "clicked_setDef", property("default_setdef").toStringList());
}
