/*
 * A stand-in for the SEGGER J-Link library: the same function names over an
 * in-memory target image, with a log of every call. Built as
 * libjlinkarm.so and loaded by the program's own loader, exactly like the
 * real library. Extra SIMJLINK_* functions let tests set the target's
 * memory, make steps fail and read the call log.
 *
 * Built with SIM_WITHOUT_GO, JLINKARM_Go is missing (a library that lacks
 * one function).
 */
#include <pthread.h>
#include <stdarg.h>
#include <stdio.h>
#include <stdlib.h>
#include <stdint.h>
#include <string.h>

#define EXPORT __attribute__((visibility("default")))

typedef void (*LogCallback)(const char *);

enum { PageSize = 4096, PageSlots = 8192, LogLimit = 4 << 20 };

struct Page {
    unsigned number;
    int used;
    unsigned char bytes[PageSize];
};

static pthread_mutex_t g_lock = PTHREAD_MUTEX_INITIALIZER;
static struct Page *g_pages[PageSlots];
static char *g_log;
static size_t g_logLength;
static int g_logging = 1;
static char g_failures[256];
static int g_open;
static long g_reads, g_writes;
static LogCallback g_logCallback;

static void logLine(const char *format, ...)
{
    if (!g_logging)
        return;
    char line[512];
    va_list args;
    va_start(args, format);
    int n = vsnprintf(line, sizeof line - 1, format, args);
    va_end(args);
    if (n < 0)
        return;
    if (n > (int)sizeof line - 2)
        n = (int)sizeof line - 2;
    line[n++] = '\n';
    if (g_logLength + (size_t)n > LogLimit)
        return;
    char *grown = realloc(g_log, g_logLength + (size_t)n + 1);
    if (!grown)
        return;
    g_log = grown;
    memcpy(g_log + g_logLength, line, (size_t)n);
    g_logLength += (size_t)n;
    g_log[g_logLength] = 0;
}

static int failing(const char *step)
{
    char list[258];
    snprintf(list, sizeof list, ",%s,", g_failures);
    char key[64];
    snprintf(key, sizeof key, ",%s,", step);
    return strstr(list, key) != NULL;
}

/* The page holding an address; created when asked to. Open addressing. */
static struct Page *page(unsigned address, int create)
{
    unsigned number = address / PageSize;
    unsigned slot = (number * 2654435761u) % PageSlots;
    for (unsigned i = 0; i < PageSlots; ++i, slot = (slot + 1) % PageSlots) {
        struct Page *p = g_pages[slot];
        if (!p) {
            if (!create)
                return NULL;
            p = calloc(1, sizeof *p);
            if (!p)
                return NULL;
            p->number = number;
            p->used = 1;
            g_pages[slot] = p;
            return p;
        }
        if (p->number == number)
            return p;
    }
    return NULL;
}

static void copyOut(unsigned address, unsigned count, unsigned char *to)
{
    for (unsigned i = 0; i < count; ++i) {
        struct Page *p = page(address + i, 0);
        to[i] = p ? p->bytes[(address + i) % PageSize] : 0;
    }
}

static int copyIn(unsigned address, unsigned count, const unsigned char *from)
{
    for (unsigned i = 0; i < count; ++i) {
        struct Page *p = page(address + i, 1);
        if (!p)
            return -1;
        p->bytes[(address + i) % PageSize] = from[i];
    }
    return 0;
}


/*
 * With SIMJLINK_IMAGE naming a 64-bit ELF file, the target's memory starts
 * with the file's loadable segments, so that a firmware's initial values
 * read back as on a board fresh from reset.
 */
static int g_imageLoaded;

static void loadImage(void)
{
    if (g_imageLoaded)
        return;
    g_imageLoaded = 1;
    const char *path = getenv("SIMJLINK_IMAGE");
    FILE *f = path ? fopen(path, "rb") : NULL;
    if (!f)
        return;
    unsigned char header[64];
    if (fread(header, 1, sizeof header, f) == sizeof header && memcmp(header, "\x7f" "ELF", 4) == 0
        && header[4] == 2 && header[5] == 1) {
        uint64_t phoff;
        uint16_t phentsize, phnum;
        memcpy(&phoff, header + 32, 8);
        memcpy(&phentsize, header + 54, 2);
        memcpy(&phnum, header + 56, 2);
        for (unsigned i = 0; i < phnum && phentsize >= 56; ++i) {
            unsigned char ph[56];
            if (fseek(f, (long)(phoff + (uint64_t)i * phentsize), SEEK_SET) != 0 || fread(ph, 1, 56, f) != 56)
                break;
            uint32_t type;
            uint64_t offset, vaddr, filesz;
            memcpy(&type, ph, 4);
            memcpy(&offset, ph + 8, 8);
            memcpy(&vaddr, ph + 16, 8);
            memcpy(&filesz, ph + 32, 8);
            if (type != 1 || filesz > (1u << 20) || vaddr > 0xFFFFFFFFu)
                continue;
            unsigned char *bytes = malloc(filesz ? filesz : 1);
            if (bytes && fseek(f, (long)offset, SEEK_SET) == 0 && fread(bytes, 1, filesz, f) == filesz)
                copyIn((unsigned)vaddr, (unsigned)filesz, bytes);
            free(bytes);
        }
    }
    fclose(f);
}

