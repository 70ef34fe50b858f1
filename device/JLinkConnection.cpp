#include "device/JLinkConnection.h"

#include "device/JLinkApi.h"
#include "device/JLinkProject.h"

#include <QByteArray>
#include <QDebug>

namespace {

// Sends one "name = value" command; the library's complaint ends the connect.
bool execCommand(const QByteArray &command)
{
    char error[1024] = {0};
    JLinkApi::JLINKARM_ExecCommand(command.constData(), error, int(sizeof error));
    error[sizeof error - 1] = 0;
    if (error[0]) {
        JLinkConnection::errorCallback(error);
        return false;
    }
    return true;
}

} // namespace

void JLinkConnection::logCallback(const char *text)
{
    qDebug().noquote() << QStringLiteral("Log: ") + QString::fromLocal8Bit(text ? text : "");
}

void JLinkConnection::errorCallback(const char *text)
{
    qDebug().noquote() << QStringLiteral("ERROR: ") + QString::fromLocal8Bit(text ? text : "");
}

int JLinkConnection::prepareJLink(JLinkProject &project)
{
    project = JLinkProject();
    return 0;
}

int JLinkConnection::connectJLink(const JLinkProject &project)
{
    if (project.hostInterface != 2) {
        if (project.serialNumber != 0 && JLinkApi::JLINKARM_EMU_SelectByUSBSN(project.serialNumber) < 0)
            return -1;
    } else if (JLinkApi::JLINKARM_SelectIP(project.ipAddress.isNull() ? nullptr : project.ipAddress.constData(), 0)
               == 1) {
        return -1;
    }
    if (const char *error = JLinkApi::JLINKARM_OpenEx(&logCallback, &errorCallback)) {
        errorCallback(error);
        return -1;
    }
    if (!project.projectFile.isEmpty() && !execCommand("ProjectFile = " + project.projectFile))
        return -1;
    if (!project.device.isEmpty() && !execCommand("device = " + project.device))
        return -1;
    JLinkApi::JLINKARM_TIF_Select(project.targetInterface);
    JLinkApi::JLINKARM_SetSpeed(project.speed);
    if (JLinkApi::JLINKARM_Connect() == 0)
        return 0;
    errorCallback("Could not connect to target.");
    return -1;
}
