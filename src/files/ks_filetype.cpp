// Type and creator codes in the Finder-info extended attribute.
#include "files/ks_filetype.h"

#include <cstring>
#include <sys/xattr.h>

namespace {
#if defined(__APPLE__)
const char kFinderInfo[] = "com.apple.FinderInfo";
#else
const char kFinderInfo[] = "user.com.apple.FinderInfo";
#endif

void PutBigEndian(uint8_t *p, uint32_t v)
{
    p[0] = (uint8_t)(v >> 24);
    p[1] = (uint8_t)(v >> 16);
    p[2] = (uint8_t)(v >> 8);
    p[3] = (uint8_t)v;
}
uint32_t GetBigEndian(const uint8_t *p) { return (uint32_t)p[0] << 24 | (uint32_t)p[1] << 16 | (uint32_t)p[2] << 8 | p[3]; }

ssize_t Get(const char *path, uint8_t *info)
{
#if defined(__APPLE__)
    return getxattr(path, kFinderInfo, info, 32, 0, 0);
#else
    return getxattr(path, kFinderInfo, info, 32);
#endif
}
} // namespace

void KSWriteFileTypeAndCreator(const char *path, uint32_t type, uint32_t creator)
{
    if (!path) return;
    uint8_t info[32] = {0};
    if (Get(path, info) != 32) memset(info, 0, sizeof info); // keep the other fields of a valid record
    PutBigEndian(info, type);
    PutBigEndian(info + 4, creator);
#if defined(__APPLE__)
    setxattr(path, kFinderInfo, info, sizeof info, 0, 0);
#else
    setxattr(path, kFinderInfo, info, sizeof info, 0);
#endif
}

void KSReadFileTypeAndCreator(const char *path, uint32_t *type, uint32_t *creator)
{
    uint8_t info[32] = {0};
    const bool ok = path && Get(path, info) == 32;
    if (type) *type = ok ? GetBigEndian(info) : 0;
    if (creator) *creator = ok ? GetBigEndian(info + 4) : 0;
}