/* ---- the library's functions ---- */

EXPORT int JLINKARM_EMU_SelectByUSBSN(unsigned serialNumber)
{
    pthread_mutex_lock(&g_lock);
    logLine("EMU_SelectByUSBSN %u", serialNumber);
    int r = failing("select") ? -1 : 0;
    pthread_mutex_unlock(&g_lock);
    return r;
}

EXPORT int JLINKARM_SelectIP(const char *host, int port)
{
    pthread_mutex_lock(&g_lock);
    logLine("SelectIP %s %d", host ? host : "(null)", port);
    int r = failing("selectip") ? 1 : 0;
    pthread_mutex_unlock(&g_lock);
    return r;
}

EXPORT const char *JLINKARM_OpenEx(LogCallback log, LogCallback error)
{
    (void)error;
    pthread_mutex_lock(&g_lock);
    logLine("OpenEx");
    loadImage();
    const char *r = NULL;
    if (failing("open"))
        r = "Cannot open J-Link.";
    else
        g_open = 1;
    g_logCallback = log;
    pthread_mutex_unlock(&g_lock);
    if (!r && log)
        log("Simulated J-Link opened");
    return r;
}

EXPORT int JLINKARM_ExecCommand(const char *command, char *error, int size)
{
    pthread_mutex_lock(&g_lock);
    logLine("ExecCommand %s", command ? command : "(null)");
    if (error && size > 0) {
        error[0] = 0;
        if (command && strncmp(command, "device", 6) == 0 && failing("device"))
            snprintf(error, (size_t)size, "Unknown device name");
        if (command && strncmp(command, "ProjectFile", 11) == 0 && failing("project"))
            snprintf(error, (size_t)size, "Cannot open project file");
    }
    pthread_mutex_unlock(&g_lock);
    return 0;
}

EXPORT int JLINKARM_TIF_Select(int interface)
{
    pthread_mutex_lock(&g_lock);
    logLine("TIF_Select %d", interface);
    pthread_mutex_unlock(&g_lock);
    return 0;
}

EXPORT void JLINKARM_SetSpeed(unsigned kHz)
{
    pthread_mutex_lock(&g_lock);
    logLine("SetSpeed %u", kHz);
    pthread_mutex_unlock(&g_lock);
}

EXPORT int JLINKARM_Connect(void)
{
    pthread_mutex_lock(&g_lock);
    logLine("Connect");
    int r = failing("connect") ? -1 : 0;
    pthread_mutex_unlock(&g_lock);
    return r;
}

EXPORT char JLINKARM_IsOpen(void)
{
    pthread_mutex_lock(&g_lock);
    logLine("IsOpen");
    char r = (char)g_open;
    pthread_mutex_unlock(&g_lock);
    return r;
}

EXPORT void JLINKARM_Close(void)
{
    pthread_mutex_lock(&g_lock);
    logLine("Close");
    g_open = 0;
    pthread_mutex_unlock(&g_lock);
}

EXPORT int JLINKARM_ReadMem(unsigned address, unsigned count, void *buffer)
{
    pthread_mutex_lock(&g_lock);
    logLine("ReadMem 0x%08X %u", address, count);
    ++g_reads;
    int r = -1;
    /* A closed link reads nothing, as a real probe would. */
    if (g_open && buffer && count <= (1u << 24)) {
        copyOut(address, count, buffer);
        r = 0;
    }
    pthread_mutex_unlock(&g_lock);
    return r;
}

EXPORT int JLINKARM_WriteMem(unsigned address, unsigned count, const void *buffer)
{
    pthread_mutex_lock(&g_lock);
    logLine("WriteMem 0x%08X %u", address, count);
    ++g_writes;
    int r = -1;
    if (g_open && buffer && count <= (1u << 24))
        r = copyIn(address, count, buffer) == 0 ? (int)count : -1;
    pthread_mutex_unlock(&g_lock);
    return r;
}

