#pragma once

/// Hands the focus on if its window can no longer have it. To be called after windows were hidden or
/// disabled.
void settleFocus();
