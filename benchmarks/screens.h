#pragma once

/// The measurements of bench_touchscreen. Each makes a unit of its own and prints its rows of the table.

/// Painting the map view, beside a bare painter that draws the same dots and lines from ready coordinates.
void measureMapView();

/// Process start to the time when the touchscreen is there, and memory with all pages.
void measureScreenStart();
