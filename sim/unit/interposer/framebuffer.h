#pragma once

/* The frame buffer of the touchscreen: RGB565, little-endian, without padding. Its file is of exactly this
 * size, by which the interposer knows it. */
enum {
    FrameBufferWidth = 1024,
    FrameBufferHeight = 600,
    FrameBufferRowBytes = 2 * FrameBufferWidth,
    FrameBufferSize = FrameBufferRowBytes * FrameBufferHeight,
    FrameBufferRequest = 'F' /* type of the requests in linux/fb.h */
};
