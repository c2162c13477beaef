#pragma once

/// Whole degrees Celsius as text, of at most two characters.
struct Temperature {
    char text[3];
};

/// What the board's sensor says, which gives thousandths of a degree; empty when it cannot be read. Any
/// thread.
Temperature readTemperature();
