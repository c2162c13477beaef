#pragma once

struct MxShm;

/// The captions of inputs, outputs and scenes in "/home/app/config/caption.ini". When they could not be read
/// or written, a line on standard output says so. Runs on the caller's thread; no lock.
namespace CaptionStore
{
/// Fills the captions of the record; a missing or empty one becomes the number itself. Longer ones are cut to
/// 31 Latin-1 characters.
void load(MxShm &shm);

/// Writes the captions of the record. Keys beyond the present size of the matrix stay in the file.
void save(const MxShm &shm);
} // namespace CaptionStore
