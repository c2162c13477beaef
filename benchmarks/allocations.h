#pragma once

/// Allocations of this thread since it began, of whatever kind; the program's malloc counts them.
unsigned long allocationCount();
