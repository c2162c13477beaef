#pragma once

#include <functional>

struct MxShm;

/// Saved routings and the video-wall layouts that belong to them: "/home/app/data/scene%d",
/// ".../splice%d.ini" and the web interface's layout texts under "/home/www/splice". Slot 0 is the live map.
/// Numbers below 0 or above the scenes offered are refused before memory or files are touched. What could not
/// be read or written is said on standard output, a line for each file. Runs on the caller's thread; no lock.
namespace SceneStore
{
/// True for 0 and for the numbers of the scenes that the unit offers.
bool offered(const MxShm &shm, int n);

/// Reads every scene file into its slot, the live map among them. A missing file leaves the slot all zero,
/// one that could not be read leaves it as it is. \return false when that was the live map's
bool load(MxShm &shm);

/// Stores the live map as scene `n`, with its splice; for `n` 0 only the live map's own file is written.
void save(MxShm &shm, int n);

/// Waits for so many milliseconds.
using Pause = std::function<void(unsigned long ms)>;

/// Recalls scene `n` into the live map and, behind a `pause` of one second, its splice; nothing for 0.
void recall(MxShm &shm, int n, const Pause &pause);

/// Stores the splice words, and a copy of the current layout text, as splice `n`.
void saveSplice(const MxShm &shm, int n);

/// Reads splice `n` into the record (all zero when missing), raises `splicePending`, and makes its layout
/// text the current one. Nothing of that happens when the words could not be read.
void loadSplice(MxShm &shm, int n);
} // namespace SceneStore
