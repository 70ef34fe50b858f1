#include "device/JLinkDownload.h"

#include "device/JLinkApi.h"
#include "device/JLinkConnection.h"
#include "device/JLinkProject.h"

#include <QFileInfo>
#include <QStringList>

bool JLinkDownload::isMarked(const QString &fileName)
{
    static const QStringList marked = {QStringLiteral("hex"), QStringLiteral("bin"), QStringLiteral("mot"),
                                       QStringLiteral("srec"), QStringLiteral("s19"), QStringLiteral("s")};
    return marked.contains(QFileInfo(fileName).suffix().toLower());
}

JLinkDownload::Result JLinkDownload::download(const QString &fileName)
{
    if (!isMarked(fileName))
        return Skipped;
    JLinkProject project;
    JLinkConnection::prepareJLink(project);
    if (JLinkConnection::connectJLink(project) < 0)
        return ConnectFailed;
    JLinkApi::JLINKARM_Reset();
    JLinkApi::JLINKARM_BeginDownload(0);
    const int result = JLinkApi::JLINK_DownloadFile(fileName.toLocal8Bit().constData(), 0);
    JLinkApi::JLINKARM_EndDownload();
    if (result < 0) {
        JLinkApi::JLINKARM_Close();
        return DownloadFailed;
    }
    JLinkApi::JLINKARM_Reset();
    JLinkApi::JLINKARM_Go();
    JLinkApi::JLINKARM_Close();
    return Done;
}