EXPORT int JLINKARM_Reset(void)
{
    pthread_mutex_lock(&g_lock);
    logLine("Reset");
    pthread_mutex_unlock(&g_lock);
    return 0;
}

#ifndef SIM_WITHOUT_GO
EXPORT void JLINKARM_Go(void)
{
    pthread_mutex_lock(&g_lock);
    logLine("Go");
    pthread_mutex_unlock(&g_lock);
}
#endif

EXPORT void JLINKARM_BeginDownload(unsigned flags)
{
    pthread_mutex_lock(&g_lock);
    logLine("BeginDownload %u", flags);
    pthread_mutex_unlock(&g_lock);
}

EXPORT int JLINK_DownloadFile(const char *fileName, unsigned address)
{
    pthread_mutex_lock(&g_lock);
    logLine("DownloadFile %s 0x%X", fileName ? fileName : "(null)", address);
    int r = 0;
    FILE *f = fileName ? fopen(fileName, "rb") : NULL;
    if (!f || failing("download"))
        r = -1;
    if (f)
        fclose(f);
    pthread_mutex_unlock(&g_lock);
    return r;
}

EXPORT int JLINKARM_EndDownload(void)
{
    pthread_mutex_lock(&g_lock);
    logLine("EndDownload");
    pthread_mutex_unlock(&g_lock);
    return 0;
}

/* ---- control of the simulation ---- */

/* Forgets memory, log, failures and the open state. */
EXPORT void SIMJLINK_Reset(void)
{
    pthread_mutex_lock(&g_lock);
    for (int i = 0; i < PageSlots; ++i) {
        free(g_pages[i]);
        g_pages[i] = NULL;
    }
    free(g_log);
    g_log = NULL;
    g_logLength = 0;
    g_logging = 1;
    g_failures[0] = 0;
    g_open = 0;
    g_reads = g_writes = 0;
    g_imageLoaded = 0;
    pthread_mutex_unlock(&g_lock);
}

/* Comma-separated steps that fail: select, selectip, open, project, device,
   connect, download. */
EXPORT void SIMJLINK_SetFailures(const char *steps)
{
    pthread_mutex_lock(&g_lock);
    snprintf(g_failures, sizeof g_failures, "%s", steps ? steps : "");
    pthread_mutex_unlock(&g_lock);
}

EXPORT void SIMJLINK_SetLogging(int on)
{
    pthread_mutex_lock(&g_lock);
    g_logging = on;
    pthread_mutex_unlock(&g_lock);
}

/* Copies the log (NUL-terminated, cut to size); returns its full length. */
EXPORT int SIMJLINK_Log(char *buffer, int size)
{
    pthread_mutex_lock(&g_lock);
    int length = (int)g_logLength;
    if (buffer && size > 0) {
        int n = length < size - 1 ? length : size - 1;
        if (n > 0)
            memcpy(buffer, g_log, (size_t)n);
        buffer[n > 0 ? n : 0] = 0;
    }
    pthread_mutex_unlock(&g_lock);
    return length;
}

EXPORT void SIMJLINK_ClearLog(void)
{
    pthread_mutex_lock(&g_lock);
    g_logLength = 0;
    if (g_log)
        g_log[0] = 0;
    g_reads = g_writes = 0;
    pthread_mutex_unlock(&g_lock);
}

EXPORT int SIMJLINK_Poke(unsigned address, unsigned count, const void *bytes)
{
    pthread_mutex_lock(&g_lock);
    int r = copyIn(address, count, bytes);
    pthread_mutex_unlock(&g_lock);
    return r;
}

EXPORT void SIMJLINK_Peek(unsigned address, unsigned count, void *bytes)
{
    pthread_mutex_lock(&g_lock);
    copyOut(address, count, bytes);
    pthread_mutex_unlock(&g_lock);
}

EXPORT long SIMJLINK_Reads(void)
{
    pthread_mutex_lock(&g_lock);
    long r = g_reads;
    pthread_mutex_unlock(&g_lock);
    return r;
}

EXPORT long SIMJLINK_Writes(void)
{
    pthread_mutex_lock(&g_lock);
    long r = g_writes;
    pthread_mutex_unlock(&g_lock);
    return r;
}

EXPORT int SIMJLINK_IsOpen(void)
{
    pthread_mutex_lock(&g_lock);
    int r = g_open;
    pthread_mutex_unlock(&g_lock);
    return r;
}
