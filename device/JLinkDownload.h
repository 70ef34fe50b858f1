#pragma once
#include <QString>

// Flashing a file through the probe (the script command DOWNLOAD). Only
// files of the probe's loader formats are flashed; others are passed over.
class JLinkDownload
{
public:
    enum Result { Skipped = 1, Done = 0, ConnectFailed = -1, DownloadFailed = -2 };

    // Whether the name marks a file for download (.hex, .bin, .mot, .srec,
    // .s19, .s, in any case).
    static bool isMarked(const QString &fileName);
    // Connects with the program's settings, resets, downloads, and on
    // success resets and starts the target. The link is closed afterwards
    // either way (polling then reads a closed link until the next load).
    static Result download(const QString &fileName);
};
