#include "device/StickFirmware.h"

#include "device/DataTasks.h"
#include "device/StickLink.h"
#include "elements/MessageSink.h"
#include "shell/Dialogs.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QProgressDialog>
#include <QStringList>
#include <QThread>

namespace {
const QString kNoTav = QStringLiteral("<font color=\"orange\">\n\nCurrently loaded XML doesn't use an Tav.</font><br>");
const QString kNoVersion = QStringLiteral("Could not retrieve firmware version.");
// About 50 seconds of 100 ms waits for the updater.
const int kUpdaterPasses = 500;
}

StickFirmware::StickFirmware(DataTasks &tasks, QWidget *dialogParent, QObject *parent)
    : QObject(parent)
    , m_tasks(tasks)
    , m_dialogParent(dialogParent)
    , m_folder(QCoreApplication::applicationDirPath() + QStringLiteral("/Tav-Stick_Firmware"))
{
}

StickFirmware::Version StickFirmware::parse(const QString &text)
{
    const QStringList parts = text.split(QLatin1Char('.'));
    Version v;
    v.major = parts.size() > 0 ? parts.at(0).trimmed().toUShort() : 0;
    v.minor = parts.size() > 1 ? parts.at(1).trimmed().toUShort() : 0;
    v.patch = parts.size() > 2 ? parts.at(2).trimmed().toUShort() : 0;
    return v;
}

quint16 StickFirmware::fold(const Version &v)
{
    return quint16((quint16(v.major * 10 + v.minor)) * 10 + v.patch);
}

int StickFirmware::compare(const Version &a, const Version &b)
{
    const quint16 x = fold(a);
    const quint16 y = fold(b);
    return x > y ? 1 : x < y ? -1 : 0;
}

void StickFirmware::setRange(const QString &min, const QString &max)
{
    m_min = parse(min);
    m_max = parse(max);
}

int StickFirmware::checkFirmwareVersion(bool quiet)
{
    if (!StickLink::isStickPort()) {
        consolePrint(kNoTav);
        return -3;
    }
    StickLink *link = m_tasks.link();
    const QByteArray query("\x01\x10", 2);
    bool answered = link->transfer(query);
    if (!answered) {
        link->open();
        answered = link->transfer(query);
    }
    if (answered) {
        QThread::msleep(kAnswerDelayMs);
        answered = link->receivedSize() >= 6;
    }
    if (!answered) {
        if (quiet)
            consolePrint(QStringLiteral("<font color=\"orange\">%1</font><br>").arg(kNoVersion));
        else
            Dialogs::message(m_dialogParent, QMessageBox::Critical, QStringLiteral("Quillon"), kNoVersion);
        return -2;
    }

    const QByteArray reply = link->takeReceived();
    Version stick;
    stick.major = quint8(reply.at(2));
    stick.minor = quint8(reply.at(3));
    stick.patch = quint8(reply.at(4));
    QString text = QStringLiteral("Tav Firmware Version %1.%2.%3").arg(stick.major).arg(stick.minor).arg(stick.patch);
    const QString range = QString::asprintf("V.%d.%d.%d..V.%d.%d.%d", m_min.major, m_min.minor, m_min.patch,
                                            m_max.major, m_max.minor, m_max.patch);
    const bool none = !m_min.major && !m_min.minor && !m_min.patch && !m_max.major && !m_max.minor && !m_max.patch;
    int state = 0;
    if (none) {
        text += QStringLiteral("<font color=\"orange\">\n\nCurrently loaded XML has no version to compare with.</font>");
        state = 99;
    } else if (compare(stick, m_min) < 0) {
        text += QStringLiteral("<font color=\"red\">\n\nVersion is too low for the currently loaded XML (needs ") + range
            + QStringLiteral(").</font>");
        state = -1;
    } else if (compare(stick, m_max) > 0) {
        text += QStringLiteral("<font color=\"red\">\n\nVersion is too high for the currently loaded XML (needs ") + range
            + QStringLiteral(").</font>");
        state = 1;
    } else {
        text += QStringLiteral("<font color=\"green\">\n\nVersion is valid for the currently loaded XML.</font>");
    }
    if (!quiet)
        Dialogs::message(m_dialogParent, QMessageBox::Information, QStringLiteral("Quillon"), text);
    else if (state != 0)
        consolePrint(QString(text).replace(QLatin1Char('\n'), QLatin1String("<br>")) + QStringLiteral("<br>"));
    return state;
}

void StickFirmware::updateTAVFW()
{
    const QString updater = QDir(m_folder).filePath(updaterName());
    if (m_tasks.existingLink()) {
        const auto answer = Dialogs::question(
            m_dialogParent, QMessageBox::Question, QStringLiteral("Quillon"),
            tr("Tav is currently connected.\nAfter updating Tav the device connected to Tav must be re-initialized.\nDo you want to continue ?"),
            QMessageBox::Yes | QMessageBox::No, QMessageBox::No);
        if (answer != QMessageBox::Yes)
            return;
    }
    if (!QFileInfo::exists(updater)) {
        Dialogs::message(m_dialogParent, QMessageBox::Critical, QStringLiteral("Quillon"),
                         tr("%1 not found.").arg(updaterName()));
        return;
    }
    const QString file = Dialogs::openFileName(m_dialogParent, tr("Open Firmware File"), m_folder,
                                               tr("Hex Files (*.hex)"));
    if (file.isEmpty())
        return;
    runUpdater(file);
}

bool StickFirmware::runUpdater(const QString &firmwareFile)
{
    const QString updater = QDir(m_folder).filePath(updaterName());
    if (!QFileInfo::exists(updater)) {
        Dialogs::message(m_dialogParent, QMessageBox::Critical, QStringLiteral("Quillon"),
                         tr("%1 not found.").arg(updaterName()));
        return false;
    }
    StickLink *link = m_tasks.existingLink();
    if (link)
        link->close();
    if (setTimersRunning)
        setTimersRunning(false);

    QProcess process;
    process.start(updater, {QStringLiteral("-FW=%1").arg(firmwareFile), QStringLiteral("-NOZIP")},
                  QIODevice::ReadWrite);

    QProgressDialog *progress = nullptr;
    if (!Dialogs::quiet()) {
        progress = new QProgressDialog(tr("Updating Tav..."), tr("Abort"), 0, 100, m_dialogParent);
        progress->setWindowFlags(progress->windowFlags() & ~Qt::WindowContextHelpButtonHint & ~Qt::WindowCloseButtonHint);
        progress->setCancelButton(nullptr);
        progress->setWindowModality(Qt::ApplicationModal);
        progress->setMinimumDuration(0);
        progress->show();
    }
    int count = 0;
    while (process.state() != QProcess::NotRunning && count <= kUpdaterPasses) {
        QCoreApplication::processEvents();
        if (progress)
            progress->setValue(qMin(100, count / 3));
        process.waitForFinished(100);
        ++count;
    }
    const bool finished = process.state() == QProcess::NotRunning;
    if (!finished) {
        // An updater that hangs is not left behind.
        process.kill();
        process.waitForFinished(1000);
    }
    const bool ok = finished && process.exitStatus() == QProcess::NormalExit && process.exitCode() == 5;
    if (ok)
        Dialogs::message(m_dialogParent, QMessageBox::Information, QStringLiteral("Quillon"),
                         tr("Update successfully finished\n(even if progress bar hasn't reached 100%)."));
    else
        Dialogs::message(m_dialogParent, QMessageBox::Critical, QStringLiteral("Quillon"), tr("Update failed."));

    if (link)
        link->open();
    if (setTimersRunning)
        setTimersRunning(true);
    delete progress;
    return ok;
}
