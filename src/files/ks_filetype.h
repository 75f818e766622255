// Classic type and creator codes, kept in the 32-byte Finder-info extended attribute
// (type at bytes 0-3, creator at 4-7, big-endian). File systems without extended
// attributes are ignored silently.
#pragma once

#include <cstdint>

void KSWriteFileTypeAndCreator(const char *path, uint32_t type, uint32_t creator);
// Both 0 when the attribute is absent or unreadable.
void KSReadFileTypeAndCreator(const char *path, uint32_t *type, uint32_t *creator);
