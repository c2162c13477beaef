#pragma once

#include <stdint.h>

/* What the recorder writes of one file operation. Behind it come `length` bytes: the data written, else the
 * path; the old path, NUL and the new one of what was renamed. */
struct FileRecord {
    uint8_t kind;
    uint64_t file; /* its number on the disk */
    int64_t at;    /* of a write: where; of a truncation: the new size */
    int64_t us;    /* when the operation was over */
    uint32_t length;
};

enum {
    Written = 'w',
    Sized = 't',
    Flushed = 'f',
    Made = 'c',
    Folder = 'd',
    Linked = 'l',
    Renamed = 'r',
    Unlinked = 'u',
    Synced = 's'
};
